#pragma once

#include "app/RemotePointer.h"
#include "wire/LocalListener.h"

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>

class GlassPicture;
class QWidget;
class RemoteWatcher;

/// A look at the panel from afar that cannot hurt: programs of the panel's own user connect to the
/// socket that QN740_REMOTE_SOCKET names, get the picture of the glass and send a finger.
/// docs/remote.md describes what goes over it; qn740-remote serves it to VNC viewers.
///
/// While a watcher waits for a change, and only then, an event filter notes that a window was
/// painted, shown, hidden or moved. Then the picture is compared with the windows, at most every
/// MinPause, and so seldom that this takes a tenth of the processor at most. While nobody waits
/// there is no filter, no timer and no picture to compare: a watcher that is only connected costs
/// nothing.
class RemoteScreen : public QObject
{
    Q_OBJECT

public:
    /// The number of programs that may look at the same time; further ones are turned away.
    static constexpr int MaxWatchers = 4;
    /// The shortest time from one look to the next.
    static constexpr std::chrono::milliseconds MinPause{50};
    /// How much longer than a look the pause after it is.
    static constexpr int PauseFactor = 9;

    /// Opens the socket if the environment names one. With QN740_REMOTE_VIEW_ONLY set to anything
    /// but "0", fingers are ignored. \param window the panel's, the parent
    explicit RemoteScreen(QWidget* window);
    ~RemoteScreen() override;

    /// \return whether programs can connect.
    bool isListening() const { return m_listener.isListening(); }
    /// \return the number of programs that are connected.
    int watchers() const { return static_cast<int>(m_watchers.size()); }
    /// \return the bytes that the slowest of them has not taken yet.
    qint64 unsent() const;
    /// \return whether events are looked at, because a watcher waits for a change.
    bool isLooking() const { return m_isLooking; }
    /// \return how often the picture was compared with the windows.
    int looks() const { return m_looks; }

    /// Sets how long a watcher's finger stays down of which nothing is said.
    /// remoteProtocol::MaxSilence unless it is called.
    void setMaxSilence(std::chrono::milliseconds time) { m_pointer.setMaxSilence(time); }

    /// \reimp
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void add(int socket);
    void forget(RemoteWatcher* watcher);
    void point(RemoteWatcher* watcher, const remoteProtocol::Pointer& pointer);
    bool isAnyWaiting() const;
    void watchEvents(bool wanted);
    void schedule();
    void look();

    QWidget* m_window;
    const bool m_viewOnly;
    LocalListener m_listener;
    RemotePointer m_pointer;
    QList<RemoteWatcher*> m_watchers;
    std::unique_ptr<GlassPicture> m_picture; // from the first wish until the last watcher has gone
    QTimer m_due;
    QElapsedTimer m_sinceLook;
    std::chrono::nanoseconds m_pause{};
    int m_looks = 0;
    bool m_isLooking = false;
};
