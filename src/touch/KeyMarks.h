#pragma once

#include <QRect>

class QPainter;

/// The marks that a toggle key carries in its upper corners: whether it is on, and whether the main
/// unit has still to confirm a press.
///
/// A mark is painted over the look of the key's style sheet, which stays as it is. The lamp is
/// filled when the key is on and an empty ring when it is off, so that on and off can be told
/// without their colours. The hourglass stands in the other corner. Both corners are kept free of
/// text, whichever marks are there, so that the label does not move when a mark comes or goes.
namespace keyMarks {

/// The lamp in the upper right corner.
enum class Lamp {
    None, ///< no toggle key
    Off,  ///< an empty ring
    On    ///< a filled disc
};

/// What a key shows in its corners.
struct Marks
{
    Lamp lamp = Lamp::None; ///< whether the key is on
    bool isPending = false; ///< whether the hourglass in the upper left corner is shown

    /// \return whether there is any mark.
    bool any() const { return lamp != Lamp::None || isPending; }

    /// \return whether both show the same.
    bool operator==(const Marks& other) const
    {
        return lamp == other.lamp && isPending == other.isPending;
    }
};

/// Width and height of a mark, in pixels.
constexpr int MarkSize = 12;

/// Width and height of a corner that holds a mark, counted from the edges of the key, in pixels.
constexpr int CornerSize = 18;

/// \return where the lamp of a key with this outline is painted.
QRect lampPlace(const QRect& key);

/// \return where the hourglass of a key with this outline is painted.
QRect pendingPlace(const QRect& key);

/// Paints the marks.
/// \param key the key's outline
/// \param isEnabled whether the key's face is light (grey or green); the face of a disabled key is
///        dark
void paint(QPainter& painter, const QRect& key, const Marks& marks, bool isEnabled);

} // namespace keyMarks
