#pragma once

class KeyBoard;
class QString;

// Which cell of a main menu takes the next copy of a key.
//
// On the normal main menu every source menu has a column of its own and fills it from the top; the
// counters of the six columns live in the menu. On the PAX main menu copies fill the left group two
// to a row, whatever menu they come from. Rows from 5 on mean the "Options" group.
namespace groupCells {

struct Cell
{
    int row = 0;
    int col = 0;
};

// Out: the cell of the next copy of a key of `sourceMenu`, whose counter goes on by one. A source
// menu without a column: (0, 0), and nothing is counted.
Cell nextOfColumn(KeyBoard& mainMenu, const QString& sourceMenu);

// Out: the next cell of the two columns filled row by row (fixedRow, fixedCol), which go on to the
// one behind it.
Cell nextFixed(KeyBoard& mainMenu);

} // namespace groupCells
