#pragma once

class QRect;
class QWidget;

namespace touch {

/// \return the part of the screen that the panel's window covers, in global coordinates; the whole
/// screen of \a window while no main window is shown.
QRect panelArea(const QWidget* window);

/// Limits a window that is being shown to the screen, its frame included, and moves it to the
/// middle of panelArea(), as far as the screen allows. When the panel lies beside the screen, the
/// panel takes the screen's place.
void centreOnPanel(QWidget* window);

} // namespace touch
