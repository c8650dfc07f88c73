#include "menus/ImmediateKey.h"

#include "touch/TextButton.h"
#include "wire/Commands.h"

#include <cmath>

namespace {
constexpr qsizetype ValueField = 7;
} // namespace

std::unique_ptr<ImmediateKey> ImmediateKey::fromFields(const QStringList& fields)
{
    if (!wire::hasEnoughFields(wire::word::IK, fields)) {
        return nullptr;
    }
    bool typeOk = false;
    bool paramOk = false;
    bool valueOk = true;
    std::unique_ptr<ImmediateKey> key(new ImmediateKey);
    key->label = fields.value(0);
    key->type = fields.value(1).toInt(&typeOk);
    key->command = fields.value(2);
    key->units = fields.value(3);
    key->param = fields.value(4).toInt(&paramOk);
    key->options = fields.value(5);
    key->padText = fields.value(6);
    if (fields.size() > ValueField) {
        const float value = fields.value(ValueField).toFloat(&valueOk);
        valueOk = valueOk && std::isfinite(value);
        key->value = static_cast<double>(value);
        key->valueGiven = true;
    }
    if (!typeOk || !paramOk || !valueOk) {
        return nullptr;
    }
    key->m_button = std::make_unique<TextButton>(key->label);
    key->Set_Key(key->m_button.get(), false);
    return key;
}
