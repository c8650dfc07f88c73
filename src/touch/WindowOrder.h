#pragma once

#include <QPoint>
#include <QWidgetList>

class QWidget;

namespace touch {

/// \return all visible windows, the lowest first: the panel's at the bottom, the others over it in
/// the order in which they were opened, the modal one over them, its own over that, and pop-up
/// lists on top.
QWidgetList visibleWindows();

/// Whether a modal dialog keeps every touch from this window.
bool isBlocked(const QWidget* window);

/// \return the window that is on top at a point of the screen, nullptr where there is none. The
/// platform is asked where it knows; elsewhere it is the last of visibleWindows() at this point.
QWidget* windowAt(QPoint point);

} // namespace touch
