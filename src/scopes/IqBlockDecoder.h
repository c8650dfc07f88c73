#pragma once

#include "wire/IqBlock.h"

#include <QVector>

#include <array>

/// Cuts the stream of a demodulator's scope port into blocks of 256 I/Q samples.
///
/// On the line a block is 1,536 bytes, big-endian: 256 records of a 16-bit index (0 to 255), a
/// signed 16-bit I sample and a signed 16-bit Q sample. The decoder searches byte by byte for three
/// records in a row with the indexes 0, 1 and 2. From there it collects a whole block, checks every
/// index and searches again. A block with a wrong index is dropped completely. How the stream is
/// cut into calls makes no difference. The decoder needs no port and no widget, and never more
/// memory than one block.
class IqBlockDecoder
{
public:
    static constexpr int Records = iqBlock::Records;         ///< Records of a block.
    static constexpr int RecordBytes = iqBlock::RecordBytes; ///< Bytes of a record.
    static constexpr int BlockBytes = iqBlock::Bytes;        ///< Bytes of a block.
    static constexpr int SyncBytes = 3 * RecordBytes; ///< The bytes that the search looks at.
    static constexpr double Scale = 3.0517578125e-05; ///< 1/32768: samples run from -1 to 1.

    /// Takes bytes up to the end of the next good block, or all of them. Call it again with the
    /// rest until everything is taken. \return how many of the \a size bytes were taken.
    qsizetype take(const char* bytes, qsizetype size);
    /// \return whether the last call of take() has decoded a block.
    bool blockReady() const { return m_blockReady; }

    /// The samples of the last good block in parts of full scale, 256 each, -1 to 1; empty before
    /// the first block. The first I sample has the value of the second.
    ///@{
    const QVector<double>& i() const { return m_i; }
    const QVector<double>& q() const { return m_q; }
    ///@}

    /// The largest magnitudes of the current block, 0 to 1; of a broken block, those in front of
    /// its wrong index. They are 0 from each synchronisation on until the block is decoded.
    ///@{
    double maxAbsI() const { return m_maxAbsI * Scale; }
    double maxAbsQ() const { return m_maxAbsQ * Scale; }
    ///@}

    /// \return whether three indexes have been found and a block is being collected.
    bool synced() const { return m_synced; }
    /// \return whether the search has ever dropped a byte.
    bool lostSync() const { return m_lostSync; }

private:
    void searchStart();
    void decode(const char* block);

    std::array<char, BlockBytes> m_buffer{};
    qsizetype m_size = 0;
    QVector<double> m_i;
    QVector<double> m_q;
    int m_maxAbsI = 0; // in steps of the samples, 0 to 32,768
    int m_maxAbsQ = 0;
    bool m_synced = false;
    bool m_lostSync = false;
    bool m_blockReady = false;
};
