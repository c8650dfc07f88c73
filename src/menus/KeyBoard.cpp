#include "menus/KeyBoard.h"

#include "menus/Key.h"
#include "menus/KeyDefinition.h"
#include "menus/MenuGroups.h"
#include "menus/MoreKey.h"
#include "touch/KeyButton.h"
#include "touch/KeyStyle.h"
#include "touch/Sizes.h"
#include "wire/Log.h"
#include "wire/Message.h"

#include <QVBoxLayout>

namespace {
constexpr int TitleAlignment = 0x20;
constexpr QMargins FrameMargins(4, 15, 4, 4);

constexpr int PaxLastRow = 4;
constexpr int PaxChannelWidth = 330;
constexpr int PaxOptionsHeight = 60;
constexpr QMargins PaxChannelMargins(2, 2, 2, 2);
constexpr QMargins PaxThinMargins(1, 1, 1, 1);

// Quirk: the blanks inside and behind these sheets are part of their texts. See "Quirks" in
// docs/architecture.md.
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

// A widget is polished in the next turn of the event loop, and all that lies in it by then as well.
// So it is done here, before there are keys: these are to be polished when they are shown.
void polishEmpty(QWidget* page)
{
    page->ensurePolished();
}
} // namespace

KeyBoard::KeyBoard()
    : m_index(keys, &Key::keyId)
{
}

KeyBoard::~KeyBoard()
{
    delete frame;
}

void KeyBoard::startMenu(Kind kind, const QString& menuName, int lastRow, int lastCol)
{
    m_kind = kind;
    mainMenu = kind != Kind::Plain;
    large = kind == Kind::Pax;
    name = menuName;
    maxRow = lastRow;
    maxCol = lastCol;
    row = 0;
    col = 0;
    frame = new QGroupBox;
    addTitle();
}

void KeyBoard::new_keyboard(const QString& menuName, int lastRow, int lastCol)
{
    startMenu(Kind::Plain, menuName, lastRow, lastCol);
    frame->setStyleSheet(menuSheet());
    polishEmpty(frame);
    // With the sheet: measured without it, the title would load a font that it is not drawn in.
    // A group box takes a lone "&" in its title for the mark of a shortcut and does not draw it.
    const QString shownName = QString(name).replace(QLatin1Char('&'), QLatin1String("&&"));
    frame->setTitle(shownName + QStringLiteral(" Menu"));
    frame->setAlignment(TitleAlignment);
    auto* layout = new QVBoxLayout(frame);
    pages = new StackLayout;
    layout->addLayout(pages);
    layout->setContentsMargins(FrameMargins);
    grid = addSubPage();
}

QGridLayout* KeyBoard::addSubPage()
{
    auto* page = new QWidget;
    auto* pageGrid = new QGridLayout(page);
    menuGroups::setCellSizes(pageGrid, maxCol, menuGroups::KeyWidth, maxRow, menuGroups::KeyHeight);
    pages->addWidget(page);
    polishEmpty(page);
    return pageGrid;
}

void KeyBoard::addTitle()
{
    titleLabel = new QLabel(QStringLiteral("QN740 - Menu - ") + name, frame);
    titleLabel->setObjectName(QStringLiteral("titleLabel"));
    titleLabel->setTextFormat(Qt::PlainText);
    titleLabel->hide();
}

void KeyBoard::new_mm_keyboard(const QString& menuName, int lastRow, int lastCol)
{
    startMenu(Kind::Main, menuName, lastRow, lastCol);
    grid = new QGridLayout(frame);
    const menuGroups::FourGroups groups = menuGroups::addFourGroups(grid, groupSheet());
    chan1Grid = groups.grids.channel1;
    chan2Grid = groups.grids.channel2;
    combGrid = groups.grids.combiner;
    optGrid = groups.grids.options;
    chan1Box = groups.channel1;
    chan2Box = groups.channel2;
    combBox = groups.combiner;
    optBox = groups.options;
    polishEmpty(frame);
}

void KeyBoard::new_PAX_mm_keyboard(const QString& menuName, int lastRow, int lastCol)
{
    startMenu(Kind::Pax, menuName, lastRow, lastCol);
    grid = new QGridLayout(frame);
    chan1Grid = new QGridLayout;
    menuGroups::setCellSizes(chan1Grid, 1, menuGroups::KeyWidth, PaxLastRow, menuGroups::KeyHeight);
    chan1Grid->setContentsMargins(PaxChannelMargins);
    chan2Grid = new QGridLayout;
    chan2Grid->setColumnMinimumWidth(0, PaxChannelWidth);
    optGrid = new QGridLayout;
    menuGroups::setCellSizes(optGrid, 0, menuGroups::KeyWidth, 0, PaxOptionsHeight);
    optGrid->setContentsMargins(PaxThinMargins);
    chan1Box = menuGroups::newGroup(QString(), chan1Grid, paxGroupSheet());
    chan2Box = menuGroups::newGroup(QString(), chan2Grid, paxGroupSheet());
    optBox = menuGroups::newGroup(QString(), optGrid, paxGroupSheet());
    grid->addWidget(chan1Box, 0, 0);
    grid->addWidget(chan2Box, 0, 1);
    grid->addWidget(optBox, 1, 0, 1, 2);
    grid->setContentsMargins(PaxThinMargins);
    polishEmpty(frame);
}

Key* KeyBoard::addKey(const KeyDefinition& definition, std::optional<Cell> cell, Key* mirrored)
{
    QPushButton* button = newButton(definition.label, cell);
    auto* key = new Key(this);
    keys += key;
    key->Set_Key(button, large);
    key->type = definition.type;
    key->keyId = definition.keyId;
    key->command = definition.command;
    key->units = definition.units;
    key->param = definition.param;
    key->options = definition.options;
    key->value = definition.value;
    key->setTog(definition.tog);
    key->state = definition.state;
    key->label = definition.label;
    key->itemIds = definition.itemIds;
    if (mirrored != nullptr) {
        key->linkedKeys += mirrored;
    }
    connect(button, &QPushButton::clicked, key, &Key::key_button_pushed);
    connect(key, &Key::response_message, this, &KeyBoard::kb_response_message);
    if (m_nowhere != nullptr && button->parentWidget() == m_nowhere) {
        wire::logIgnored(logMenus(),
            wire::toPrintable(QStringLiteral("no cell on %1 for key %2").arg(name, key->keyId)));
    }
    return key;
}

Key* KeyBoard::addCopy(Key& source, std::optional<Cell> cell)
{
    Key* copy = addKey(KeyDefinition::of(source), cell, &source);
    copy->valueGiven = source.valueGiven;
    source.linkedKeys += copy;
    return copy;
}

// The button gets its sheet when it lies in its page: see KeyButton::setSheet().
QPushButton* KeyBoard::newButton(const QString& label, std::optional<Cell> cell)
{
    auto* button = new KeyButton(label);
    button->setMaximumHeight(touch::MaxKeyHeight);
    button->setGround(Qt::black);
    if (cell) {
        placeInGroup(button, *cell);
    } else {
        placeInFlow(button);
    }
    button->setSheet(keyStyle::enabled(large));
    buttons += button;
    return button;
}

void KeyBoard::addMoreKey()
{
    auto* more = new MoreKey(pages->count());
    more->setMaximumHeight(touch::MaxKeyHeight);
    more->setGround(Qt::black);
    grid->addWidget(more, maxRow, maxCol);
    more->setSheet(keyStyle::more());
    connect(more, &QPushButton::clicked, pages, &StackLayout::setNextIndex);
    m_moreKeys += more;
}

// Quirk: the key in the last cell of a full first sub-page makes room for "More..." and becomes the
// first key of the next sub-page, so that 36 keys still fit a single page. Later sub-pages have
// "More..." in that cell from the start. See "Quirks" in docs/architecture.md.
void KeyBoard::openNextSubPage()
{
    QLayoutItem* last = grid->itemAtPosition(maxRow, maxCol);
    QWidget* moved = pages->count() == 1 && last != nullptr ? last->widget() : nullptr;
    if (moved != nullptr) {
        grid->removeWidget(moved);
        addMoreKey();
    }
    grid = addSubPage();
    row = 0;
    col = 0;
    if (moved != nullptr) {
        grid->addWidget(moved, row, col++);
    }
    addMoreKey();
    for (const QPointer<MoreKey>& more : std::as_const(m_moreKeys)) {
        if (more != nullptr) {
            more->setPageCount(pages->count());
        }
    }
}

void KeyBoard::placeInFlow(QPushButton* button)
{
    if (pages == nullptr) {
        placeInGroup(button, {row, col++}); // a main menu has no sub-pages
        return;
    }
    const bool atMoreKey = pages->count() > 1 && row == maxRow && col == maxCol;
    if (row > maxRow || atMoreKey) {
        openNextSubPage();
    }
    grid->addWidget(button, row, col);
    if (++col > maxCol) {
        col = 0;
        ++row;
    }
}

void KeyBoard::placeInGroup(QPushButton* button, Cell cell)
{
    const menuGroups::GroupGrids groups{chan1Grid, chan2Grid, combGrid, optGrid};
    const menuGroups::GroupCell place = groups.at(cell.row, cell.col);
    if (place.grid != nullptr) {
        place.grid->addWidget(button, place.row, place.col);
    } else {
        putNowhere(button);
    }
}

// "CK" shows and hides the button itself, so it has to lie in something that is never shown.
void KeyBoard::putNowhere(QPushButton* button)
{
    if (m_nowhere == nullptr) {
        m_nowhere = new QWidget(frame);
        m_nowhere->hide();
    }
    button->setParent(m_nowhere);
    button->hide();
}

void KeyBoard::add_keyboard_button(const QString& label, const QString& keyId, int type,
    const QString& command, const QString& units, int param, const QString& options, double value,
    bool tog, int extra, bool linked, Key* linkedKey)
{
    addKey({{}, keyId, label, type, command, units, param, options, value, tog, extra, false, {}},
        std::nullopt, linked ? linkedKey : nullptr);
}

void KeyBoard::add_keyboard_button_fixed(const QString& label, const QString& keyId, int type,
    const QString& command, const QString& units, int param, const QString& options, double value,
    bool tog, int extra, bool linked, Key* linkedKey, int cellRow, int cellCol)
{
    addKey({{}, keyId, label, type, command, units, param, options, value, tog, extra, false, {}},
        Cell{cellRow, cellCol}, linked ? linkedKey : nullptr);
}

Key* KeyBoard::findKey(const QString& keyId) const
{
    return m_index.find(keyId);
}

KeyBoard::Kind KeyBoard::kind() const
{
    return m_kind;
}

bool KeyBoard::isPAXMainMenu() const
{
    return m_kind == Kind::Pax;
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
