#include "popups/ScreenPlace.h"

#include <QApplication>
#include <QGuiApplication>
#include <QMainWindow>
#include <QScreen>

namespace screenPlace {

QRect area()
{
    const auto windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        if (window->isVisible() && qobject_cast<const QMainWindow*>(window) != nullptr) {
            return window->geometry();
        }
    }
    return QGuiApplication::primaryScreen()->availableGeometry();
}

void centre(QWidget* window)
{
    const QRect room = area();
    const QSize frame = window->frameGeometry().size() - window->size();
    const QSize size = window->size().boundedTo(room.size() - frame);
    if (size != window->size()) {
        window->setFixedSize(size);
    }
    QRect place(QPoint(0, 0), size + frame);
    place.moveCenter(room.center());
    // a frame of an odd size must not stick out by the pixel that was rounded away
    place.moveTo(qMax(place.x(), room.x()), qMax(place.y(), room.y()));
    window->move(place.topLeft());
}

} // namespace screenPlace
