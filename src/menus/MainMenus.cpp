#include "menus/MainMenus.h"

#include "menus/GroupCells.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuBook.h"
#include "menus/SpecialMenu.h"
#include "touch/KeyStyle.h"
#include "touch/Sizes.h"
#include "touch/TextButton.h"
#include "wire/Commands.h"
#include "wire/Log.h"

namespace {

constexpr QLatin1String MainName("Main");
constexpr QLatin1String SpanName("spanButton");
constexpr int LastRow = 5;
constexpr int LastCol = 5;
constexpr int PaxLastCol = 2;
constexpr int OptionsRow = 5;

// Quirk: row 5 sends every key that "AK" defines for a main menu itself to the group "Options". See
// "Quirks" in docs/architecture.md.
void startInOptions(KeyBoard& menu)
{
    menu.row = OptionsRow;
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
    if (name.isEmpty()) {
        return;
    }
    KeyBoard* menu = m_book.find(name);
    if (menu == nullptr && mayMake(name)) {
        menu = newMainMenu(name);
    }
    if (menu == nullptr) {
        return;
    }
    if (name == MainName) {
        emit mainMenuNamed(menu);
    }
    Key* key = source(wire::word::CM, fields);
    if (key != nullptr && m_book.limits.takesCopy(*key, name)) {
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
    if (name.isEmpty()) {
        return;
    }
    KeyBoard* menu = m_book.find(name);
    if (menu == nullptr && mayMake(name)) {
        menu = newPaxMenu(name);
    }
    if (menu == nullptr) {
        return;
    }
    Key* key = source(wire::word::MS, fields);
    if (key != nullptr && m_book.limits.takesCopy(*key, name)) {
        std::optional<KeyBoard::Cell> cell;
        if (menu->kind() != KeyBoard::Kind::Plain) {
            cell = groupCells::nextFixed(*menu);
        }
        menu->addCopy(*key, cell);
    }
}

bool MainMenus::mayMake(const QString& name) const
{
    return m_book.limits.takesMenu() && m_book.limits.takesText(name.size());
}

// Returns the key to copy; nullptr, which is logged, when there is none. A message with the main
// menu alone names none.
Key* MainMenus::source(QLatin1String word, const QStringList& fields) const
{
    if (fields.size() < 2) {
        return nullptr;
    }
    const KeyBoard* menu = m_book.find(fields.value(1));
    Key* key = MenuBook::findKey(menu, fields.value(2));
    if (fields.size() == 2) {
        wire::logIgnored(logMenus(), word, QStringLiteral("2 fields, needs 3"));
    } else if (menu == nullptr) {
        wire::logIgnored(logMenus(), word, QStringLiteral("no menu ") + fields.value(1));
    } else if (key == nullptr) {
        wire::logIgnored(logMenus(), word, QStringLiteral("no key ") + fields.value(2));
    }
    return key;
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
    addSpanKey(*menu);
    return menu;
}

// The key's sheet is that of a key that can be pressed at all times. Before there is a spectrum the
// look of a disabled key is painted in its place.
void MainMenus::addSpanKey(KeyBoard& menu)
{
    auto* span = new TextButton(QStringLiteral("Span"), menu.frame, TextButton::DarkWhenDisabled);
    span->setObjectName(SpanName);
    span->setStyleSheet(keyStyle::enabled(true));
    span->setMaximumHeight(touch::MaxKeyHeight);
    span->setEnabled(m_hasSpectrum);
    menu.optGrid->addWidget(span, 0, menu.col++);
    connect(span, &QPushButton::clicked, this, &MainMenus::spanClicked);
}

void MainMenus::enableSpan()
{
    m_hasSpectrum = true;
    for (const KeyBoard* menu : std::as_const(m_book.pages)) {
        if (auto* span = menu->frame->findChild<QPushButton*>(SpanName)) {
            span->setEnabled(true);
        }
    }
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
