#include "menus/KeyBoard.h"

#include "menus/Key.h"
#include "menus/MenuGroups.h"
#include "touch/KeyStyle.h"
#include "touch/TextButton.h"

#include <QVBoxLayout>

#include <array>

namespace {
constexpr int KeyWidth = 150;
constexpr int KeyHeight = 80;
constexpr int HighestKey = 100;
constexpr int TitleAlignment = 0x20;
constexpr int GroupRows = 5;
constexpr int GroupColumns = 2;

constexpr int PaxChannelWidth = 330;
constexpr int PaxOptionsHeight = 60;
constexpr QMargins PaxChannelMargins(2, 2, 2, 2);
constexpr QMargins PaxThinMargins(1, 1, 1, 1);

QString menuSheet()
{
    return QStringLiteral(
        "QGroupBox {background-color: black; border-width: 2px; border-style: solid;                            border-color: white; font-size: 12px; color: yellow; border-radius: 4px;}");
}

QString groupSheet()
{
    return QStringLiteral(
        "QGroupBox {background-color: black; border-width: 2px; border-style: solid; border-color: white; font-size: 12px; color: yellow; border-radius: 4px;}                           ");
}

QString paxGroupSheet()
{
    return QStringLiteral("QGroupBox {background-color: black; border-style: none;}");
}
} // namespace

KeyBoard::KeyBoard() = default;

KeyBoard::~KeyBoard()
{
    delete frame;
}

void KeyBoard::new_keyboard(const QString& menuName, int lastRow, int lastCol)
{
    name = menuName;
    row = 0;
    col = 0;
    maxRow = lastRow;
    maxCol = lastCol;
    mainMenu = false;
    frame = new QGroupBox(name + QStringLiteral(" Menu"));
    frame->setAlignment(TitleAlignment);
    auto* layout = new QVBoxLayout(frame);
    pages = new StackLayout;
    layout->addLayout(pages);
    layout->setContentsMargins(4, 15, 4, 4);
    frame->setStyleSheet(menuSheet());
    addTitle();
    grid = addSubPage();
}

QGridLayout* KeyBoard::addSubPage()
{
    auto* page = new QWidget;
    auto* pageGrid = new QGridLayout(page);
    menuGroups::setCellSizes(pageGrid, maxCol, KeyWidth, maxRow, KeyHeight);
    pages->addWidget(page);
    return pageGrid;
}

void KeyBoard::addTitle()
{
    titleLabel = new QLabel(QStringLiteral("QN740 - Menu - ") + name, frame);
    titleLabel->setObjectName(QStringLiteral("titleLabel"));
    titleLabel->hide();
}

void KeyBoard::startMainMenu(const QString& menuName, int lastRow, int lastCol)
{
    name = menuName;
    maxRow = lastRow;
    maxCol = lastCol;
    row = 0;
    col = 0;
    mainMenu = true;
    frame = new QGroupBox;
    grid = new QGridLayout(frame);
    addTitle();
}

void KeyBoard::new_mm_keyboard(const QString& menuName, int lastRow, int lastCol)
{
    startMainMenu(menuName, lastRow, lastCol);
    large = false;
    chan1Grid = menuGroups::newChannelGrid();
    chan2Grid = menuGroups::newChannelGrid();
    combGrid = menuGroups::newChannelGrid();
    optGrid = menuGroups::newOptionsGrid();
    chan1Box = menuGroups::newGroup(QStringLiteral("Channel 1"), chan1Grid, groupSheet());
    chan2Box = menuGroups::newGroup(QStringLiteral("Channel 2"), chan2Grid, groupSheet());
    combBox = menuGroups::newGroup(QStringLiteral("Combiner"), combGrid, groupSheet());
    optBox = menuGroups::newOptionsGroup(optGrid, groupSheet());
    grid->addWidget(chan1Box, 0, 0);
    grid->addWidget(chan2Box, 0, 1);
    grid->addWidget(combBox, 0, 2);
    grid->addWidget(optBox, 1, 0, 1, 3);
}

void KeyBoard::new_PAX_mm_keyboard(const QString& menuName, int lastRow, int lastCol)
{
    startMainMenu(menuName, lastRow, lastCol);
    large = true;
    chan1Grid = new QGridLayout;
    menuGroups::setCellSizes(chan1Grid, 1, KeyWidth, 4, KeyHeight);
    chan1Grid->setContentsMargins(PaxChannelMargins);
    chan2Grid = new QGridLayout;
    chan2Grid->setColumnMinimumWidth(0, PaxChannelWidth);
    optGrid = new QGridLayout;
    menuGroups::setCellSizes(optGrid, 0, KeyWidth, 0, PaxOptionsHeight);
    optGrid->setContentsMargins(PaxThinMargins);
    chan1Box = menuGroups::newGroup(QString(), chan1Grid, paxGroupSheet());
    chan2Box = menuGroups::newGroup(QString(), chan2Grid, paxGroupSheet());
    optBox = menuGroups::newGroup(QString(), optGrid, paxGroupSheet());
    grid->addWidget(chan1Box, 0, 0);
    grid->addWidget(chan2Box, 0, 1);
    grid->addWidget(optBox, 1, 0, 1, 2);
    grid->setContentsMargins(PaxThinMargins);
}

Key* KeyBoard::newKey(const QString& label, const QString& keyId, int type, const QString& command,
    const QString& units, int param, const QString& options, double value, bool tog, int extra,
    bool linked, Key* linkedKey)
{
    auto* button = new TextButton(label);
    button->setMaximumHeight(HighestKey);
    button->setStyleSheet(keyStyle::enabled(large));
    buttons += button;

    auto* key = new Key(this);
    keys += key;
    key->Set_Key(button, large);
    key->type = type;
    key->keyId = keyId;
    key->command = command;
    key->units = units;
    key->param = param;
    key->options = options;
    key->value = value;
    key->setTog(tog);
    key->state = extra;
    key->label = label;
    if (linked && linkedKey != nullptr) {
        key->linkedKeys += linkedKey;
    }
    connect(button, &QPushButton::clicked, key, &Key::key_button_pushed);
    connect(key, &Key::response_message, this, &KeyBoard::kb_response_message);
    return key;
}

QPushButton* KeyBoard::newMoreKey(QWidget* parent)
{
    auto* more = new QPushButton(QStringLiteral("More..."), parent);
    more->setMaximumHeight(HighestKey);
    more->setStyleSheet(keyStyle::more());
    connect(more, &QPushButton::clicked, pages, &StackLayout::setNextIndex);
    return more;
}

// The key in the last cell of a full first sub-page gives way to "More..." and becomes the first of
// the next. On later sub-pages that cell holds "More..." from the start.
void KeyBoard::openNextSubPage()
{
    QLayoutItem* last = grid->itemAtPosition(maxRow, maxCol);
    QWidget* moved = pages->count() == 1 && last != nullptr ? last->widget() : nullptr;
    if (moved != nullptr) {
        grid->removeWidget(moved);
        grid->addWidget(newMoreKey(grid->parentWidget()), maxRow, maxCol);
    }
    grid = addSubPage();
    row = 0;
    col = 0;
    if (moved != nullptr) {
        grid->addWidget(moved, row, col++);
    }
    grid->addWidget(newMoreKey(grid->parentWidget()), maxRow, maxCol);
}

void KeyBoard::add_keyboard_button(const QString& label, const QString& keyId, int type,
    const QString& command, const QString& units, int param, const QString& options, double value,
    bool tog, int extra, bool linked, Key* linkedKey)
{
    const Key* key = newKey(
        label, keyId, type, command, units, param, options, value, tog, extra, linked, linkedKey);
    if (pages == nullptr) {
        placeInGroup(key, row, col++); // a main menu has no sub-pages
        return;
    }
    const bool atMoreKey = pages->count() > 1 && row == maxRow && col == maxCol;
    if (row > maxRow || atMoreKey) {
        openNextSubPage();
    }
    grid->addWidget(key->GetKey(), row, col);
    if (++col > maxCol) {
        col = 0;
        ++row;
    }
}

void KeyBoard::add_keyboard_button_fixed(const QString& label, const QString& keyId, int type,
    const QString& command, const QString& units, int param, const QString& options, double value,
    bool tog, int extra, bool linked, Key* linkedKey, int cellRow, int cellCol)
{
    placeInGroup(newKey(label, keyId, type, command, units, param, options, value, tog, extra,
                     linked, linkedKey),
        cellRow, cellCol);
}

void KeyBoard::placeInGroup(const Key* key, int cellRow, int cellCol)
{
    QGridLayout* group = nullptr;
    int groupRow = cellRow;
    int groupCol = cellCol;
    if (cellRow >= GroupRows) {
        group = optGrid;
        groupRow = 0;
    } else if (cellCol >= 0 && cellCol < 3 * GroupColumns) {
        const std::array<QGridLayout*, 3> groups{chan1Grid, chan2Grid, combGrid};
        group = groups.at(static_cast<std::size_t>(cellCol / GroupColumns));
        groupCol = cellCol % GroupColumns;
    }
    if (group != nullptr && groupRow >= 0 && groupCol >= 0) {
        group->addWidget(key->GetKey(), groupRow, groupCol);
    } else {
        key->GetKey()->setParent(frame); // not shown, and gone with the menu
        key->GetKey()->hide();
    }
}

bool KeyBoard::isPAXMainMenu() const
{
    return large;
}

void KeyBoard::deleteKeys()
{
    for (Key* key : std::as_const(keys)) {
        key->deleteLater();
    }
    keys.clear();
    for (QPushButton* button : std::as_const(buttons)) {
        button->deleteLater();
    }
    buttons.clear();
}

void KeyBoard::kb_response_message(const QString& message)
{
    emit keyboard_response_message(message);
}
