#pragma once

#include <QString>

// The looks that several editors share, letter for letter. What looks almost the same in one editor
// only stands with that editor.
namespace popUpStyle {

QString title();
QString entry();
// Its font size is written with a blank and has no effect: kept so, the label sets its font itself.
QString currentValue();

// Keys of the pads, with 26 px text; they turn #4169e1 while they are pressed, as all do.
QString character(); // grey
QString green();
QString seaGreen();
QString lightSteelBlue();
QString blue();

QString cancel();      // "CE/Cancel" of the number pad, "Cancel" of the lists
QString plainGreen();  // "New File" and "OK", in the font of their window
QString choice();      // a choice, 28 px
QString longChoice();  // a choice with a long text, 18 px
QString deadChoice();  // a choice that cannot be pressed
QString fileChoice();  // a file, in the font of its window
QString listWindow();  // the selection list
QString filesWindow(); // the file board and the file name dialog

} // namespace popUpStyle
