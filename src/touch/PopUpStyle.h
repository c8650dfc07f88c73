#pragma once

#include <QString>

/// The style sheets that several editors share. A sheet that looks almost the same but is used by
/// one editor only stands with that editor. All keys turn #4169e1 while they are pressed.
namespace popUpStyle {

/// \return the sheet of an editor's title.
QString title();
/// \return the sheet of a pad's display.
QString entry();
/// \return the sheet of the current value beside the display.
///
/// Quirk: its font size is written with a blank ("18 px") and has no effect; the label sets its
/// font itself. See "Quirks" in docs/architecture.md.
QString currentValue();

/// \return the sheet of a pad's key with 26 px text, in the colour of its name.
///@{
QString character(); // grey
QString green();
QString seaGreen();
QString lightSteelBlue();
QString blue();
///@}

/// \return the sheet of "CE/Cancel" of the number pad and of "Cancel" of the lists.
QString cancel();
/// \return the sheet of "New File" and "OK", in the font of their window.
QString plainGreen();
/// \return the sheet of a choice, 28 px.
QString choice();
/// \return the sheet of a choice with a long text, 18 px.
QString longChoice();
/// \return the sheet of a choice that cannot be pressed.
QString deadChoice();
/// \return the sheet of a file, in the font of its window.
QString fileChoice();
/// \return the sheet of the selection list's window.
QString listWindow();
/// \return the sheet of the window of the file board and of the file name dialog.
QString filesWindow();

} // namespace popUpStyle
