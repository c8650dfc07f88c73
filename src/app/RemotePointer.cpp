#include "app/RemotePointer.h"

#include "touch/WindowOrder.h"
#include "wire/Log.h"

#include <QElapsedTimer>
#include <QWidget>
#include <QWindow>

QT_BEGIN_NAMESPACE
// What Qt's own test library presses with: it is exported by QtGui and declared in
// <QtTest/qtestmouse.h>, which would bring that library along.
// NOLINTNEXTLINE(readability-redundant-declaration)
Q_GUI_EXPORT void qt_handleMouseEvent(QWindow* window, const QPointF& local, const QPointF& global,
    Qt::MouseButtons state, Qt::MouseButton button, QEvent::Type type,
    Qt::KeyboardModifiers modifiers, int timestamp);
QT_END_NAMESPACE

namespace {

// Where a finger is lifted that is to press nothing.
constexpr QPoint FarAway(-remoteProtocol::Beside, -remoteProtocol::Beside);

// Tells two touches from a double touch.
int nowMs()
{
    QElapsedTimer clock;
    clock.start();
    return static_cast<int>(clock.msecsSinceReference() & 0x7fffffff);
}

} // namespace

void RemotePointer::take(const void* watcher, const remoteProtocol::Pointer& pointer)
{
    const bool isMine = m_holder == watcher;
    const bool isInside = m_window->rect().contains(pointer.at);
    if (pointer.down && m_holder == nullptr && isInside) {
        press(watcher, pointer.at);
    } else if (pointer.down && isMine) {
        deliver(QEvent::MouseMove, pointer.at);
    } else if (isMine && isInside) {
        m_holder = nullptr;
        deliver(QEvent::MouseButtonRelease, pointer.at);
    } else if (isMine) {
        release(watcher);
    } else if (pointer.down) {
        qCDebug(logRemote) << "a touch at" << pointer.at << "was ignored:"
                           << (isInside ? "another finger is down" : "beside the picture");
    }
}

void RemotePointer::release(const void* watcher)
{
    if (m_holder == watcher) {
        m_holder = nullptr;
        deliver(QEvent::MouseButtonRelease, FarAway);
    }
}

void RemotePointer::press(const void* watcher, QPoint at)
{
    QWidget* window = touch::windowAt(m_window->geometry().topLeft() + at);
    if (window != nullptr) {
        m_holder = watcher;
        m_touched = window->windowHandle();
        deliver(QEvent::MouseButtonPress, at);
    }
}

// The last thing that a function does: an editor that opens does not come back until it is closed.
void RemotePointer::deliver(QEvent::Type type, QPoint at)
{
    QWindow* window = m_touched;
    if (window == nullptr) {
        return; // It was closed while the finger was on it.
    }
    const QPoint global = m_window->geometry().topLeft() + at;
    const bool isMove = type == QEvent::MouseMove;
    const bool isDown = isMove || type == QEvent::MouseButtonPress;
    qt_handleMouseEvent(window, window->mapFromGlobal(global), global,
        isDown ? Qt::LeftButton : Qt::NoButton, isMove ? Qt::NoButton : Qt::LeftButton, type,
        Qt::NoModifier, nowMs());
}
