#include "sim/cli/MenuTools.h"

#include "sim/cli/Printer.h"
#include "sim/lint/Linter.h"
#include "sim/lint/Report.h"
#include "sim/menus/MenuGraph.h"
#include "sim/menus/MenuJson.h"
#include "sim/unit/MenuFile.h"
#include "wire/Message.h"

#include <cstdio>

namespace {

const QLatin1String Json("json");
const QLatin1String Text("text");
const QLatin1String Menu("menu");
const QLatin1String Dot("dot");

bool print(const QByteArray& text)
{
    return std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout) ==
        static_cast<std::size_t>(text.size()) &&
        std::fflush(stdout) == 0;
}

QByteArray asLines(const MenuContent& content)
{
    QByteArray text;
    for (const MenuStep& step : content.steps) {
        text += step.kind == MenuStep::Kind::Wait ? "wait " + QByteArray::number(step.waitMs)
                                                  : wire::toPrintable(step.body).toLatin1();
        text += '\n';
    }
    return text;
}

int checkFiles(const MenuTools& tools)
{
    QList<lint::FileReport> reports;
    bool isRefused = false;
    for (const QString& path : tools.files) {
        const MenuFile file = MenuFile::load(path);
        reports.append({path, file.messageCount(), lint::check(file)});
        const lint::FileReport& report = reports.constLast();
        isRefused = isRefused || report.count(lint::Severity::Error) > 0 ||
            (tools.isStrict && report.count(lint::Severity::Warning) > 0);
    }
    if (tools.format == Json) {
        return print(lint::toJson(reports)) && !isRefused ? 0 : 1;
    }
    for (const lint::FileReport& report : std::as_const(reports)) {
        std::fputs(lint::findingsText(report).toUtf8().constData(), stderr);
        if (report.count(lint::Severity::Error) == 0) {
            print(lint::summaryText(report).toUtf8() + '\n');
        }
    }
    return isRefused ? 1 : 0;
}

int exportFile(const MenuTools& tools)
{
    const MenuFile file = MenuFile::load(tools.files.constFirst());
    const QStringList errors = file.errors();
    for (const QString& error : errors) {
        Printer::error(error);
    }
    // A silenced message is no error, but it would be lost on the way.
    if (errors.isEmpty() && !file.content().faults.isEmpty() && tools.exportAs != Dot) {
        Printer::error(QStringLiteral("%1:%2: a message whose QN101 is silenced cannot be exported")
                           .arg(file.name())
                           .arg(file.content().faults.constFirst().place.line));
        return 1;
    }
    if (!errors.isEmpty()) {
        return 1;
    }
    const QByteArray text = tools.exportAs == Json ? menuJson::write(file.content())
        : tools.exportAs == Dot                    ? menuGraph(file.content())
                                                   : asLines(file.content());
    return print(text) ? 0 : 1;
}

} // namespace

QString MenuTools::fault() const
{
    if (format != Text && format != Json) {
        return QStringLiteral("--format is text or json, not \"%1\"").arg(format);
    }
    if (isCheck && files.isEmpty()) {
        return QStringLiteral("--check needs a menu file");
    }
    if (exportAs.isEmpty()) {
        return {};
    }
    if (exportAs != Json && exportAs != Menu && exportAs != Dot) {
        return QStringLiteral("--export is json, menu or dot, not \"%1\"").arg(exportAs);
    }
    return files.size() == 1 && !isCheck
        ? QString()
        : QStringLiteral("--export %1 needs one menu file, and no --check").arg(exportAs);
}

int MenuTools::run() const
{
    return exportAs.isEmpty() ? checkFiles(*this) : exportFile(*this);
}
