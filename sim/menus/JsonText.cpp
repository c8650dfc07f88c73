#include "sim/menus/JsonText.h"

#include <QSet>
#include <QStringDecoder>

#include <optional>

namespace {

constexpr int MaxDepth = 32;
constexpr int MaxValues = 2000000;

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// Returns the end of the digits that begin at `at`.
qsizetype skipDigits(const QString& text, qsizetype at)
{
    while (at < text.size() && isDigit(text.at(at))) {
        ++at;
    }
    return at;
}

QChar charAt(const QString& text, qsizetype at)
{
    return at < text.size() ? text.at(at) : QChar();
}

// Returns the end of the number that begins at `at`; -1 when none does.
qsizetype numberEnd(const QString& text, qsizetype at)
{
    at += charAt(text, at) == QLatin1Char('-') ? 1 : 0;
    const qsizetype whole = skipDigits(text, at);
    if (whole == at || (charAt(text, at) == QLatin1Char('0') && whole > at + 1)) {
        return -1;
    }
    at = whole;
    if (charAt(text, at) == QLatin1Char('.')) {
        const qsizetype end = skipDigits(text, at + 1);
        if (end == at + 1) {
            return -1;
        }
        at = end;
    }
    if (charAt(text, at).toLower() == QLatin1Char('e')) {
        const QChar sign = charAt(text, at + 1);
        const bool hasSign = sign == QLatin1Char('+') || sign == QLatin1Char('-');
        const qsizetype start = at + (hasSign ? 2 : 1);
        const qsizetype end = skipDigits(text, start);
        return end == start ? -1 : end;
    }
    return at;
}

class Reader
{
public:
    explicit Reader(const QString& text)
        : m_text(text)
    {
    }

    JsonResult read()
    {
        JsonResult result;
        const bool isRead = readValue(result.value, 0);
        if (isRead) {
            skipBlanks();
            if (m_at < m_text.size()) {
                fail(QStringLiteral("something follows the end of the JSON text"));
            }
        }
        result.fault = m_fault;
        result.line = m_line;
        return result;
    }

private:
    bool fail(const QString& fault)
    {
        m_fault = m_fault.isEmpty() ? fault : m_fault;
        return false;
    }

    void skipBlanks()
    {
        for (; m_at < m_text.size(); ++m_at) {
            const QChar c = m_text.at(m_at);
            if (c == QLatin1Char('\n')) {
                ++m_line;
            } else if (c != QLatin1Char(' ') && c != QLatin1Char('\t') && c != QLatin1Char('\r')) {
                return;
            }
        }
    }

    bool take(char c)
    {
        skipBlanks();
        const bool isThere = charAt(m_text, m_at) == QLatin1Char(c) && m_at < m_text.size();
        m_at += isThere ? 1 : 0;
        return isThere;
    }

    bool takeWord(const char* word)
    {
        const QLatin1String text(word);
        const bool isThere = QStringView(m_text).mid(m_at, text.size()) == text;
        m_at += isThere ? text.size() : 0;
        return isThere;
    }

    bool readValue(JsonValue& value, int depth)
    {
        skipBlanks();
        if (depth > MaxDepth) {
            return fail(QStringLiteral("nested more than %1 deep").arg(MaxDepth));
        }
        if (++m_values > MaxValues) {
            return fail(QStringLiteral("more than %1 values").arg(MaxValues));
        }
        value.line = m_line;
        const QChar c = charAt(m_text, m_at);
        if (c == QLatin1Char('{')) {
            return readObject(value, depth);
        }
        if (c == QLatin1Char('[')) {
            return readArray(value, depth);
        }
        if (c == QLatin1Char('"')) {
            value.kind = JsonValue::Kind::String;
            return readString(value.text);
        }
        return readPlain(value);
    }

    bool readPlain(JsonValue& value)
    {
        const qsizetype end = numberEnd(m_text, m_at);
        if (end > m_at) {
            value.kind = JsonValue::Kind::Number;
            value.text = m_text.mid(m_at, end - m_at);
            m_at = end;
            return true;
        }
        if (takeWord("true")) {
            value.kind = JsonValue::Kind::Bool;
            value.text = QStringLiteral("1");
            return true;
        }
        if (takeWord("false")) {
            value.kind = JsonValue::Kind::Bool;
            return true;
        }
        return takeWord("null") || fail(QStringLiteral("no JSON value begins here"));
    }

    bool readArray(JsonValue& value, int depth)
    {
        value.kind = JsonValue::Kind::Array;
        ++m_at;
        if (take(']')) {
            return true;
        }
        do {
            value.items.append(JsonValue());
            if (!readValue(value.items.last(), depth + 1)) {
                return false;
            }
        } while (take(','));
        return take(']') || fail(QStringLiteral("a \",\" or \"]\" is missing"));
    }

    bool readObject(JsonValue& value, int depth)
    {
        value.kind = JsonValue::Kind::Object;
        ++m_at;
        if (take('}')) {
            return true;
        }
        QSet<QString> known;
        do {
            skipBlanks();
            QString name;
            if (charAt(m_text, m_at) != QLatin1Char('"') || !readString(name)) {
                return fail(QStringLiteral("a member's name in quotes is missing"));
            }
            if (known.contains(name)) {
                return fail(QStringLiteral("the member \"%1\" occurs twice").arg(name.left(40)));
            }
            known.insert(name);
            value.names.append(name);
            value.items.append(JsonValue());
            if (!take(':')) {
                return fail(QStringLiteral("a \":\" is missing"));
            }
            if (!readValue(value.items.last(), depth + 1)) {
                return false;
            }
        } while (take(','));
        return take('}') || fail(QStringLiteral("a \",\" or \"}\" is missing"));
    }

    // Reads the string that begins at m_at with its quote.
    bool readString(QString& text)
    {
        for (++m_at; m_at < m_text.size(); ++m_at) {
            const QChar c = m_text.at(m_at);
            if (c == QLatin1Char('"')) {
                ++m_at;
                return true;
            }
            if (c.unicode() < 0x20) {
                return fail(QStringLiteral("a control character in a string; is a quote missing?"));
            }
            if (c == QLatin1Char('\\')) {
                if (!readEscape(text)) {
                    return false;
                }
            } else {
                text += c;
            }
        }
        return fail(QStringLiteral("a string without its closing quote"));
    }

    // Reads the escape whose backslash stands at m_at, and leaves m_at on its last character.
    bool readEscape(QString& text)
    {
        static const QString Letters = QStringLiteral("\"\\/bfnrt");
        static const QString Meanings = QStringLiteral("\"\\/\b\f\n\r\t");
        const QChar letter = charAt(m_text, ++m_at);
        const qsizetype known = letter.isNull() ? -1 : Letters.indexOf(letter);
        if (known >= 0) {
            text += Meanings.at(known);
            return true;
        }
        const QString digits = m_text.mid(m_at + 1, 4);
        bool isCode = letter == QLatin1Char('u') && digits.size() == 4;
        for (const QChar digit : digits) {
            isCode = isCode && digit.unicode() < 0x80 && QChar(digit).isLetterOrNumber();
        }
        const ushort code = isCode ? digits.toUShort(&isCode, 16) : ushort{0};
        if (!isCode) {
            return fail(QStringLiteral("no such escape in a string"));
        }
        text += QChar(code);
        m_at += 4;
        return true;
    }

    const QString& m_text;
    qsizetype m_at = 0;
    int m_line = 1;
    int m_values = 0;
    QString m_fault;
};

} // namespace

const JsonValue* JsonValue::member(const QString& name) const
{
    const qsizetype at = names.indexOf(name);
    return at < 0 ? nullptr : &items.at(at);
}

namespace json {

JsonResult read(const QByteArray& text)
{
    int number = 0;
    for (const QByteArray& line : text.split('\n')) {
        ++number;
        QStringDecoder utf8(QStringDecoder::Utf8);
        const QString decoded = utf8.decode(line);
        if (utf8.hasError()) {
            return {{}, QStringLiteral("not UTF-8 text"), number};
        }
    }
    const QString decoded = QString::fromUtf8(text);
    return Reader(decoded).read();
}

QString quoted(const QString& text)
{
    QString line(QLatin1Char('"'));
    for (const QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\')) {
            line += QLatin1Char('\\');
            line += c;
        } else if (c.unicode() < 0x20 || c.unicode() > 0x7e) {
            line += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        } else {
            line += c;
        }
    }
    return line + QLatin1Char('"');
}

bool isNumber(const QString& text)
{
    return !text.isEmpty() && numberEnd(text, 0) == text.size();
}

} // namespace json
