// The definition of a key, and a press of that key: the first line is the fields of "AK", the rest
// is what the operator does to the editor that opens, see Script.
#include "Script.h"
#include "Target.h"

#include "menus/Key.h"
#include "menus/KeyDefinition.h"
#include "touch/TextButton.h"
#include "wire/Message.h"

#include <QMainWindow>

#include <memory>

namespace {

class PressedKey final : public Script
{
public:
    PressedKey()
    {
        m_window.setFixedSize(800, 480);
        m_window.show();
    }

    void press(const KeyDefinition& definition, const QByteArray& script)
    {
        m_key = std::make_unique<Key>();
        m_button = new TextButton(definition.label, &m_window);
        m_key->Set_Key(m_button, false);
        definition.update(*m_key);
        m_key->itemIds = definition.itemIds;
        m_key->applyState();
        QObject::connect(m_key.get(), &Key::response_message, m_key.get(), check);
        checkCopy();
        m_pressed = false;
        run("\n" + script);
        delete m_button;
        m_key.reset();
    }

private:
    static void check(const QString& message)
    {
        FUZZ_CHECK(message.startsWith(wire::Stx) && message.endsWith(wire::Eot));
    }

    // A copy of the key is the same key.
    void checkCopy() const
    {
        const KeyDefinition copy = KeyDefinition::of(*m_key);
        Key other;
        copy.update(other);
        FUZZ_CHECK(other.label == m_key->label && other.type == m_key->type);
        FUZZ_CHECK(other.options == m_key->options && other.units == m_key->units);
        FUZZ_CHECK(other.value == m_key->value && other.param == m_key->param);
    }

    void proceed() override
    {
        if (!m_pressed) {
            m_pressed = true;
            next();
            m_key->key_button_pushed();
            return;
        }
        if (static_cast<char>(next()) == Operator) {
            operate();
        }
    }

    QMainWindow m_window;
    std::unique_ptr<Key> m_key;
    TextButton* m_button = nullptr;
    bool m_pressed = false;
};

} // namespace

void fuzz::takeKey(const QByteArray& input)
{
    const qsizetype end = input.indexOf('\n');
    const QString fields = QString::fromLatin1(input.left(end));
    const auto definition = KeyDefinition::fromFields(fields.split(QLatin1Char(',')));
    if (!definition) {
        return;
    }
    // Not deleted: nothing of it may go after the application.
    static auto* const key = new PressedKey;
    key->press(*definition, end < 0 ? QByteArray() : input.mid(end + 1));
}
