#include "sim/unit/MenuFile.h"

#include "sim/unit/MessageRules.h"
#include "wire/Message.h"

#include <QDir>
#include <QFile>
#include <QStringDecoder>

#include <algorithm>

// outside namespaces, which Q_INIT_RESOURCE requires
static void initMenuResource()
{
    Q_INIT_RESOURCE(menus);
}

namespace {

constexpr qint64 MaxFileBytes = qint64{16} * 1024 * 1024;
constexpr int MaxWaitMs = 600000;
constexpr qsizetype MaxErrors = 100;

QString decoded(const QByteArray& line)
{
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8.decode(line);
    return utf8.hasError() ? QString::fromLatin1(line) : text;
}

QString withoutLeadingBlanks(const QString& text)
{
    const auto first = std::find_if(text.begin(), text.end(), [](QChar c) { return !c.isSpace(); });
    return text.mid(first - text.begin());
}

bool isWait(const QString& text)
{
    const QLatin1String word("wait");
    return text.startsWith(word) && (text.size() == word.size() || text.at(word.size()).isSpace());
}

MenuFile::Line parseWait(const QString& text)
{
    bool ok = false;
    const int ms = text.mid(4).trimmed().toInt(&ok);
    if (!ok || ms < 0 || ms > MaxWaitMs) {
        return {std::nullopt,
            QStringLiteral("wait needs a time in milliseconds from 0 to %1").arg(MaxWaitMs)};
    }
    return {MenuStep{MenuStep::Kind::Wait, {}, ms}, {}};
}

} // namespace

MenuFile::Line MenuFile::parseLine(const QByteArray& line)
{
    QString text = withoutLeadingBlanks(decoded(line));
    if (text.endsWith(QLatin1Char('\r'))) {
        text.chop(1);
    }
    if (text.isEmpty() || text.startsWith(QLatin1Char('#'))) {
        return {};
    }
    if (isWait(text)) {
        return parseWait(text);
    }
    const QString body = wire::fromPrintable(text);
    const QString fault = rules::fault(body);
    if (!fault.isEmpty()) {
        return {std::nullopt, fault};
    }
    return {MenuStep{MenuStep::Kind::Message, body, 0}, {}};
}

MenuFile MenuFile::parse(const QByteArray& text, const QString& name)
{
    MenuFile file;
    const QByteArray byteOrderMark("\xef\xbb\xbf");
    const QByteArray plain = text.startsWith(byteOrderMark) ? text.mid(3) : text;
    const QList<QByteArray> lines = plain.split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const Line line = parseLine(lines.at(i));
        if (!line.fault.isEmpty()) {
            file.addError(QStringLiteral("%1:%2: ").arg(name).arg(i + 1) + line.fault);
        } else if (line.step) {
            file.m_steps.append(*line.step);
        }
    }
    if (file.m_moreErrors > 0) {
        file.m_errors.append(QStringLiteral("%1: %2 more").arg(name).arg(file.m_moreErrors));
    }
    return file;
}

MenuFile MenuFile::load(const QString& path)
{
    MenuFile file;
    QFile input(path);
    if (!input.open(QIODevice::ReadOnly)) {
        file.addError(QStringLiteral("%1: %2").arg(path, input.errorString()));
        return file;
    }
    const QByteArray text = input.read(MaxFileBytes + 1);
    if (input.error() != QFileDevice::NoError) {
        file.addError(QStringLiteral("%1: %2").arg(path, input.errorString()));
        return file;
    }
    if (text.size() > MaxFileBytes) {
        file.addError(QStringLiteral("%1: larger than 16 MB").arg(path));
        return file;
    }
    return parse(text, path);
}

MenuFile MenuFile::builtIn()
{
    initMenuResource();
    QFile input(QStringLiteral(":/sim/menus/qn740.menu"));
    if (!input.open(QIODevice::ReadOnly)) {
        qFatal("the built-in menus are missing");
    }
    return parse(input.readAll(), QStringLiteral("sim/menus/qn740.menu"));
}

qsizetype MenuFile::messageCount() const
{
    return std::count_if(m_steps.begin(), m_steps.end(),
        [](const MenuStep& step) { return step.kind == MenuStep::Kind::Message; });
}

void MenuFile::addError(const QString& error)
{
    if (m_errors.size() < MaxErrors) {
        m_errors.append(error);
    } else {
        m_moreErrors += 1;
    }
}
