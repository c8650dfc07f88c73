#pragma once

#include "scopes/SymbolPeriodFinder.h"
#include "wire/IqBlock.h"

#include <QVector>

#include <deque>

/// What EyeMeter has measured of one component, I or Q.
///
/// The opening is that of the eye around zero: of the only eye with two levels (BPSK, QPSK), of the
/// innermost with four (8PSK, 16QAM). It is the eye height that oscilloscopes measure, the distance
/// of the two levels less three standard deviations on either side, over that distance: 1 - 3 / Q,
/// where Q = (distance of the levels) / (sum of their standard deviations) as in ITU-T O.201.
struct EyeOpening
{
    bool valid = false;   ///< There is an eye, open or closed: the two values count.
    double percent = 0.0; ///< The opening at the best instant, 0 (closed) to 100 %.
    /// Where the eye is widest, in symbols from a block's first sample, -0.5 up to but not
    /// including 0.5. For I and Q of OQPSK the two differ by half a symbol.
    double bestInstant = 0.0;
};

/// What EyeMeter has measured. A value counts only while its flag is set.
struct EyeFigures
{
    bool symbolPeriodFound = false; ///< The samples per symbol were found in the data.
    /// The samples per symbol, 2 to 16. Those that a unit sends by default stand here when none
    /// were found, and when what was found differs from them by less than half a per cent.
    double samplesPerSymbol = iqBlock::EyeSamplesPerSymbol;
    EyeOpening i; ///< Of the eye of I.
    EyeOpening q; ///< Of the eye of Q.
};

/// Measures an eye pattern over its last 16 blocks.
///
/// addBlock() only keeps the block. figures() finds the samples per symbol and measures the eyes of
/// I and Q, when a block has come since the last call; call it about once per second while
/// the numbers are shown, and not at all otherwise.
class EyeMeter
{
public:
    static constexpr int MaxBlocks = 16; ///< That the figures are over.

    /// Adds a block.
    /// \param i, q samples in parts of full scale, -1 to 1, some samples per symbol.
    void addBlock(const QVector<double>& i, const QVector<double>& q);

    /// Forgets all blocks.
    void clear();

    /// \return how many blocks the figures are over, 0 to MaxBlocks.
    int blockCount() const { return static_cast<int>(m_blocks.size()); }

    /// \return the figures of the last blocks; nothing in them is valid before there are enough.
    const EyeFigures& figures();

private:
    struct Block
    {
        QVector<double> i;
        QVector<double> q;
        bool searched = false; // by the finder of the symbol period
    };

    void findPeriod();
    EyeOpening openingOf(QVector<double> Block::*component) const;

    std::deque<Block> m_blocks;
    SymbolPeriodFinder m_periodFinder;
    EyeFigures m_figures;
    bool m_changed = false;
};
