#pragma once

#include <QString>

/// What all rooms with widgets share so that a finger can use the panel.
namespace touch {

/// Smallest width and height of anything that is pressed, in pixels: 9 mm on a 7-inch panel.
constexpr int MinTarget = 47;

/// Smallest height of a row in a list, in pixels: 7 mm on a 7-inch panel. A list whose rows would
/// be lower scrolls.
constexpr int MinRowHeight = 37;

/// Largest height of a key, in pixels. Keys of a page with few rows would otherwise look like
/// panes.
constexpr int MaxKeyHeight = 100;

/// Width of a scroll bar that a finger moves, in pixels.
constexpr int ScrollBarWidth = 50;

/// The style sheet of a vertical scroll bar of that width.
QString scrollBarSheet();

} // namespace touch
