#include "touch/Placement.h"

#include <QApplication>
#include <QMainWindow>
#include <QRect>
#include <QScreen>

namespace {

const QWidget* panelWindow()
{
    const auto windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        if (window->isVisible() && qobject_cast<const QMainWindow*>(window) != nullptr) {
            return window;
        }
    }
    return nullptr;
}

QRect screenArea(const QWidget* window)
{
    const QWidget* panel = panelWindow();
    const QRect screen = (panel != nullptr ? panel : window)->screen()->availableGeometry();
    // A panel that is turned lies beside the screen, and so do its windows.
    return panel != nullptr && !panel->geometry().intersects(screen) ? panel->geometry() : screen;
}

} // namespace

QRect touch::panelArea(const QWidget* window)
{
    const QWidget* panel = panelWindow();
    return panel != nullptr ? panel->geometry() : screenArea(window);
}

void touch::centreOnPanel(QWidget* window)
{
    const QRect room = screenArea(window);
    const QSize frame = window->frameGeometry().size() - window->size();
    const QSize size = window->size().boundedTo(room.size() - frame);
    if (size != window->size()) {
        window->setFixedSize(size);
    }
    QRect place(QPoint(0, 0), size + frame);
    place.moveCenter(panelArea(window).center());
    place.moveRight(qMin(place.right(), room.right()));
    place.moveBottom(qMin(place.bottom(), room.bottom()));
    place.moveLeft(qMax(place.left(), room.left()));
    place.moveTop(qMax(place.top(), room.top()));
    window->move(place.topLeft());
}
