#include "popups/SendThrottle.h"

std::optional<QString> SendThrottle::offer(const QString& message)
{
    m_pending = message;
    if (m_waiting) {
        return std::nullopt;
    }
    m_waiting = true;
    m_lastSent = m_pending;
    return m_lastSent;
}

std::optional<QString> SendThrottle::expired()
{
    if (m_pending == m_lastSent) {
        m_waiting = false;
        return std::nullopt;
    }
    // The timer runs once more, so that the next change also waits for its time.
    m_lastSent = m_pending;
    return m_lastSent;
}
