#pragma once

#include "wire/RemoteProtocol.h"

#include <QEvent>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>

class QWidget;
class QWindow;

/// The finger of those who look from afar. It reaches the panel as an event of the window system,
/// so that modal editors and pop-up lists take it as they take a finger on the glass.
///
/// There is one finger: while a watcher holds it down, that of another one is ignored. Without a
/// touch a finger does nothing, so a mouse that only moves is ignored as well.
///
/// A finger that is down has to be said again, because keys repeat under it: after MaxSilence
/// without that it is lifted beside the picture. It is lifted there as well when somebody touches
/// the glass. A finger that was ignored or lifted this way stays so until its watcher lifts it;
/// otherwise the next message about it would be a press that nobody meant.
class RemotePointer : public QObject
{
    Q_OBJECT

public:
    /// \param window the panel's; points are counted from its corner. It outlives this
    explicit RemotePointer(const QWidget* window);

    /// Sets how long a finger stays down of which nothing is said.
    /// remoteProtocol::MaxSilence unless it is called.
    void setMaxSilence(std::chrono::milliseconds time) { m_silence.setInterval(time); }

    /// Puts the finger down, moves or lifts it, or notes that it is still where it was. \param
    /// watcher whose finger it is
    void take(const void* watcher, const remoteProtocol::Pointer& pointer);

    /// Forgets a watcher that goes. Its finger is lifted beside the picture, where it presses
    /// nothing, if it is down.
    void release(const void* watcher);

    /// \reimp
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void press(const void* watcher, QPoint at, QWindow* window);
    void hold(QPoint at);
    void endSilent();
    void giveUp(const char* reason);
    void lift(QPoint at);
    void deliver(QEvent::Type type, QPoint at);

    const QWidget* m_window;
    const void* m_holder = nullptr; // whose finger is down
    QPoint m_at;                    // where it is
    QList<const void*> m_ignored;   // whose finger does nothing until it is lifted
    QPointer<QWindow> m_touched;    // what it was put on; gets all until it is lifted
    bool m_isPressing = false;      // whether the next press that is seen is that of a watcher
    QTimer m_silence;               // runs while the finger is down
};
