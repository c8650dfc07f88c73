#include "menus/MenuMessages.h"

#include "menus/GroupCells.h"
#include "menus/ImmediateKey.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/KeyDefinition.h"

namespace {

// Carries out a change on a key and on every key that mirrors it.
template <class Change>
void onKeyAndLinked(Key* key, Change change)
{
    change(*key);
    const auto linked = key->linkedKeys;
    for (const QPointer<Key>& other : linked) {
        if (other != nullptr) {
            change(*other);
        }
    }
}

} // namespace

MenuMessages::MenuMessages(QStackedLayout* stack, QObject* parent)
    : QObject(parent)
    , book(stack)
{
}

void MenuMessages::defineKey(const QStringList& fields)
{
    const auto definition = KeyDefinition::fromFields(fields);
    if (!definition) {
        return;
    }
    KeyBoard* menu = book.findOrCreate(definition->menu);
    if (Key* key = MenuBook::findKey(menu, definition->keyId)) {
        onKeyAndLinked(key, [&](Key& each) { definition->update(each); });
    } else if (menu->mainMenu) {
        addToMainMenu(menu, *definition);
    } else {
        menu->add_keyboard_button(definition->label, definition->keyId, definition->type,
            definition->command, definition->units, definition->param, definition->options,
            definition->value, definition->tog, definition->state, false, nullptr);
    }
}

void MenuMessages::addToMainMenu(KeyBoard* menu, const KeyDefinition& definition)
{
    int row = menu->row;
    int col = menu->col;
    if (definition.fixed && menu->isPAXMainMenu()) {
        const groupCells::Cell cell = groupCells::nextFixed(*menu);
        row = cell.row;
        col = cell.col;
    } else {
        ++menu->col;
    }
    menu->add_keyboard_button_fixed(definition.label, definition.keyId, definition.type,
        definition.command, definition.units, definition.param, definition.options,
        definition.value, definition.tog, definition.state, false, nullptr, row, col);
}

void MenuMessages::copyKey(const QStringList& fields)
{
    KeyBoard* target = book.findOrCreate(fields.value(0));
    Key* source = MenuBook::findKey(book.find(fields.value(1)), fields.value(2));
    if (source == nullptr) {
        return;
    }
    const KeyDefinition copy = KeyDefinition::of(*source);
    target->add_keyboard_button(copy.label, copy.keyId, copy.type, copy.command, copy.units,
        copy.param, copy.options, copy.value, copy.tog, copy.state, true, source);
    source->linkedKeys += target->keys.last();
}

void MenuMessages::changeValue(const QStringList& fields)
{
    Key* key = MenuBook::findKey(book.find(fields.value(0)), fields.value(1));
    if (key == nullptr) {
        return;
    }
    const double value = valueFromText(fields.value(2));
    const bool tog = fields.value(3) == QLatin1String("1");
    onKeyAndLinked(key, [&](Key& each) {
        each.value = value;
        each.setTog(tog);
    });
}

void MenuMessages::changeState(const QStringList& fields)
{
    Key* key = MenuBook::findKey(book.find(fields.value(0)), fields.value(1));
    if (key == nullptr) {
        return;
    }
    const int state = fields.value(2).toInt();
    onKeyAndLinked(key, [&](Key& each) {
        each.state = state;
        each.applyState();
    });
}

void MenuMessages::lockChoices(const QStringList& fields)
{
    if (fields.size() < 3) {
        return;
    }
    Key* key = MenuBook::findKey(book.find(fields.value(0)), fields.value(1));
    if (key == nullptr) {
        return;
    }
    QList<int> positions;
    const auto items = fields.value(2).split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString& item : items) {
        bool ok = false;
        const int position = item.toInt(&ok);
        if (ok && position >= 0) {
            positions += position;
        }
    }
    onKeyAndLinked(key, [&](Key& each) { each.itemIds = positions; });
}

void MenuMessages::pressImmediately(const QStringList& fields)
{
    if (const auto key = ImmediateKey::fromFields(fields)) {
        connect(key.get(), &Key::response_message, &book, &MenuBook::keyboard_response_message);
        key->key_button_pushed();
    }
}

void MenuMessages::selectMenu(const QStringList& fields)
{
    if (KeyBoard* menu = book.find(fields.value(0))) {
        emit showMenu(menu);
    }
}
