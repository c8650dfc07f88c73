#include "popups/ScreenPlace.h"

#include <QApplication>
#include <QMainWindow>
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

} // namespace

namespace screenPlace {

void centre(QWidget* window)
{
    const QWidget* panel = panelWindow();
    const QRect room = (panel != nullptr ? panel : window)->screen()->availableGeometry();
    const QSize frame = window->frameGeometry().size() - window->size();
    const QSize size = window->size().boundedTo(room.size() - frame);
    if (size != window->size()) {
        window->setFixedSize(size);
    }
    QRect place(QPoint(0, 0), size + frame);
    place.moveCenter((panel != nullptr ? panel->geometry() : room).center());
    place.moveRight(qMin(place.right(), room.right()));
    place.moveBottom(qMin(place.bottom(), room.bottom()));
    place.moveLeft(qMax(place.left(), room.left()));
    place.moveTop(qMax(place.top(), room.top()));
    window->move(place.topLeft());
}

} // namespace screenPlace
