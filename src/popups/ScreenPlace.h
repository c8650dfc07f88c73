#pragma once

class QWidget;

// Where pop-ups stand: over the middle of the panel's window, and always inside the screen.
namespace screenPlace {

// Limits a window that is being shown to the screen, with its frame, and moves it to the middle of
// the panel's window (of the screen while there is none), as far as the screen allows.
void centre(QWidget* window);

} // namespace screenPlace
