#include "menus/MenuMessages.h"

#include "menus/GroupCells.h"
#include "menus/ImmediateKey.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/KeyDefinition.h"
#include "wire/Commands.h"
#include "wire/Log.h"

#include <numeric>

namespace {

// Carries out a change on a key and on every key linked with it.
//
// Quirk: it stops there. A message for a source key reaches all of its copies, one for a copy
// reaches its source, but no other copy. See "Quirks" in docs/architecture.md.
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

qsizetype charactersOf(const QStringList& fields)
{
    return std::accumulate(fields.cbegin(), fields.cend(), qsizetype{0},
        [](qsizetype sum, const QString& field) { return sum + field.size(); });
}

} // namespace

MenuMessages::MenuMessages(QStackedLayout* stack, QObject* parent)
    : QObject(parent)
    , book(stack, this)
{
}

void MenuMessages::defineKey(const QStringList& fields)
{
    const auto definition = KeyDefinition::fromFields(fields);
    if (!definition) {
        return;
    }
    KeyBoard* menu = book.find(definition->menu);
    if (Key* key = MenuBook::findKey(menu, definition->keyId)) {
        updateKey(key, *definition);
        return;
    }
    if ((menu == nullptr && !book.limits.takesMenu()) || !book.limits.takesKey() ||
        !book.limits.takesText(definition->characters())) {
        return;
    }
    menu = book.findOrCreate(definition->menu);
    std::optional<KeyBoard::Cell> cell;
    if (definition->fixed && menu->kind() == KeyBoard::Kind::Pax) {
        cell = groupCells::nextFixed(*menu);
    }
    menu->addKey(*definition, cell);
}

void MenuMessages::updateKey(Key* key, const KeyDefinition& definition)
{
    qsizetype before = 0;
    qsizetype after = 0;
    onKeyAndLinked(key, [&](const Key& each) {
        before += KeyDefinition::of(each).updatedCharacters();
        after += definition.updatedCharacters();
    });
    if (book.limits.takesDefinition(definition.characters()) &&
        book.limits.takesChange(before, after)) {
        onKeyAndLinked(key, [&](Key& each) { definition.update(each); });
    }
}

void MenuMessages::copyKey(const QStringList& fields)
{
    const QString name = fields.value(0);
    if (book.find(name) == nullptr &&
        !(book.limits.takesMenu() && book.limits.takesText(name.size()))) {
        return;
    }
    KeyBoard* target = book.findOrCreate(name);
    Key* source = book.findKey(fields.value(1), fields.value(2));
    if (source != nullptr && book.limits.takesCopy(*source, name)) {
        target->addCopy(*source);
    }
}

// Returns the key that the first two fields name; nullptr, which is logged, when there is none.
Key* MenuMessages::namedKey(QLatin1String word, const QStringList& fields) const
{
    const QString menu = fields.value(0);
    const QString keyId = fields.value(1);
    Key* key = book.findKey(menu, keyId);
    if (key == nullptr && fields.size() > 1) {
        wire::logIgnored(logMenus(), word,
            book.find(menu) == nullptr ? QStringLiteral("no menu ") + menu
                                       : QStringLiteral("no key ") + keyId);
    }
    return key;
}

void MenuMessages::changeValue(const QStringList& fields)
{
    Key* key = namedKey(wire::word::CV, fields);
    if (key == nullptr) {
        return;
    }
    const double value = valueFromText(fields.value(2));
    const bool tog = fields.value(3) == QLatin1String("1");
    onKeyAndLinked(key, [&](Key& each) {
        each.value = value;
        each.valueGiven = true;
        each.setTog(tog);
    });
}

void MenuMessages::changeState(const QStringList& fields)
{
    Key* key = namedKey(wire::word::CK, fields);
    if (key == nullptr) {
        return;
    }
    const int state = fields.value(2).toInt();
    if (state < Key::Disabled || state > Key::Hidden) {
        wire::logIgnored(logMenus(), wire::word::CK, QStringLiteral("no state %1").arg(state));
    }
    onKeyAndLinked(key, [&](Key& each) {
        each.state = state;
        each.applyState();
    });
}

void MenuMessages::lockChoices(const QStringList& fields)
{
    if (!wire::hasEnoughFields(wire::word::EI, fields)) {
        return;
    }
    Key* key = namedKey(wire::word::EI, fields);
    if (key == nullptr) {
        return;
    }
    QList<int> positions;
    if (!book.limits.takesDefinition(fields.value(2).size())) {
        return;
    }
    const auto items = fields.value(2).split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString& item : items) {
        bool ok = false;
        const int position = item.toInt(&ok);
        if (positions.size() >= menuLimits::MaxLocked) {
            wire::logIgnored(logMenus(), wire::word::EI, QStringLiteral("too many positions"));
            break;
        }
        if (ok && position >= 0) {
            positions += position;
        } else {
            wire::logIgnored(logMenus(), wire::word::EI, QStringLiteral("no position ") + item);
        }
    }
    onKeyAndLinked(key, [&](Key& each) { each.itemIds = positions; });
}

void MenuMessages::pressImmediately(const QStringList& fields)
{
    if (!book.limits.takesDefinition(charactersOf(fields))) {
        return;
    }
    if (auto made = ImmediateKey::fromFields(fields)) {
        ImmediateKey* key = made.release();
        key->setParent(this);
        connect(key, &Key::response_message, &book, &MenuBook::keyboard_response_message);
        connect(key, &Key::pressFinished, key, &QObject::deleteLater);
        key->key_button_pushed();
    } else if (wire::whyIgnored(wire::word::IK, fields).isEmpty()) {
        // The table of command words finds nothing wrong with a number like 1e99.
        wire::logIgnored(
            logMenus(), wire::word::IK, QStringLiteral("value out of range: ") + fields.value(7));
    }
}

void MenuMessages::selectMenu(const QStringList& fields)
{
    if (KeyBoard* menu = book.find(fields.value(0))) {
        emit showMenu(menu);
    } else if (!fields.isEmpty()) {
        wire::logIgnored(logMenus(), wire::word::SK, QStringLiteral("no menu ") + fields.value(0));
    }
}
