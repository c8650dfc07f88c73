#pragma once

#include "popups/Choices.h"

#include <QGridLayout>

class ChoiceScroll;
class QPushButton;

/// The buttons of a selection list or file board, in cells of equal shares of the room.
///
/// The choices come first; "Cancel" and "New File" lie over the choices in their cells. Where the
/// rows would get too low for a finger, the rows of the grid keep their height and the choices
/// scroll under "Cancel" and "New File", which stay where they are. A blank row is added below the
/// last choices, where needed, so that none stays under them.
class ChoiceCells : public QGridLayout
{
    Q_OBJECT

public:
    /// Makes empty cells.
    /// \param grid        rows and columns
    /// \param choiceCount how many choices there are, those below the last row of the grid included
    /// \param room        height of all rows together, in pixels
    /// \param fixedCells  how many cells at the end of the grid's last row "Cancel" and "New File"
    /// take
    ChoiceCells(const choices::Grid& grid, qsizetype choiceCount, int room, int fixedCells);

    /// Adds a button for a choice that shows a text of any length.
    /// \param text  what the button shows
    /// \param sheet its style sheet
    /// \param index of the choice, from 0
    QPushButton* addChoice(const QString& text, const QString& sheet, int index);

    /// Marks the button as the present choice and scrolls to it when the list is shown.
    void setPresent(QPushButton* button);

    /// Adds a button that lies over the choice in its cell and never scrolls. To be called after
    /// all choices were added.
    /// \param text  what the button shows
    /// \param sheet its style sheet
    /// \param cell  in the grid
    QPushButton* addFixed(const QString& text, const QString& sheet, const choices::Cell& cell);

private:
    void addScroll(qsizetype choiceCount, int fixedCells);

    choices::Grid m_grid;
    int m_shownRows;
    ChoiceScroll* m_scroll = nullptr;
    QGridLayout* m_choices = this; // where the choices are
};
