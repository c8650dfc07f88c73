#include "wire/Commands.h"

#include "wire/Message.h"

#include <algorithm>

namespace wire {

namespace {

Field optional(const char* name, FieldType type)
{
    return {QLatin1String(name), type, false};
}

Field required(const char* name, FieldType type)
{
    return {QLatin1String(name), type, true};
}

const Field& menuName()
{
    static const Field menu = optional("menu name", FieldType::Name);
    return menu;
}

const Field& keyId()
{
    static const Field key = optional("key identifier", FieldType::Name);
    return key;
}

// The panel reads the numbers of these messages leniently: one that does not parse counts as 0.
QList<Command> menuCommands()
{
    const Field label = optional("label", FieldType::Text);
    const Field command = optional("command", FieldType::Text);
    const Field units = optional("units", FieldType::Text);
    const Field options = optional("options", FieldType::Text);
    const Field value = optional("value", FieldType::Number);
    const Field toggle = optional("toggle", FieldType::Flag);
    const Field state = optional("display state", FieldType::State);
    const QList<Field> copy{
        required("main menu", FieldType::Name), optional("source menu", FieldType::Name), keyId()};
    return {
        {word::AK, Room::Menus, 11, 11,
            {menuName(), keyId(), label, optional("key type", FieldType::Integer), command, units,
                optional("parameter", FieldType::Integer), options, value, toggle, state,
                optional("fixed placement", FieldType::Placement)}},
        {word::SK, Room::Menus, 1, 1, {menuName()}},
        {word::CK, Room::Menus, 2, 3, {menuName(), keyId(), state}},
        {word::CV, Room::Menus, 2, 4, {menuName(), keyId(), value, toggle}},
        {word::CM, Room::Menus, 1, 3, copy},
        {word::MS, Room::Menus, 1, 3, copy},
        {word::Pax, Room::Menus, 1, 1, {optional("switch", FieldType::Integer)}},
        {word::EI, Room::Menus, 3, 3,
            {menuName(), keyId(), optional("list of positions", FieldType::Positions)}},
        {word::IK, Room::Menus, 6, 6,
            {label, required("key type", FieldType::Integer), command, units,
                required("parameter", FieldType::Integer), options,
                optional("pad text", FieldType::Text), required("value", FieldType::Number)}},
        {word::Clear, Room::Menus, 0, 0, {}},
    };
}

QList<Command> linkCommands()
{
    return {
        {word::SB, Room::Link, 1, 2,
            {required("time", FieldType::Integer), optional("text", FieldType::Text)}},
        {word::DB, Room::Link, 1, 1,
            {optional("text", FieldType::Text), optional("OK flag", FieldType::Text)}},
        {word::Ping, Room::Link, 0, 0, {}},
        {word::Slave, Room::Link, 0, 0, {required("link mode", FieldType::Integer)}},
        {word::Ver, Room::Link, 0, 0, {}},
    };
}

QList<Command> scopeCommands()
{
    const Field demodulator = required("demodulator", FieldType::Integer);
    return {
        {word::SQ, Room::Scopes, 2, 2, {demodulator, required("visibility", FieldType::Integer)}},
        {word::SM, Room::Scopes, 2, 2, {demodulator, required("mode", FieldType::Integer)}},
        {word::PM, Room::Scopes, 3, 3,
            {required("phase", FieldType::Number), required("magnitude 0", FieldType::Integer),
                required("magnitude 1", FieldType::Integer)}},
    };
}

QList<Command> spectrumCommands()
{
    const Field channel = required("channel", FieldType::Integer);
    return {
        {word::SH, Room::Spectrum, 2, 2,
            {required("chart", FieldType::Integer), required("visibility", FieldType::Integer)}},
        {word::LC, Room::Spectrum, 1, 1,
            {required("colour", FieldType::Integer), required("trace", FieldType::Integer)}},
        {word::SP, Room::Spectrum, 2, 2, {channel, required("span", FieldType::Integer)}},
        {word::SF, Room::Spectrum, 2, 2, {channel, required("frequency", FieldType::Number)}},
        {word::HM, Room::Spectrum, 1, 1, {channel, required("level", FieldType::Number)}, true},
        {word::ST, Room::Spectrum, 1, 1, {optional("switch", FieldType::Text)}},
    };
}

bool arePositions(const QString& text)
{
    const QStringList items = text.split(QLatin1Char(':'), Qt::SkipEmptyParts);
    return std::all_of(items.begin(), items.end(),
        [](const QString& item) { return fits(FieldType::Integer, item); });
}

} // namespace

const Field* Command::field(qsizetype at) const
{
    if (at < fields.size()) {
        return &fields.at(at);
    }
    return repeatsLast ? &fields.constLast() : nullptr;
}

const QList<Command>& toPanel()
{
    static const QList<Command> commands =
        menuCommands() + linkCommands() + scopeCommands() + spectrumCommands();
    return commands;
}

const QList<Command>& fromPanel()
{
    static const QList<Command> commands{
        {word::Pong, Room::Link, 0, 0, {}},
        {word::Slave, Room::Link, 1, 1, {required("link mode", FieldType::Integer)}},
        {word::Main, Room::Menus, 0, 0, {}},
    };
    return commands;
}

const Command* findCommand(const QList<Command>& commands, const QString& word)
{
    const auto found = std::find_if(commands.begin(), commands.end(),
        [&word](const Command& command) { return word == command.word; });
    return found == commands.end() ? nullptr : &*found;
}

bool hasEnoughFields(QLatin1String word, const QStringList& fields)
{
    const Command* command = findCommand(toPanel(), word);
    return command != nullptr && fields.size() >= command->minFields;
}

const Command* commandFromPanel(const QStringList& message)
{
    const Command* command = findCommand(fromPanel(), message.value(0));
    if (command == nullptr || message.size() != command->fields.size() + 1) {
        return nullptr;
    }
    const bool allFit =
        std::equal(command->fields.begin(), command->fields.end(), message.begin() + 1,
            [](const Field& field, const QString& text) { return fits(field.type, text); });
    return allFit ? command : nullptr;
}

bool fits(FieldType type, const QString& text)
{
    const bool isBit = text == QLatin1String("0") || text == QLatin1String("1");
    bool isNumber = false;
    switch (type) {
    case FieldType::Text:
        return true;
    case FieldType::Name:
        return !text.isEmpty();
    case FieldType::Integer:
        text.toInt(&isNumber);
        return isNumber;
    case FieldType::Number:
        text.toDouble(&isNumber);
        return isNumber;
    case FieldType::Flag:
        return isBit;
    case FieldType::Placement:
        return isBit || text.isEmpty();
    case FieldType::State:
        return isBit || text == QLatin1String("2");
    case FieldType::Positions:
        return arePositions(text);
    }
    return false;
}

QString description(FieldType type)
{
    switch (type) {
    case FieldType::Text:
        return {};
    case FieldType::Name:
        return QStringLiteral("a name");
    case FieldType::Integer:
        return QStringLiteral("a whole number");
    case FieldType::Number:
        return QStringLiteral("a number");
    case FieldType::Flag:
        return QStringLiteral("0 or 1");
    case FieldType::Placement:
        return QStringLiteral("0, 1 or empty");
    case FieldType::State:
        return QStringLiteral("0, 1 or 2");
    case FieldType::Positions:
        return QStringLiteral("whole numbers separated by \":\"");
    }
    return {};
}

QString excerpt(const QString& text)
{
    constexpr qsizetype MaxShown = 40;
    const QString printable = toPrintable(text);
    return printable.size() > MaxShown ? printable.left(MaxShown) + QLatin1String("...")
                                       : printable;
}

QString wrongValue(const Command& command, const Field& field, const QString& text)
{
    return QStringLiteral("%1: the %2 must be %3, not \"%4\"")
        .arg(command.word, field.name, description(field.type), excerpt(text));
}

QString whyIgnored(const QString& word, const QStringList& fields)
{
    const Command* command = findCommand(toPanel(), word);
    if (command == nullptr) {
        return QStringLiteral("unknown word ") + excerpt(word);
    }
    if (fields.size() < command->minFields) {
        return QStringLiteral("%1: %2 field%3, needs %4")
            .arg(command->word)
            .arg(fields.size())
            .arg(fields.size() == 1 ? QString() : QStringLiteral("s"))
            .arg(command->minFields);
    }
    for (qsizetype at = 0; at < fields.size(); ++at) {
        const Field* field = command->field(at);
        if (field != nullptr && field->isRequired && !fits(field->type, fields.at(at))) {
            return wrongValue(*command, *field, fields.at(at));
        }
    }
    return {};
}

QString message(QLatin1String word, const QStringList& fields)
{
    return frame((QStringList(QString(word)) + fields).join(QLatin1Char(',')));
}

} // namespace wire
