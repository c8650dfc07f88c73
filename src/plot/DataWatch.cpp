#include "plot/DataWatch.h"

DataWatch::DataWatch(int limitMs, const QString& timerName, QObject* parent)
    : QObject(parent)
    , m_limitMs(limitMs)
    , m_leftMs(limitMs)
{
    m_timer.setObjectName(timerName);
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer); // A coarse timer may fire early.
    connect(&m_timer, &QTimer::timeout, this, [this] { change([this] { m_ranOut = true; }); });
}

// Makes a change and reports it if it is seen.
template <class Change>
void DataWatch::change(Change change)
{
    const bool before = isStale();
    change();
    if (isStale() != before) {
        emit staleChanged();
    }
}

void DataWatch::startTimer()
{
    if (m_expecting && !m_paused && !m_ranOut) {
        m_timer.start(m_leftMs);
    }
}

void DataWatch::setExpecting(bool expecting, Past past)
{
    if (m_expecting == expecting) {
        return;
    }
    change([this, expecting, past] {
        m_expecting = expecting;
        m_ranOut = m_ranOut && past == Past::Kept;
        m_leftMs = m_limitMs;
        m_timer.stop();
        startTimer();
    });
}

void DataWatch::setPaused(bool paused)
{
    if (m_paused == paused) {
        return;
    }
    change([this, paused] {
        if (m_timer.isActive()) {
            m_leftMs = qMax(0, m_timer.remainingTime());
            m_timer.stop();
        }
        m_paused = paused;
        startTimer();
    });
}

void DataWatch::dataCame()
{
    if (!m_expecting) {
        m_ranOut = false;
        return;
    }
    change([this] {
        m_ranOut = false;
        m_leftMs = m_limitMs;
        startTimer();
    });
}
