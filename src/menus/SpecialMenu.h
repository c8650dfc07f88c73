#pragma once

class KeyBoard;
class QWidget;

// A main menu that the main unit has defined key by key, as a plain menu, in the look of a grouped
// main menu.
namespace specialMenu {

// Moves the buttons of the first sub-page of `menu` into the groups "Channel 1", "Channel 2",
// "Combiner" (two columns each) and "Options" (last row) of a new page; every button keeps its key
// and its connections, also the "More..." key. Out: the page, owned by the caller; nullptr when
// `menu` has no sub-pages.
QWidget* regrouped(KeyBoard& menu);

} // namespace specialMenu
