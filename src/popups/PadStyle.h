#pragma once

#include <QString>

// The looks that the pads share, letter for letter. What looks almost the same on one pad only
// stands with that pad.
namespace padStyle {

QString title();
QString entry();
// Its font size is written with a blank and has no effect: kept so, the label sets its font itself.
QString currentValue();

// Keys with 26 px text that turn #4169e1 while they are pressed.
QString character(); // grey
QString green();
QString seaGreen();
QString lightSteelBlue();
QString blue();

} // namespace padStyle
