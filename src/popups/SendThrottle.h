#pragma once

#include <QString>

#include <optional>

// Decides when the messages of something that changes fast leave: the first one at once, then at
// most one for each run of a timer, always the newest. It holds no timer: whoever owns it starts
// one whenever a message is handed out, and calls expired() at its end.
class SendThrottle
{
public:
    // In: the message of a change. Out: the message when it leaves now, nothing when it waits.
    std::optional<QString> offer(const QString& message);
    // The timer has expired. Out: the message that waited and leaves now, nothing when none did.
    std::optional<QString> expired();
    // Out: whether a timer was asked for and has not expired.
    bool isWaiting() const { return m_waiting; }

private:
    QString m_pending;
    QString m_lastSent;
    bool m_waiting = false;
};
