#pragma once

#include <QRect>

class QWidget;

// Where pop-ups stand: inside the panel's window, or inside the screen while there is none.
namespace screenPlace {

// The rectangle, in global coordinates, that a pop-up must not leave.
QRect area();

// Limits the window, which is being shown, to the area with its frame and puts it in the middle.
void centre(QWidget* window);

} // namespace screenPlace
