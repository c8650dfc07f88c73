#include "menus/SpecialMenu.h"

#include "menus/KeyBoard.h"
#include "menus/MenuGroups.h"

#include <array>

namespace {

constexpr int GroupRows = 5;
constexpr int GroupColumns = 2;
constexpr int Columns = 6;

QString groupSheet()
{
    return QStringLiteral(
        "QGroupBox {background-color: black; border-width: 2px; border-style: solid; border-color: white; font-size: 12px; color: yellow; border-radius: 4px;}");
}

void moveCell(QGridLayout* from, int fromRow, int fromCol, QGridLayout* to, int row, int col)
{
    const QLayoutItem* item = from->itemAtPosition(fromRow, fromCol);
    if (QWidget* widget = item != nullptr ? item->widget() : nullptr) {
        from->removeWidget(widget);
        to->addWidget(widget, row, col);
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
    const std::array<QGridLayout*, 3> groups{
        menuGroups::newChannelGrid(), menuGroups::newChannelGrid(), menuGroups::newChannelGrid()};
    QGridLayout* options = menuGroups::newOptionsGrid();
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("specialPage"));
    auto* outer = new QGridLayout(page);
    outer->addWidget(
        menuGroups::newGroup(QStringLiteral("Channel 1"), groups[0], groupSheet()), 0, 0);
    outer->addWidget(
        menuGroups::newGroup(QStringLiteral("Channel 2"), groups[1], groupSheet()), 0, 1);
    outer->addWidget(
        menuGroups::newGroup(QStringLiteral("Combiner"), groups[2], groupSheet()), 0, 2);
    outer->addWidget(menuGroups::newOptionsGroup(options, groupSheet()), 1, 0, 1, 3);

    for (int col = 0; col < Columns; ++col) {
        QGridLayout* group = groups.at(static_cast<std::size_t>(col / GroupColumns));
        for (int row = 0; row < GroupRows; ++row) {
            moveCell(cells, row, col, group, row, col % GroupColumns);
        }
    }
    for (int col = 0; col < Columns; ++col) {
        moveCell(cells, GroupRows, col, options, 0, col);
    }
    return page;
}

} // namespace specialMenu
