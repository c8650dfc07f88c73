#include "popups/ChoiceCells.h"

#include "touch/Sizes.h"
#include "touch/TextButton.h"

namespace {

constexpr int CellWidth = 150;
constexpr int CellHeight = 80;
constexpr int Spacing = 4;
constexpr int SpacingOfMany = 1;
constexpr int ManyRows = 6; // with more rows each pixel between them counts

} // namespace

ChoiceCells::ChoiceCells(const choices::Grid& grid, qsizetype choiceCount)
{
    const int rows = grid.rowsFor(choiceCount);
    for (int column = 0; column < grid.columns(); ++column) {
        setColumnMinimumWidth(column, CellWidth);
        setColumnStretch(column, 1);
    }
    for (int row = 0; row < rows; ++row) {
        setRowMinimumHeight(row, CellHeight);
        setRowStretch(row, 1);
    }
    setContentsMargins(0, 0, 0, 0);
    setSpacing(rows > ManyRows ? SpacingOfMany : Spacing);
}

QPushButton* ChoiceCells::addButton(
    const QString& text, const QString& sheet, const choices::Cell& cell)
{
    QPushButton* button = new TextButton(text, nullptr, TextButton::Shrinking);
    button->setStyleSheet(sheet);
    button->setMaximumHeight(touch::MaxKeyHeight);
    addWidget(button, cell.row, cell.column);
    button->raise();
    return button;
}
