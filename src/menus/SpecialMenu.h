#pragma once

class KeyBoard;
class QWidget;

/// The special menu: a main menu that the main unit has defined key by key, as a plain menu, shown
/// in the groups of a main menu.
namespace specialMenu {

/// Moves the buttons of a plain menu's first sub-page into the groups "Channel 1", "Channel 2",
/// "Combiner" and "Options" of a new page, each to the cell that it had. Every button keeps its key
/// and its connections, the "More..." key too.
/// \return the page, which belongs to the caller; nullptr when \a menu has no sub-pages.
QWidget* regrouped(KeyBoard& menu);

} // namespace specialMenu
