#pragma once

#include <QObject>
#include <QTimer>

/// Watches whether the data that a display expects still come.
///
/// The owner switches the watch on with setExpecting() and reports all data with dataCame(). When
/// nothing has come for the given time, isStale() is true until the next data: what the display
/// shows is old then. Only data end it. The time runs while data are expected and the watch is not
/// paused; no timer runs otherwise, and none while the display is stale.
class DataWatch : public QObject
{
    Q_OBJECT

public:
    /// \param limitMs the longest time without data that is no failure, in milliseconds.
    /// \param timerName the object name of the timer, a child of the watch.
    DataWatch(int limitMs, const QString& timerName, QObject* parent = nullptr);

    /// What becomes of the knowledge that the time has run out when data are expected anew.
    enum class Past {
        Forgotten, ///< what was shown has been cleared: the whole time starts
        Kept       ///< the same picture is shown again: only data make it fresh
    };

    /// Sets whether data are expected; not at first. From no to yes, the whole time starts, unless
    /// the display was stale and \a past is kept. A value that is already set changes nothing.
    void setExpecting(bool expecting, Past past = Past::Forgotten);
    /// \return whether data are expected.
    bool isExpecting() const { return m_expecting; }

    /// Sets whether the time stands still; it does not at first. What has passed of it is kept, and
    /// so is the knowledge that it has run out, which isStale() does not show meanwhile.
    void setPaused(bool paused);

    /// Starts the time anew. When no data are expected, it only ends the knowledge that the time
    /// has run out.
    void dataCame();

    /// \return whether data are expected, and have not come for too long.
    bool isStale() const { return m_expecting && !m_paused && m_ranOut; }

signals:
    /// Emitted when isStale() has changed.
    void staleChanged();

private:
    template <class Change>
    void change(Change change);
    void startTimer();

    QTimer m_timer{this};
    int m_limitMs;
    int m_leftMs; // what is left while paused
    bool m_expecting = false;
    bool m_paused = false;
    bool m_ranOut = false;
};
