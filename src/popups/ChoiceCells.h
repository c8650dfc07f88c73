#pragma once

#include "popups/Choices.h"

#include <QGridLayout>

class QPushButton;

// The buttons of a selection list or file board, in cells of equal shares of the room. What is put
// into a cell later lies over what is there already.
class ChoiceCells : public QGridLayout
{
    Q_OBJECT

public:
    // In: rows and columns; how many choices there are, those below the last row included.
    ChoiceCells(const choices::Grid& grid, qsizetype choiceCount);

    // In: text, style sheet and cell of a new button. Out: the button.
    QPushButton* addButton(const QString& text, const QString& sheet, const choices::Cell& cell);
};
