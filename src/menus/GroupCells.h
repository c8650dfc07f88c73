#pragma once

#include "menus/KeyBoard.h"

class QString;

/// Chooses the cell of a main menu that the next copy of a key gets.
///
/// On the normal main menu every source menu has its own column and fills it from the top; the
/// counters of the six columns are members of the menu. On the PAX main menu copies fill the left
/// group two to a row, whichever menu they come from. Rows from 5 on belong to "Options".
namespace groupCells {

/// Gives out the next cell in the column of \a sourceMenu and advances that column's counter.
/// \return (0, 0) for a source menu without a column; nothing is counted then.
KeyBoard::Cell nextOfColumn(KeyBoard& mainMenu, const QString& sourceMenu);

/// Gives out the cell (fixedRow, fixedCol) of \a mainMenu and advances it to the next one; these
/// cells fill two columns row by row.
KeyBoard::Cell nextFixed(KeyBoard& mainMenu);

} // namespace groupCells
