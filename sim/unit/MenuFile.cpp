#include "sim/unit/MenuFile.h"

#include "sim/menus/MenuJson.h"
#include "sim/unit/MessageRules.h"
#include "wire/Message.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>
#include <iterator>

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
            QStringLiteral("wait needs a time in milliseconds from 0 to %1").arg(MaxWaitMs),
            MenuFault::Kind::Wait};
    }
    return {MenuStep{MenuStep::Kind::Wait, {}, ms}, {}};
}

// Returns what the check is told by a comment; nothing when it is an ordinary comment.
std::optional<MenuSilence> parseSilence(const QString& comment, const MenuPlace& place)
{
    static const QRegularExpression toCheck(QStringLiteral("^#+\\s*qn740:\\s*(.*)$"));
    static const QRegularExpression form(
        QStringLiteral("^(ignore|ignore-file)((?:[\\s,]+QN[0-9]+)+)(?:$|[\\s,:(])"));
    static const QRegularExpression separator(QStringLiteral("[\\s,]+"));
    const QRegularExpressionMatch match = toCheck.match(comment);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const QRegularExpressionMatch parts = form.match(match.captured(1));
    MenuSilence silence{place, {}, parts.captured(2).split(separator, Qt::SkipEmptyParts)};
    silence.understood = parts.hasMatch();
    silence.target.line = parts.captured(1) == QLatin1String("ignore") ? -1 : 0;
    return silence;
}

// Reads a file line by line.
class LineReader
{
public:
    MenuContent read(const QByteArray& text)
    {
        for (const QByteArray& line : text.split('\n')) {
            ++m_line;
            take(line);
        }
        return m_content;
    }

private:
    void take(const QByteArray& line)
    {
        const MenuFile::Line parsed = MenuFile::parseLine(line);
        if (!parsed.fault.isEmpty()) {
            m_content.faults.append({parsed.kind, parsed.fault, {m_line, {}}, parsed.body});
        } else if (parsed.step) {
            m_content.steps.append(*parsed.step);
            m_content.steps.last().place.line = m_line;
        } else {
            takeComment(withoutLeadingBlanks(decoded(line)).trimmed());
            return;
        }
        for (; m_waiting < m_content.silences.size(); ++m_waiting) {
            MenuPlace& target = m_content.silences[m_waiting].target;
            target.line = target.line < 0 ? m_line : target.line;
        }
    }

    void takeComment(const QString& comment)
    {
        if (const auto silence = parseSilence(comment, {m_line, {}})) {
            m_content.silences.append(*silence);
        }
    }

    MenuContent m_content;
    int m_line = 0;
    qsizetype m_waiting = 0; // the first silence that may still wait for its line
};

// Whether a message is left out instead of refused: the panel ignores an unknown word as well, and
// the file says that this is known.
bool isLeftOut(const MenuFault& fault, const QList<MenuSilence>& silences)
{
    const auto isIts = [&fault](const MenuSilence& silence) {
        const MenuPlace& target = silence.target;
        const bool isFile = target.line == 0 && target.pointer.isEmpty();
        const bool isPlace = fault.place.pointer.isEmpty() ? target.line == fault.place.line
                                                           : target.pointer == fault.place.pointer;
        return (isFile || isPlace) && silence.codes.contains(QLatin1String("QN101"));
    };
    return fault.kind == MenuFault::Kind::UnknownWord &&
        std::any_of(silences.begin(), silences.end(), isIts);
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
    const MenuFault fault = rules::check(body);
    if (fault.kind != MenuFault::Kind::None) {
        return {std::nullopt, fault.text, fault.kind, body};
    }
    return {MenuStep{MenuStep::Kind::Message, body, 0}, {}};
}

MenuFile::MenuFile(const QString& name, MenuContent content)
    : m_name(name)
    , m_content(std::move(content))
{
}

MenuFile MenuFile::parse(const QByteArray& text, const QString& name)
{
    const QByteArray byteOrderMark("\xef\xbb\xbf");
    const QByteArray plain = text.startsWith(byteOrderMark) ? text.mid(3) : text;
    const bool isJson =
        menuJson::isJson(plain) || name.endsWith(QLatin1String(".json"), Qt::CaseInsensitive);
    return MenuFile(name, isJson ? menuJson::read(plain) : LineReader().read(plain));
}

MenuFile MenuFile::unreadable(const QString& name, const QString& reason)
{
    MenuContent content;
    content.faults.append({MenuFault::Kind::Unreadable, reason});
    return MenuFile(name, content);
}

MenuFile MenuFile::load(const QString& path)
{
    QFile input(path);
    if (!input.open(QIODevice::ReadOnly)) {
        return unreadable(path, input.errorString());
    }
    const QByteArray text = input.read(MaxFileBytes + 1);
    if (input.error() != QFileDevice::NoError) {
        return unreadable(path, input.errorString());
    }
    if (text.size() > MaxFileBytes) {
        return unreadable(path, QStringLiteral("larger than 16 MB"));
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
    return std::count_if(m_content.steps.begin(), m_content.steps.end(),
        [](const MenuStep& step) { return step.kind == MenuStep::Kind::Message; });
}

QStringList MenuFile::errors() const
{
    QStringList errors;
    QList<MenuFault> refused;
    std::copy_if(m_content.faults.begin(), m_content.faults.end(), std::back_inserter(refused),
        [this](const MenuFault& fault) { return !isLeftOut(fault, m_content.silences); });
    const QList<MenuFault> shown = refused.mid(0, MaxErrors);
    for (const MenuFault& fault : shown) {
        const QString line =
            fault.place.line > 0 ? QString::number(fault.place.line) + QLatin1Char(':') : QString();
        const QString pointer =
            fault.place.pointer.isEmpty() ? QString() : fault.place.pointer + QLatin1String(": ");
        errors.append(m_name + QLatin1Char(':') + line + QLatin1Char(' ') + pointer + fault.text);
    }
    if (refused.size() > MaxErrors) {
        errors.append(QStringLiteral("%1: %2 more").arg(m_name).arg(refused.size() - MaxErrors));
    }
    return errors;
}
