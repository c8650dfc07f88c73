#pragma once

#include "sim/line/Chance.h"
#include "sim/line/FaultTable.h"

#include <QByteArray>
#include <QList>

// What goes wrong on the front-panel line between the unit and the panel, at the rates of a table.
// Seeded: the same seed spoils the same frames in the same way.
//
//     drop    one byte of the frame is lost
//     cut     the frame ends somewhere before its last byte
//     junk    1 to 16 bytes of any value come in front of the frame
//     split   the frame comes in 2 to 4 pieces, some milliseconds apart
//     burst   the frame is held, and goes out in one write with those after it, up to 32 at once
class LineFaults
{
public:
    static constexpr int MaxJunk = 16;
    static constexpr int BurstFrames = 32;

    struct Piece
    {
        QByteArray bytes;
        int pauseMs = 0; // how long the line is quiet behind it
    };

    // No faults at all.
    LineFaults() = default;
    LineFaults(const FaultTable& rates, quint32 seed);

    // The names that a table needs to know.
    static QList<FaultTable::Fault> names();

    // In: a frame that is to be sent. Out: what goes over the line for it, in this order; nothing
    // while a burst is gathered.
    QList<Piece> pass(const QByteArray& frame);

    // Whether frames are held for a burst, and what is held: it is no longer held then.
    bool isHolding() const { return !m_held.isEmpty(); }
    QByteArray release();

private:
    QList<Piece> split(const QByteArray& bytes);

    double m_drop = 0.0;
    double m_cut = 0.0;
    double m_junk = 0.0;
    double m_split = 0.0;
    double m_burst = 0.0;
    Chance m_chance;
    QByteArray m_held;
    int m_heldFrames = 0;
};
