#pragma once

class QWidget;

namespace touch {

/// Makes every button, slider and scroll bar in a window let go that a finger holds down at the
/// moment: the pressed look and any repetition end, and nothing is clicked. A finger that is still
/// there has no effect until it touches anew.
///
/// To be called when the window may miss the release, as when another window blocks it.
void letGo(QWidget* window);

} // namespace touch
