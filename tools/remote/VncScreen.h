#pragma once

#include "wire/RemoteProtocol.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <chrono>
#include <memory>
#include <vector>

struct _rfbClientRec;  // of LibVNCServer
struct _rfbScreenInfo; // of LibVNCServer

/// A VNC server on 127.0.0.1 that shows one picture, by LibVNCServer.
///
/// A viewer has to give the password. It gets the picture and sends a finger (the left button);
/// keys, clipboards, files and other sizes are nothing that the panel knows. One that has not given
/// the password after LoginTime is sent away, and after MaxFailures wrong ones nobody is let in for
/// a while. The library is driven by Qt's event loop: nothing runs while nobody does anything.
///
/// While a finger is down, it is said again at each beat, so that the panel knows that it is still
/// meant. Its viewer gets one pixel anew at each beat and asks for the next update then; one that
/// sends nothing at all for MaxQuietBeats has stalled, and its finger is lifted beside the picture.
class VncScreen : public QObject
{
    Q_OBJECT

public:
    /// The number of viewers that are served at the same time; further ones are refused.
    static constexpr int MaxViewers = 4;
    /// How long a viewer may take to give its password.
    static constexpr std::chrono::seconds LoginTime{30};
    /// After so many wrong passwords, nobody is let in for LockTime.
    static constexpr int MaxFailures = 5;
    /// How long nobody is let in.
    static constexpr std::chrono::seconds LockTime{10};

    /// After so many beats without anything from its viewer, a finger is lifted.
    static constexpr int MaxQuietBeats = 3;

    /// \param port TCP port \param viewOnly whether fingers are ignored
    VncScreen(quint16 port, const QByteArray& password, bool viewOnly, QObject* parent = nullptr);
    ~VncScreen() override;

    /// \return whether viewers can connect.
    bool isListening() const { return !m_listeners.empty(); }
    /// \return the number of viewers that have given the password.
    int viewers() const { return m_viewers; }

    /// Sets the time between two beats. remoteProtocol::RepeatTime unless it is called.
    void setBeat(std::chrono::milliseconds time) { m_beat.setInterval(time); }

    /// Makes the picture this large; it is black where nothing was put yet.
    void setSize(QSize size);
    /// Takes over a part of the picture. What lies outside is ignored.
    void put(const remoteProtocol::Rectangle& rectangle);
    /// Shows viewers what was put.
    void flush();
    /// Shows viewers that there is no panel. A finger that is down does not count any more.
    void showNoPanel();

signals:
    /// Emitted when the number of viewers has changed.
    void viewersChanged(int viewers);
    /// Emitted when a finger was put down, moved or lifted, and at each beat while it is down.
    void pointed(const remoteProtocol::Pointer& pointer);

private:
    struct Hooks; // what LibVNCServer calls
    struct Viewer;

    bool admit(_rfbClientRec* client);
    void leave(_rfbClientRec* client);
    void point(_rfbClientRec* client, int buttons, QPoint at);
    void beat();
    void giveUpFinger();
    void askForAnswer();
    void noteFailure();
    void pump();
    void countViewers();
    void hold(_rfbClientRec* client, bool waits);
    void sendSlowAway();

    QSize m_size;
    std::vector<quint32> m_pixels;
    QList<QRect> m_changed; // put, and not flushed
    QByteArray m_password;
    char* m_passwords[2]; // of the library's form: with a null pointer at its end
    bool m_viewOnly;
    _rfbScreenInfo* m_screen;
    std::vector<std::unique_ptr<QSocketNotifier>> m_listeners;
    std::vector<std::unique_ptr<Viewer>> m_gone; // deleted in the next turn of the event loop
    bool m_isCurrent = false;                    // whether the picture is one to be shown
    _rfbClientRec* m_finger = nullptr;           // whose finger is down
    QPoint m_fingerAt;
    QTimer m_beat;        // runs while a finger is down
    int m_heardBytes = 0; // from its viewer, up to the last beat
    int m_quietBeats = 0; // since its viewer has sent anything
    QTimer m_login;
    QTimer m_lock; // runs while nobody is let in
    int m_connected = 0;
    int m_viewers = 0;
    int m_failures = 0;
};
