#include "app/RemotePointer.h"

#include "touch/WindowOrder.h"
#include "wire/Log.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QWidget>
#include <QWindow>

#include <utility>

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

RemotePointer::RemotePointer(const QWidget* window)
    : m_window(window)
{
    m_silence.setSingleShot(true);
    m_silence.setInterval(remoteProtocol::MaxSilence);
    // Queued, because what was said while the panel was busy may wait in the socket.
    connect(&m_silence, &QTimer::timeout, this, &RemotePointer::endSilent, Qt::QueuedConnection);
}

void RemotePointer::take(const void* watcher, const remoteProtocol::Pointer& pointer)
{
    const bool isInside = m_window->rect().contains(pointer.at);
    if (!pointer.down) {
        m_ignored.removeOne(watcher);
        if (m_holder == watcher) {
            lift(isInside ? pointer.at : FarAway);
        }
    } else if (m_holder == watcher) {
        hold(pointer.at);
    } else if (!m_ignored.contains(watcher)) {
        QWidget* window =
            isInside ? touch::windowAt(m_window->geometry().topLeft() + pointer.at) : nullptr;
        if (m_holder == nullptr && window != nullptr) {
            press(watcher, pointer.at, window->windowHandle());
        } else {
            m_ignored += watcher;
            qCDebug(logRemote) << "a touch at" << pointer.at << "was ignored:"
                               << (isInside ? "another finger is down" : "beside the picture");
        }
    }
}

void RemotePointer::release(const void* watcher)
{
    m_ignored.removeOne(watcher);
    if (m_holder == watcher) {
        lift(FarAway);
    }
}

// A finger on the glass comes first: the window system knows one pointer only, and would take the
// touch for a part of what is held already.
bool RemotePointer::eventFilter(QObject* watched, QEvent* event)
{
    const bool isTouch =
        event->type() == QEvent::TouchBegin || event->type() == QEvent::MouseButtonPress;
    if (isTouch && watched->isWindowType() && !std::exchange(m_isPressing, false)) {
        giveUp("the glass is touched");
    }
    return false;
}

void RemotePointer::hold(QPoint at)
{
    m_silence.start();
    if (at != m_at) {
        m_at = at;
        deliver(QEvent::MouseMove, at);
    }
}

void RemotePointer::press(const void* watcher, QPoint at, QWindow* window)
{
    m_holder = watcher;
    m_at = at;
    m_touched = window;
    m_silence.start();
    m_isPressing = true;
    qApp->installEventFilter(this);
    // A modal window may keep this press from the windows, and the filter from seeing it.
    QMetaObject::invokeMethod(
        this, [this] { m_isPressing = false; }, Qt::QueuedConnection);
    deliver(QEvent::MouseButtonPress, at);
}

void RemotePointer::endSilent()
{
    if (!m_silence.isActive()) {
        giveUp("its watcher is silent");
    }
}

void RemotePointer::giveUp(const char* reason)
{
    if (m_holder != nullptr) {
        qCDebug(logRemote) << "a finger was lifted:" << reason;
        m_ignored += m_holder;
        lift(FarAway);
    }
}

void RemotePointer::lift(QPoint at)
{
    m_holder = nullptr;
    m_silence.stop();
    qApp->removeEventFilter(this);
    deliver(QEvent::MouseButtonRelease, at);
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
