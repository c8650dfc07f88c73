#pragma once

#include <QString>

// The looks of the buttons of selection lists and file boards; every text is used letter for
// letter.
namespace choiceStyle {

QString large();    // a choice, 28 px
QString small();    // a choice with a long text, 18 px
QString disabled(); // a choice that cannot be pressed
QString cancel();
QString file();
QString newFile();

QString title();
QString listDialog();
QString fileDialog(); // also of the file name dialog

} // namespace choiceStyle
