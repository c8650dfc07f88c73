#include "menus/SpecialMenu.h"

#include "menus/KeyBoard.h"
#include "menus/MenuGroups.h"

namespace {

// Quirk: unlike the sheet of a main menu, this one has no blanks behind it. See "Quirks" in
// docs/architecture.md.
QString groupSheet()
{
    return QStringLiteral(
        "QGroupBox {background-color: black; border-width: 2px; border-style: solid; border-color: white; font-size: 12px; color: yellow; border-radius: 4px;}");
}

// Moves the widget of a plain menu's cell, if there is one, into its group.
void moveCell(QGridLayout* cells, int row, int col, const menuGroups::GroupGrids& groups)
{
    const QLayoutItem* item = cells->itemAtPosition(row, col);
    if (QWidget* widget = item != nullptr ? item->widget() : nullptr) {
        const menuGroups::GroupCell to = groups.at(row, col);
        cells->removeWidget(widget);
        to.grid->addWidget(widget, to.row, to.col);
    }
}

} // namespace

namespace specialMenu {

QWidget* regrouped(KeyBoard& menu)
{
    QWidget* first = menu.pages != nullptr ? menu.pages->widget(0) : nullptr;
    auto* cells = first != nullptr ? qobject_cast<QGridLayout*>(first->layout()) : nullptr;
    if (cells == nullptr) {
        return nullptr;
    }
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("specialPage"));
    auto* outer = new QGridLayout(page);
    const auto groups = menuGroups::addFourGroups(outer, groupSheet()).grids;
    for (int col = 0; col < menuGroups::KeyColumns; ++col) {
        for (int row = 0; row < menuGroups::GroupRows; ++row) {
            moveCell(cells, row, col, groups);
        }
    }
    for (int col = 0; col < menuGroups::KeyColumns; ++col) {
        moveCell(cells, menuGroups::GroupRows, col, groups);
    }
    return page;
}

} // namespace specialMenu
