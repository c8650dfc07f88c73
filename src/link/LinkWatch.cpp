#include "link/LinkWatch.h"

#include "link/Limits.h"
#include "link/keySerial.h"
#include "wire/Log.h"

namespace {
constexpr int BusyPollMs = 500;
} // namespace

LinkWatch::LinkWatch(keySerial& serial, QObject* parent)
    : QObject(parent)
    , m_serial(serial)
    , m_timer(this)
    , m_full(&logLink,
          QStringLiteral("%1 bytes wait for an editor to close: further ones may be lost")
              .arg(linkLimits::MaxBytesWaiting))
{
    m_clock.start();
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &LinkWatch::lookForSilence);
    connect(&serial, &keySerial::bytesReceived, this, &LinkWatch::takeBytes);
    connect(&serial, &keySerial::openChanged, this, &LinkWatch::takeOpenChange);
}

void LinkWatch::notePing()
{
    m_health.notePing(m_clock.elapsed());
    // Earlier than what the timer waits for: the interval has become shorter.
    const auto deadline = m_health.deadline();
    const bool isEarlier = deadline && *deadline - m_clock.elapsed() + 1 < m_timer.remainingTime();
    if (m_state == LinkState::Alive && (isEarlier || !m_timer.isActive())) {
        startTimer();
    }
}

// The timer is not started anew for each byte: it runs off and looks how long ago the last one was.
void LinkWatch::takeBytes()
{
    m_health.noteBytes(m_clock.elapsed());
    m_unread = m_serial.unread();
    if (m_state == LinkState::Silent) {
        setState(LinkState::Alive);
        startTimer();
    }
}

void LinkWatch::takeOpenChange()
{
    m_health = {};
    m_unread = 0;
    m_timer.stop();
    setState(m_serial.isOpen() ? LinkState::Alive : LinkState::Closed);
}

void LinkWatch::lookForSilence()
{
    noteUnread();
    if (!m_health.isSilent(m_clock.elapsed())) {
        startTimer();
        return;
    }
    setState(LinkState::Silent);
    if (m_serial.isBusy()) {
        m_timer.start(BusyPollMs);
    }
}

// While a handler keeps an editor open that the main unit has asked for, what arrives stays in the
// port and is not announced.
void LinkWatch::noteUnread()
{
    const qint64 unread = m_serial.unread();
    const bool isFull = unread >= linkLimits::MaxBytesWaiting; // it cannot grow
    if (isFull) {
        m_full.add();
    }
    if (isFull || unread > m_unread) {
        takeBytes();
    }
}

void LinkWatch::startTimer()
{
    if (const auto deadline = m_health.deadline()) {
        const qint64 left = *deadline - m_clock.elapsed() + 1;
        m_timer.start(static_cast<int>(qMax(qint64{1}, left)));
    }
}

void LinkWatch::setState(LinkState state)
{
    if (state != m_state) {
        m_state = state;
        emit changed(state);
    }
}
