#include "sim/unit/MessageRules.h"

#include "wire/Commands.h"
#include "wire/Message.h"

#include <QStringList>

#include <cmath>

namespace {

// Whether the value is of this type. A unit sends finite numbers only.
bool isValid(wire::FieldType type, const QString& value)
{
    const bool isFinite = type != wire::FieldType::Number || std::isfinite(value.toDouble());
    return isFinite && wire::fits(type, value);
}

QString unknownWord(const QString& word)
{
    if (word.isEmpty()) {
        return QStringLiteral("the command word is missing");
    }
    for (const wire::Command& known : wire::toPanel()) {
        if (word.trimmed().compare(known.word, Qt::CaseInsensitive) == 0) {
            return QStringLiteral("unknown command word \"%1\", is %2 meant?")
                .arg(wire::excerpt(word), known.word);
        }
    }
    return QStringLiteral("unknown command word \"%1\"").arg(wire::excerpt(word));
}

MenuFault faultOf(const wire::Command& command, const QStringList& fields)
{
    if (fields.size() < command.completeFields) {
        return {MenuFault::Kind::TooFew,
            QStringLiteral("%1 needs %2 field%3, this has %4")
                .arg(command.word)
                .arg(command.completeFields)
                .arg(command.completeFields == 1 ? QString() : QStringLiteral("s"))
                .arg(fields.size())};
    }
    for (qsizetype i = 0; i < fields.size(); ++i) {
        const wire::Field* field = command.field(i);
        if (field == nullptr) {
            break;
        }
        if (!isValid(field->type, fields.at(i))) {
            return {MenuFault::Kind::WrongValue, wire::wrongValue(command, *field, fields.at(i))};
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

MenuFault check(const QString& body)
{
    using Kind = MenuFault::Kind;
    if (body.size() > LongestMessage) {
        return {Kind::TooLong, tooLong()};
    }
    const QString reason = unsendable(body);
    if (!reason.isEmpty()) {
        return {Kind::Unsendable, reason};
    }
    QStringList fields = body.split(QLatin1Char(','));
    const QString word = fields.takeFirst();
    const wire::Command* known = wire::findCommand(wire::toPanel(), word);
    return known == nullptr ? MenuFault{Kind::UnknownWord, unknownWord(word)}
                            : faultOf(*known, fields);
}

QString fault(const QString& body)
{
    return check(body).text;
}

QString tooLong()
{
    return QStringLiteral("the message is longer than %1 characters").arg(LongestMessage);
}

} // namespace rules
