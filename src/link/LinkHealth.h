#pragma once

#include <QtGlobal>

#include <optional>

/// What is known of the link to the main unit.
enum class LinkState {
    Alive,  ///< the line is open, and nothing speaks against the main unit
    Silent, ///< the line is open, but the main unit has stopped sending
    Closed  ///< the line was never opened, or is lost
};

/// Decides from the times of what arrives whether the main unit has fallen silent.
///
/// Bytes go in by noteBytes(), each "PING" by notePing(). Three "PING" at a steady interval make
/// the unit one that is expected to go on; from then on it is silent when nothing at all has
/// arrived for more than three such intervals, and for more than MinSilenceMs. The interval stays
/// the expected one until three others in a row are steady. A unit that never sends "PING" is never
/// silent.
///
/// All times are milliseconds of one clock that does not jump.
class LinkHealth
{
public:
    /// The shortest silence that counts, in ms.
    static constexpr qint64 MinSilenceMs = 3000;

    /// "PING" that come closer together, in ms, were held up on the way and count as one.
    static constexpr qint64 MinIntervalMs = 20;

    /// Takes note that bytes of any kind have arrived.
    void noteBytes(qint64 now);

    /// Takes note that a "PING" has arrived.
    void notePing(qint64 now);

    /// \return the last moment at which the unit is not silent yet, if nothing arrives before;
    /// nothing while the unit is not expected to send.
    std::optional<qint64> deadline() const;

    /// \return whether the unit is silent.
    bool isSilent(qint64 now) const;

private:
    bool isSteady() const;

    qint64 m_lastBytes = 0;
    std::optional<qint64> m_lastPing;
    qint64 m_newer = 0;    // the last interval between two "PING", 0 while there is none
    qint64 m_older = 0;    // the one before
    qint64 m_expected = 0; // interval, 0 while none was steady
};
