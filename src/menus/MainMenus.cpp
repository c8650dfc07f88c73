#include "menus/MainMenus.h"

#include "menus/GroupCells.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuBook.h"
#include "menus/SpecialMenu.h"
#include "touch/KeyStyle.h"
#include "touch/Sizes.h"
#include "touch/TextButton.h"

namespace {

constexpr QLatin1String MainName("Main");
constexpr int LastRow = 5;
constexpr int LastCol = 5;
constexpr int PaxLastCol = 2;
constexpr int OptionsRow = 5;

// Quirk: row 5 sends every key that "AK" defines for a main menu itself to the group "Options". See
// "Quirks" in docs/architecture.md.
void startInOptions(KeyBoard& menu)
{
    menu.row = OptionsRow;
    menu.col = 0;
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
        std::optional<KeyBoard::Cell> cell;
        if (menu->kind() != KeyBoard::Kind::Plain) {
            cell = groupCells::nextOfColumn(*menu, fields.value(1));
        }
        menu->addCopy(*key, cell);
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
        std::optional<KeyBoard::Cell> cell;
        if (menu->kind() != KeyBoard::Kind::Plain) {
            cell = groupCells::nextFixed(*menu);
        }
        menu->addCopy(*key, cell);
    }
}

Key* MainMenus::source(const QStringList& fields) const
{
    return m_book.findKey(fields.value(1), fields.value(2));
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
    span->setMaximumHeight(touch::MaxKeyHeight);
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
