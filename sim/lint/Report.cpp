#include "sim/lint/Report.h"

#include "sim/menus/JsonText.h"

#include <algorithm>

namespace lint {

namespace {

constexpr qsizetype MaxShown = 100;

QString numbered(qsizetype count, const char* thing)
{
    return QStringLiteral("%1 %2%3").arg(
        QString::number(count), QLatin1String(thing), count == 1 ? QString() : QStringLiteral("s"));
}

QString member(const char* name, const QString& value)
{
    return json::quoted(QLatin1String(name)) + QLatin1String(": ") + value;
}

QString findingJson(const QString& file, const Finding& finding)
{
    QStringList members{member("file", json::quoted(file)),
        member("line", QString::number(finding.place.line)),
        member("severity", json::quoted(severityName(finding.severity))),
        member("code", json::quoted(finding.code)), member("text", json::quoted(finding.text)),
        member("hint", json::quoted(finding.hint)),
        member("pointer", json::quoted(finding.place.pointer))};
    return QLatin1Char('{') + members.join(QLatin1String(", ")) + QLatin1Char('}');
}

qsizetype countAll(const QList<FileReport>& reports, Severity severity)
{
    qsizetype all = 0;
    for (const FileReport& report : reports) {
        all += report.count(severity);
    }
    return all;
}

} // namespace

qsizetype FileReport::count(Severity severity) const
{
    return std::count_if(findings.begin(), findings.end(),
        [severity](const Finding& finding) { return finding.severity == severity; });
}

QString findingsText(const FileReport& report)
{
    QString text;
    const QList<Finding> shown = report.findings.mid(0, MaxShown);
    for (const Finding& finding : shown) {
        text += report.file + QLatin1Char(':');
        if (finding.place.line > 0) {
            text += QString::number(finding.place.line) + QLatin1Char(':');
        }
        text += QLatin1Char(' ') + severityName(finding.severity) + QLatin1String(": ");
        if (!finding.place.pointer.isEmpty()) {
            text += finding.place.pointer + QLatin1String(": ");
        }
        text += finding.text + QLatin1String(" [") + finding.code + QLatin1String("]\n");
        if (!finding.hint.isEmpty()) {
            text += QLatin1String("    hint: ") + finding.hint + QLatin1Char('\n');
        }
    }
    if (report.findings.size() > MaxShown) {
        text += QStringLiteral("%1: %2 more\n")
                    .arg(report.file, QString::number(report.findings.size() - MaxShown));
    }
    return text;
}

QString summaryText(const FileReport& report)
{
    QStringList counts{numbered(report.messages, "message")};
    const auto add = [&](Severity severity, const char* thing) {
        const qsizetype count = report.count(severity);
        if (count > 0) {
            counts.append(numbered(count, thing));
        }
    };
    add(Severity::Error, "error");
    add(Severity::Warning, "warning");
    add(Severity::Note, "note");
    if (counts.size() == 1) {
        counts.append(QStringLiteral("no fault"));
    }
    return report.file + QLatin1String(": ") + counts.join(QLatin1String(", "));
}

QByteArray toJson(const QList<FileReport>& reports)
{
    QStringList files;
    QStringList findings;
    for (const FileReport& report : reports) {
        files.append(QLatin1Char('{') + member("file", json::quoted(report.file)) +
            QLatin1String(", ") + member("messages", QString::number(report.messages)) +
            QLatin1Char('}'));
        for (const Finding& finding : report.findings) {
            findings.append(findingJson(report.file, finding));
        }
    }
    const auto array = [](const QStringList& items) {
        return items.isEmpty()
            ? QStringLiteral("[]")
            : QLatin1String("[\n    ") + items.join(QLatin1String(",\n    ")) + QLatin1String("]");
    };
    const QStringList members{member("version", QStringLiteral("1")),
        member("errors", QString::number(countAll(reports, Severity::Error))),
        member("warnings", QString::number(countAll(reports, Severity::Warning))),
        member("notes", QString::number(countAll(reports, Severity::Note))),
        member("files", array(files)), member("findings", array(findings))};
    return QByteArray("{\n  ") + members.join(QLatin1String(",\n  ")).toLatin1() + "\n}\n";
}

} // namespace lint
