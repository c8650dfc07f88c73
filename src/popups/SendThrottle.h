#pragma once

#include <QString>

#include <optional>

/// Decides when the messages of something that changes fast are sent: the first one at once, then
/// at most one for each run of a timer, always the newest.
///
/// It holds no timer: its owner starts one whenever a message is handed out, and calls expired() at
/// its end.
class SendThrottle
{
public:
    /// Takes the message of a change.
    /// \return the message when it is sent now, nothing when it waits.
    std::optional<QString> offer(const QString& message);
    /// The timer has expired.
    /// \return the message that has waited and is sent now, nothing when none has.
    std::optional<QString> expired();
    /// \return whether the timer runs.
    bool isWaiting() const { return m_waiting; }

private:
    QString m_pending;
    QString m_lastSent;
    bool m_waiting = false;
};
