#pragma once

#include "wire/IqBlock.h"

#include <QVector>

#include <array>

// Cuts the stream of a demodulator's scope port into blocks of 256 I/Q samples.
//
// On the line a block is 1,536 bytes, big-endian: 256 records of a 16-bit index (0 to 255), a
// signed 16-bit I sample and a signed 16-bit Q sample. The decoder hunts, byte by byte, for three
// records in a row with the indexes 0, 1 and 2; from there it collects a whole block, checks every
// index and hunts again. A block with a wrong index is dropped as a whole. How the stream is cut
// into calls makes no difference. Plain: no port, no widget, never more than one block of memory.
class IqBlockDecoder
{
public:
    static constexpr int Records = iqBlock::Records;
    static constexpr int RecordBytes = iqBlock::RecordBytes;
    static constexpr int BlockBytes = iqBlock::Bytes;
    static constexpr int SyncBytes = 3 * RecordBytes; // what the hunt looks at
    static constexpr double Scale = 3.0517578125e-05; // 1/32768: samples run from -1 to 1

    // Takes bytes up to the end of the next good block, or all of them. Out: how many were taken;
    // blockReady() tells whether a block has been decoded by this call.
    qsizetype take(const char* bytes, qsizetype size);
    bool blockReady() const { return m_blockReady; }

    // The samples of the last good block, 256 each, -1 to 1; empty before the first. The first I
    // sample has the value of the second.
    const QVector<double>& i() const { return m_i; }
    const QVector<double>& q() const { return m_q; }

    // The largest magnitudes of the current block, 0 to 1, of a broken one those in front of its
    // wrong index; 0 from each synchronisation on until the block is decoded.
    double maxAbsI() const { return m_maxAbsI * Scale; }
    double maxAbsQ() const { return m_maxAbsQ * Scale; }

    // Three indexes have been found and a block is being collected.
    bool synced() const { return m_synced; }
    // The hunt has dropped a byte, ever.
    bool lostSync() const { return m_lostSync; }

private:
    void hunt();
    void decode(const char* block);

    std::array<char, BlockBytes> m_buffer{};
    qsizetype m_size = 0;
    QVector<double> m_i;
    QVector<double> m_q;
    int m_maxAbsI = 0; // in steps of the samples, 0 to 32768
    int m_maxAbsQ = 0;
    bool m_synced = false;
    bool m_lostSync = false;
    bool m_blockReady = false;
};
