#pragma once

#include "wire/RemoteProtocol.h"

#include <QEvent>
#include <QPointer>

class QWidget;
class QWindow;

/// The finger of those who look from afar. It reaches the panel as an event of the window system,
/// so that modal editors and pop-up lists take it as they take a finger on the glass.
///
/// There is one finger: while a watcher holds it down, that of another one is ignored. Without a
/// touch a finger does nothing, so a mouse that only moves is ignored as well.
class RemotePointer
{
public:
    /// \param window the panel's; points are counted from its corner. It outlives this
    explicit RemotePointer(const QWidget* window)
        : m_window(window)
    {
    }

    /// Puts the finger down, moves or lifts it. \param watcher whose finger it is
    void take(const void* watcher, const remoteProtocol::Pointer& pointer);

    /// Lifts the finger beside the picture, where it presses nothing, if this watcher holds it
    /// down.
    void release(const void* watcher);

private:
    void press(const void* watcher, QPoint at);
    void deliver(QEvent::Type type, QPoint at);

    const QWidget* m_window;
    const void* m_holder = nullptr; // whose finger is down
    QPointer<QWindow> m_touched;    // what it was put on; gets all until it is lifted
};
