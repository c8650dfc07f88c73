#include "sim/unit/MessageRules.h"

#include "wire/Message.h"

#include <QList>

#include <algorithm>
#include <cmath>

namespace {

enum class Kind {
    Text,      // anything
    Name,      // anything but empty
    Integer,   // decimal, may be negative
    Number,    // decimal, with or without a fraction or an exponent
    Flag,      // 0 or 1
    Placement, // 0, 1 or empty
    State,     // 0, 1 or 2
    Positions  // integers separated by ":", may be empty
};

struct Field
{
    QLatin1String name;
    Kind kind;
};

struct Rule
{
    QLatin1String word;
    qsizetype required;
    QList<Field> fields;
    bool repeatsLast = false;
};

Field text(const char* name)
{
    return {QLatin1String(name), Kind::Text};
}

Field name(const char* field)
{
    return {QLatin1String(field), Kind::Name};
}

Field integer(const char* name)
{
    return {QLatin1String(name), Kind::Integer};
}

Field number(const char* name)
{
    return {QLatin1String(name), Kind::Number};
}

Rule rule(
    const char* word, qsizetype required, const QList<Field>& fields, bool repeatsLast = false)
{
    return {QLatin1String(word), required, fields, repeatsLast};
}

const QList<Rule>& table()
{
    const Field toggle{QLatin1String("toggle"), Kind::Flag};
    const Field state{QLatin1String("display state"), Kind::State};
    const Field placement{QLatin1String("fixed placement"), Kind::Placement};
    const Field positions{QLatin1String("list of positions"), Kind::Positions};
    const Field menu = name("menu name");
    const Field key = name("key identifier");
    static const QList<Rule> Table = {
        rule("AK", 11,
            {menu, key, text("label"), integer("key type"), text("command"), text("units"),
                integer("parameter"), text("options"), number("value"), toggle, state, placement}),
        rule("SK", 1, {menu}),
        rule("CK", 3, {menu, key, state}),
        rule("CV", 4, {menu, key, number("value"), toggle}),
        rule("CM", 3, {name("main menu"), name("source menu"), key}),
        rule("SB", 2, {integer("time"), text("text")}),
        rule("DB", 1, {text("text"), text("OK flag")}),
        rule("PING", 0, {}),
        rule("Slave", 0, {integer("link mode")}),
        rule("SQ", 2, {integer("demodulator"), integer("visibility")}),
        rule("SM", 2, {integer("demodulator"), integer("mode")}),
        rule("VER", 0, {}),
        rule("SH", 2, {integer("chart"), integer("visibility")}),
        rule("MS", 3, {name("main menu"), name("source menu"), key}),
        rule("PAX", 1, {integer("switch")}),
        rule("LC", 1, {integer("colour"), integer("trace")}),
        rule("EI", 3, {menu, key, positions}),
        rule("SP", 2, {integer("channel"), integer("span")}),
        rule("IK", 6,
            {text("label"), integer("key type"), text("command"), text("units"),
                integer("parameter"), text("options"), text("pad text"), number("value")}),
        rule("SF", 2, {integer("channel"), number("frequency")}),
        rule("HM", 1, {integer("channel"), number("level")}, true),
        rule("ST", 1, {text("switch")}),
        rule("PM", 3, {number("phase"), integer("magnitude 0"), integer("magnitude 1")}),
        rule("CLEAR", 0, {}),
    };
    return Table;
}

bool isInteger(const QString& value)
{
    bool ok = false;
    value.toInt(&ok);
    return ok;
}

bool isNumber(const QString& value)
{
    bool ok = false;
    const double parsed = value.toDouble(&ok);
    return ok && std::isfinite(parsed);
}

bool isPositions(const QString& value)
{
    const QStringList items = value.split(QLatin1Char(':'), Qt::SkipEmptyParts);
    return std::all_of(items.begin(), items.end(), isInteger);
}

// Out: what a field of this kind has to be, empty when the value is that.
QString expected(Kind kind, const QString& value)
{
    const bool bit = value == QLatin1String("0") || value == QLatin1String("1");
    switch (kind) {
    case Kind::Text:
        return {};
    case Kind::Name:
        return value.isEmpty() ? QStringLiteral("a name") : QString();
    case Kind::Integer:
        return isInteger(value) ? QString() : QStringLiteral("a whole number");
    case Kind::Number:
        return isNumber(value) ? QString() : QStringLiteral("a number");
    case Kind::Flag:
        return bit ? QString() : QStringLiteral("0 or 1");
    case Kind::Placement:
        return bit || value.isEmpty() ? QString() : QStringLiteral("0, 1 or empty");
    case Kind::State:
        return bit || value == QLatin1String("2") ? QString() : QStringLiteral("0, 1 or 2");
    case Kind::Positions:
        return isPositions(value) ? QString() : QStringLiteral("whole numbers separated by \":\"");
    }
    return {};
}

QString shown(const QString& value)
{
    constexpr qsizetype Longest = 40;
    const QString printable = wire::toPrintable(value);
    return printable.size() > Longest ? printable.left(Longest) + QLatin1String("...") : printable;
}

QString unknownWord(const QString& word)
{
    if (word.isEmpty()) {
        return QStringLiteral("the command word is missing");
    }
    const auto& rules = table();
    for (const Rule& known : rules) {
        if (word.trimmed().compare(known.word, Qt::CaseInsensitive) == 0) {
            return QStringLiteral("unknown command word \"%1\", is %2 meant?")
                .arg(shown(word), known.word);
        }
    }
    return QStringLiteral("unknown command word \"%1\"").arg(shown(word));
}

QString faultByRule(const Rule& rule, const QStringList& fields)
{
    if (fields.size() < rule.required) {
        return QStringLiteral("%1 needs %2 field%3, this has %4")
            .arg(rule.word)
            .arg(rule.required)
            .arg(rule.required == 1 ? QString() : QStringLiteral("s"))
            .arg(fields.size());
    }
    for (qsizetype i = 0; i < fields.size(); ++i) {
        if (i >= rule.fields.size() && !rule.repeatsLast) {
            break;
        }
        const Field& field = rule.fields.at(qMin(i, rule.fields.size() - 1));
        const QString wanted = expected(field.kind, fields.at(i));
        if (!wanted.isEmpty()) {
            return QStringLiteral("%1: the %2 must be %3, not \"%4\"")
                .arg(rule.word, field.name, wanted, shown(fields.at(i)));
        }
    }
    return {};
}

QString unsendable(const QString& body)
{
    for (const QChar c : body) {
        if (c == wire::Stx || c == wire::Eot) {
            return QStringLiteral("the frame characters \\x02 and \\x04 cannot stand in a message");
        }
        if (c.unicode() > 0xff) {
            return QStringLiteral("the character U+%1 is not in Latin-1 and cannot be sent")
                .arg(c.unicode(), 4, 16, QLatin1Char('0'));
        }
    }
    return {};
}

} // namespace

namespace rules {

QString fault(const QString& body)
{
    if (body.size() > LongestMessage) {
        return tooLong();
    }
    QString reason = unsendable(body);
    if (!reason.isEmpty()) {
        return reason;
    }
    QStringList fields = body.split(QLatin1Char(','));
    const QString word = fields.takeFirst();
    const auto& rules = table();
    const auto known = std::find_if(rules.begin(), rules.end(),
        [&word](const Rule& candidate) { return candidate.word == word; });
    return known == rules.end() ? unknownWord(word) : faultByRule(*known, fields);
}

QString tooLong()
{
    return QStringLiteral("the message is longer than %1 characters").arg(LongestMessage);
}

} // namespace rules
