#pragma once

#include <QGridLayout>
#include <QGroupBox>
#include <QMargins>
#include <QString>

// The pieces that the main menus are made of.
namespace menuGroups {

// Minimum sizes of the cells of a grid, in pixels: columns 0 to lastCol, rows 0 to lastRow.
void setCellSizes(QGridLayout* grid, int lastCol, int minWidth, int lastRow, int minHeight);

// The grids of the grouped main menu: a channel's or the combiner's, and that of the options.
QGridLayout* newChannelGrid();
QGridLayout* newOptionsGrid();

// A group box with this title, grid and style sheet.
QGroupBox* newGroup(const QString& title, QGridLayout* grid, const QString& sheet);
// The group "Options" below the others, whose one row is lower than theirs.
QGroupBox* newOptionsGroup(QGridLayout* grid, const QString& sheet);

} // namespace menuGroups
