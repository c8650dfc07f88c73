#include "popups/ChoiceCells.h"

#include "popups/ChoiceScroll.h"
#include "touch/PresentMark.h"
#include "touch/Sizes.h"
#include "touch/TextButton.h"

namespace {

constexpr int CellWidth = 150;
constexpr int CellHeight = 80;

// With its parent from the beginning: one that comes later makes the button look up its style
// again.
QPushButton* newButton(const QString& text, const QString& sheet, const QLayout& layout)
{
    QPushButton* button = new TextButton(text, layout.parentWidget(), TextButton::Shrinking);
    button->setStyleSheet(sheet);
    button->setMaximumHeight(touch::MaxKeyHeight);
    return button;
}

} // namespace

ChoiceCells::ChoiceCells(const choices::Grid& grid, qsizetype choiceCount, int room, int fixedCells)
    : m_grid(grid)
    , m_shownRows(grid.shownRows(choiceCount, room))
{
    for (int column = 0; column < grid.columns(); ++column) {
        setColumnMinimumWidth(column, CellWidth);
        setColumnStretch(column, 1);
    }
    for (int row = 0; row < m_shownRows; ++row) {
        setRowMinimumHeight(row, CellHeight);
        setRowStretch(row, 1);
    }
    setContentsMargins(0, 0, 0, 0);
    setSpacing(choices::Grid::spacing(m_shownRows));
    if (m_shownRows < grid.rowsFor(choiceCount)) {
        addScroll(choiceCount, fixedCells);
    }
}

// The scrolled choices take all cells; a column beside them is as wide as the bar.
void ChoiceCells::addScroll(qsizetype choiceCount, int fixedCells)
{
    const int rows = m_grid.scrolledRows(choiceCount, fixedCells);
    auto* scroll = new ChoiceScroll(rows, m_shownRows, m_grid.columns(), spacing());
    setColumnMinimumWidth(m_grid.columns(), touch::ScrollBarWidth);
    addWidget(scroll, 0, 0, m_shownRows, m_grid.columns() + 1);
    m_choices = scroll->cells();
    m_scroll = scroll;
}

QPushButton* ChoiceCells::addChoice(const QString& text, const QString& sheet, int index)
{
    QPushButton* button = newButton(text, sheet, *m_choices);
    const choices::Cell cell = m_grid.cell(index);
    m_choices->addWidget(button, cell.row, cell.column);
    button->raise();
    if (m_scroll != nullptr) {
        button->setMinimumHeight(1); // its row decides
        m_scroll->followOn(button);
    }
    return button;
}

void ChoiceCells::setPresent(QPushButton* button)
{
    new PresentMark(button); // belongs to the button
    if (m_scroll != nullptr) {
        m_scroll->setFirstShown(button);
    }
}

QPushButton* ChoiceCells::addFixed(
    const QString& text, const QString& sheet, const choices::Cell& cell)
{
    QPushButton* button = newButton(text, sheet, *this);
    addWidget(button, qMin(cell.row, m_shownRows - 1), cell.column);
    button->raise();
    return button;
}
