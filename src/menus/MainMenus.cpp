#include "menus/MainMenus.h"

#include "menus/GroupCells.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/KeyDefinition.h"
#include "menus/MenuBook.h"
#include "menus/SpecialMenu.h"
#include "touch/KeyStyle.h"
#include "touch/TextButton.h"

namespace {

constexpr QLatin1String MainName("Main");
constexpr int LastRow = 5;
constexpr int LastCol = 5;
constexpr int PaxLastCol = 2;
constexpr int OptionsRow = 5;
constexpr int HighestKey = 100;

// Keys that the main unit defines for a main menu itself go to its options.
void startInOptions(KeyBoard& menu)
{
    menu.row = OptionsRow;
    menu.col = 0;
}

template <class NextCell>
void addCopy(KeyBoard& target, Key& source, NextCell nextCell)
{
    const KeyDefinition copy = KeyDefinition::of(source);
    if (target.mainMenu) {
        const groupCells::Cell cell = nextCell();
        target.add_keyboard_button_fixed(copy.label, copy.keyId, copy.type, copy.command,
            copy.units, copy.param, copy.options, copy.value, copy.tog, copy.state, true, &source,
            cell.row, cell.col);
    } else {
        target.add_keyboard_button(copy.label, copy.keyId, copy.type, copy.command, copy.units,
            copy.param, copy.options, copy.value, copy.tog, copy.state, true, &source);
    }
    Key* key = target.keys.last();
    key->itemIds = source.itemIds;
    source.linkedKeys += key;
}

} // namespace

MainMenus::MainMenus(MenuBook& book, QObject* parent)
    : QObject(parent)
    , m_book(book)
{
}

void MainMenus::copyToMainMenu(const QStringList& fields)
{
    const QString name = fields.value(0);
    KeyBoard* menu = m_book.find(name);
    if (menu == nullptr) {
        menu = newMainMenu(name);
    }
    if (name == MainName) {
        emit mainMenuNamed(menu);
    }
    if (Key* key = source(fields)) {
        addCopy(*menu, *key, [&] { return groupCells::nextOfColumn(*menu, fields.value(1)); });
    }
}

void MainMenus::copyToPaxMenu(const QStringList& fields)
{
    const QString name = fields.value(0);
    KeyBoard* menu = m_book.find(name);
    if (menu == nullptr) {
        menu = newPaxMenu(name);
    }
    if (Key* key = source(fields)) {
        addCopy(*menu, *key, [&] { return groupCells::nextFixed(*menu); });
    }
}

Key* MainMenus::source(const QStringList& fields) const
{
    return MenuBook::findKey(m_book.find(fields.value(1)), fields.value(2));
}

KeyBoard* MainMenus::newMainMenu(const QString& name)
{
    auto* menu = new KeyBoard;
    menu->new_mm_keyboard(name, LastRow, LastCol);
    startInOptions(*menu);
    m_book.add(menu);
    return menu;
}

KeyBoard* MainMenus::newPaxMenu(const QString& name)
{
    auto* menu = new KeyBoard;
    menu->new_PAX_mm_keyboard(name, LastRow, PaxLastCol);
    startInOptions(*menu);
    m_book.add(menu);
    emit paxMenuMade(menu, static_cast<int>(m_book.pages.size()) - 1);

    auto* span = new TextButton(QStringLiteral("Span"), menu->frame);
    span->setObjectName(QStringLiteral("spanButton"));
    span->setStyleSheet(keyStyle::enabled(true));
    span->setMaximumHeight(HighestKey);
    menu->optGrid->addWidget(span, 0, menu->col++);
    connect(span, &QPushButton::clicked, this, &MainMenus::spanClicked);
    return menu;
}

QWidget* MainMenus::regroupMain()
{
    KeyBoard* menu = m_book.find(MainName);
    QWidget* page = menu != nullptr ? specialMenu::regrouped(*menu) : nullptr;
    if (page != nullptr) {
        m_book.addPage(page);
    }
    return page;
}
