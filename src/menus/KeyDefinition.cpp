#include "menus/KeyDefinition.h"

#include "menus/Key.h"
#include "wire/Commands.h"

#include <cmath>

namespace {
bool isSet(const QString& field)
{
    return field == QLatin1String("1");
}
} // namespace

double valueFromText(const QString& text)
{
    bool ok = false;
    const float value = text.toFloat(&ok);
    return ok && std::isfinite(value) ? static_cast<double>(value) : 0.0;
}

std::optional<KeyDefinition> KeyDefinition::fromFields(const QStringList& fields)
{
    if (!wire::hasEnoughFields(wire::word::AK, fields)) {
        return std::nullopt;
    }
    KeyDefinition definition;
    definition.menu = fields.value(0);
    definition.keyId = fields.value(1);
    definition.label = fields.value(2);
    definition.type = fields.value(3).toInt();
    definition.command = fields.value(4);
    definition.units = fields.value(5);
    definition.param = fields.value(6).toInt();
    definition.options = fields.value(7);
    definition.value = valueFromText(fields.value(8));
    definition.tog = isSet(fields.value(9));
    definition.state = fields.value(10).toInt();
    definition.fixed = isSet(fields.value(11));
    return definition;
}

KeyDefinition KeyDefinition::of(const Key& key)
{
    KeyDefinition definition;
    definition.keyId = key.keyId;
    definition.label = key.label;
    definition.type = key.type;
    definition.command = key.command;
    definition.units = key.units;
    definition.param = key.param;
    definition.options = key.options;
    definition.value = key.value;
    definition.tog = key.tog();
    definition.state = key.state;
    definition.itemIds = key.itemIds;
    return definition;
}

qsizetype KeyDefinition::characters() const
{
    return menu.size() + keyId.size() + updatedCharacters();
}

qsizetype KeyDefinition::updatedCharacters() const
{
    return label.size() + command.size() + units.size() + options.size();
}

void KeyDefinition::update(Key& key) const
{
    key.type = type;
    key.command = command;
    key.units = units;
    key.param = param;
    key.options = options;
    // Quirk: a value other than 0 stays, because only "CV" changes values. See "Quirks" in
    // docs/architecture.md.
    if (key.value == 0.0) {
        key.value = value;
    }
    key.setTog(tog);
    // Quirk: the state is stored and not shown; "CK" is the message that shows it. See "Quirks" in
    // docs/architecture.md.
    key.state = state;
    key.label = label;
    if (QPushButton* button = key.GetKey()) {
        button->setText(label);
    }
}
