#pragma once

#include <Qt>

class QDialog;
class QGridLayout;
namespace choices {
class Grid;
}

// What the windows of the pop-ups have in common.
namespace popUpWindow {

// The largest window of a pop-up, in pixels: it lies inside the screen with a rim around it.
constexpr int Width = 795;
constexpr int Height = 478;

// A customised window with a title.
constexpr Qt::WindowFlags Titled = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint;

// Gives the dialog the size that its contents ask for, held within Width and Height, and the
// middle of the panel: of the screen of the board, on a larger one of the panel's window.
void place(QDialog& dialog);

// Gives the cells of a list of choices their least sizes and equal shares of the room, also those
// below the last row. In: rows taken.
void shareCells(QGridLayout& layout, const choices::Grid& grid, int rows);

} // namespace popUpWindow
