#pragma once

#include "link/LinkHealth.h"
#include "wire/DropLog.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class keySerial;

/// Watches the line to the main unit and says when its state changes.
///
/// It follows the signals of keySerial and asks LinkHealth. A timer runs only while the main unit
/// is expected to send: it wakes up when silence could begin and looks whether it has.
class LinkWatch : public QObject
{
    Q_OBJECT

public:
    /// \param serial the line; not owned, has to outlive this object
    explicit LinkWatch(keySerial& serial, QObject* parent = nullptr);

    /// Takes note that a "PING" has arrived.
    void notePing();

    /// \return what is known of the link now.
    LinkState state() const { return m_state; }

signals:
    /// Emitted when the state has become another.
    void changed(LinkState state);

private:
    void takeBytes();
    void takeOpenChange();
    void lookForSilence();
    void noteUnread();
    void startTimer();
    void setState(LinkState state);

    keySerial& m_serial;
    LinkHealth m_health;
    LinkState m_state = LinkState::Closed;
    QElapsedTimer m_clock;
    QTimer m_timer;
    DropLog m_full;
    qint64 m_unread = 0; // bytes in the port when it was looked at last
};
