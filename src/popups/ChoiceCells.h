#pragma once

#include "popups/Choices.h"

#include <QGridLayout>

class QPushButton;

/// The buttons of a selection list or file board, in cells of equal shares of the room. What is put
/// into a cell later lies over what is there already.
class ChoiceCells : public QGridLayout
{
    Q_OBJECT

public:
    /// Makes empty cells.
    /// \param grid        rows and columns
    /// \param choiceCount how many choices there are, those below the last row of the grid included
    ChoiceCells(const choices::Grid& grid, qsizetype choiceCount);

    /// Adds a button that shows a text of any length.
    /// \param text  what the button shows
    /// \param sheet its style sheet
    /// \param cell  where it stands
    QPushButton* addButton(const QString& text, const QString& sheet, const choices::Cell& cell);
};
