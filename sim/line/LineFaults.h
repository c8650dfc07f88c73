#pragma once

#include "sim/line/Chance.h"
#include "sim/line/FaultTable.h"

#include <QByteArray>
#include <QList>

/// Faults of the line from the unit to the panel, at the rates of a table. The same seed damages
/// the same frames in the same way.
///
///     drop    one byte of the frame is lost
///     double  one byte of the frame comes twice
///     noise   up to 4 bytes of the frame have other values
///     cut     the frame ends somewhere before its last byte
///     junk    1 to 16 bytes of any value come in front of the frame
///     split   the frame comes in 2 to 4 pieces, some milliseconds apart
///     burst   the frame is held, and goes out in one write with those after it, up to 32 at once
class LineFaults
{
public:
    static constexpr int MaxJunk = 16;     ///< bytes in front of a frame
    static constexpr int MaxNoise = 4;     ///< bytes of a frame with other values
    static constexpr int BurstFrames = 32; ///< that go out at once

    /// Bytes that go out in one write.
    struct Piece
    {
        QByteArray bytes; ///< as they go over the line
        int pauseMs = 0;  ///< how long the line is quiet afterwards
    };

    /// A line without faults.
    LineFaults() = default;
    /// Faults at the \a rates of a table.
    LineFaults(const FaultTable& rates, quint32 seed);

    /// \return the faults of this class, for a table
    static QList<FaultTable::Fault> names();

    /// \return what goes over the line, in this order, for a frame that is to be sent; nothing
    /// while frames are held for a burst
    QList<Piece> pass(const QByteArray& frame);

    /// Whether frames are held for a burst.
    bool isHolding() const { return !m_held.isEmpty(); }
    /// \return the frames that are held, which are then no longer held
    QByteArray release();

private:
    QByteArray damage(QByteArray bytes);
    QList<Piece> split(const QByteArray& bytes);

    double m_drop = 0.0;
    double m_double = 0.0;
    double m_noise = 0.0;
    double m_cut = 0.0;
    double m_junk = 0.0;
    double m_split = 0.0;
    double m_burst = 0.0;
    Chance m_chance;
    QByteArray m_held;
    int m_heldFrames = 0;
};
