#include "menus/MenuGroups.h"

namespace {
constexpr QMargins GroupMargins(4, 15, 4, 4);
constexpr int KeyWidth = 150;
constexpr int KeyHeight = 80;
constexpr int OptionHeight = 40;
// with title and edges: squeezed with the page, the keys are still high enough for a finger
constexpr int LeastOptions = 70;
} // namespace

namespace menuGroups {

void setCellSizes(QGridLayout* grid, int lastCol, int minWidth, int lastRow, int minHeight)
{
    for (int column = 0; column <= lastCol; ++column) {
        grid->setColumnMinimumWidth(column, minWidth);
    }
    for (int row = 0; row <= lastRow; ++row) {
        grid->setRowMinimumHeight(row, minHeight);
    }
}

QGridLayout* newChannelGrid()
{
    auto* grid = new QGridLayout;
    setCellSizes(grid, 1, KeyWidth, 4, KeyHeight);
    grid->setContentsMargins(GroupMargins);
    return grid;
}

QGridLayout* newOptionsGrid()
{
    auto* grid = new QGridLayout;
    setCellSizes(grid, 5, KeyWidth, 0, OptionHeight);
    grid->setContentsMargins(GroupMargins);
    return grid;
}

QGroupBox* newGroup(const QString& title, QGridLayout* grid, const QString& sheet)
{
    auto* box = new QGroupBox(title);
    box->setLayout(grid);
    box->setStyleSheet(sheet);
    return box;
}

QGroupBox* newOptionsGroup(QGridLayout* grid, const QString& sheet)
{
    QGroupBox* box = newGroup(QStringLiteral("Options"), grid, sheet);
    box->setMinimumHeight(LeastOptions);
    return box;
}

} // namespace menuGroups
