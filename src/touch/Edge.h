#pragma once

class QWidget;

namespace touch {

/// Paints a black edge of two pixels around a window, over what it shows already. Boxes are as grey
/// as the keys below them, and the screen has no window frames: the edge tells them apart. To be
/// called at the end of the window's paintEvent().
void paintEdge(QWidget* window);

} // namespace touch
