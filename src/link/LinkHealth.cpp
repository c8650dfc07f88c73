#include "link/LinkHealth.h"

namespace {

constexpr qint64 SilentIntervals = 3;

// Two intervals are steady when the longer one is at most half as long again, and a little: the
// panel reads the line when its event loop comes to it. Of short intervals it is half of one more,
// so that a burst is no interval.
constexpr qint64 ReadingDelayMs = 100;

constexpr qint64 longestSteady(qint64 shorter)
{
    return shorter + shorter / 2 + qMin(ReadingDelayMs, shorter / 2);
}

} // namespace

void LinkHealth::noteBytes(qint64 now)
{
    m_lastBytes = now;
}

void LinkHealth::notePing(qint64 now)
{
    noteBytes(now);
    if (m_lastPing && now - *m_lastPing < MinIntervalMs) {
        return;
    }
    m_older = m_newer;
    if (m_lastPing) {
        m_newer = now - *m_lastPing;
    }
    m_lastPing = now;
    if (isSteady()) {
        m_expected = qMax(m_newer, m_older);
    }
}

// One interval alone is not: the other one is 0.
bool LinkHealth::isSteady() const
{
    return qMax(m_newer, m_older) <= longestSteady(qMin(m_newer, m_older));
}

std::optional<qint64> LinkHealth::deadline() const
{
    if (m_expected == 0) {
        return std::nullopt;
    }
    return m_lastBytes + qMax(MinSilenceMs, SilentIntervals * m_expected);
}

bool LinkHealth::isSilent(qint64 now) const
{
    const auto last = deadline();
    return last && now > *last;
}
