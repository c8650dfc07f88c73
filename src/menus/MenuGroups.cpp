#include "menus/MenuGroups.h"

#include <QMargins>

#include <array>

namespace {

constexpr QMargins GroupMargins(4, 15, 4, 4);
constexpr int OptionHeight = 40;
// With title and borders. The fixed window squeezes the page; at this height the keys inside are
// still high enough for a finger.
constexpr int MinOptionsHeight = 70;

QGridLayout* newGrid(int columns, int rows, int keyHeight)
{
    auto* grid = new QGridLayout;
    menuGroups::setCellSizes(grid, columns - 1, menuGroups::KeyWidth, rows - 1, keyHeight);
    grid->setContentsMargins(GroupMargins);
    return grid;
}

QGridLayout* newKeyGrid()
{
    return newGrid(menuGroups::GroupColumns, menuGroups::GroupRows, menuGroups::KeyHeight);
}

} // namespace

namespace menuGroups {

GroupCell GroupGrids::at(int row, int col) const
{
    if (row < 0 || col < 0) {
        return {};
    }
    if (row >= GroupRows) {
        return {options, 0, col};
    }
    if (col >= KeyColumns) {
        return {};
    }
    const std::array<QGridLayout*, 3> groups{channel1, channel2, combiner};
    return {groups.at(static_cast<std::size_t>(col / GroupColumns)), row, col % GroupColumns};
}

FourGroups addFourGroups(QGridLayout* outer, const QString& sheet)
{
    FourGroups groups;
    groups.grids = {newKeyGrid(), newKeyGrid(), newKeyGrid(), newGrid(KeyColumns, 1, OptionHeight)};
    groups.channel1 = newGroup(QStringLiteral("Channel 1"), groups.grids.channel1, sheet);
    groups.channel2 = newGroup(QStringLiteral("Channel 2"), groups.grids.channel2, sheet);
    groups.combiner = newGroup(QStringLiteral("Combiner"), groups.grids.combiner, sheet);
    groups.options = newGroup(QStringLiteral("Options"), groups.grids.options, sheet);
    groups.options->setMinimumHeight(MinOptionsHeight);
    outer->addWidget(groups.channel1, 0, 0);
    outer->addWidget(groups.channel2, 0, 1);
    outer->addWidget(groups.combiner, 0, 2);
    outer->addWidget(groups.options, 1, 0, 1, 3);
    return groups;
}

QGroupBox* newGroup(const QString& title, QGridLayout* grid, const QString& sheet)
{
    auto* box = new QGroupBox(title);
    box->setLayout(grid);
    box->setStyleSheet(sheet);
    return box;
}

void setCellSizes(QGridLayout* grid, int lastCol, int minWidth, int lastRow, int minHeight)
{
    for (int column = 0; column <= lastCol; ++column) {
        grid->setColumnMinimumWidth(column, minWidth);
    }
    for (int row = 0; row <= lastRow; ++row) {
        grid->setRowMinimumHeight(row, minHeight);
    }
}

} // namespace menuGroups
