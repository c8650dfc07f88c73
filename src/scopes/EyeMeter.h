#pragma once

#include "wire/IqBlock.h"

#include <QVector>

#include <deque>

/// What EyeMeter has measured of one component, I or Q.
struct EyeOpening
{
    bool valid = false;       ///< There is an eye: the two values count.
    double percent = 0.0;     ///< Vertical opening of the eye around zero, 0 to 100 %.
    double bestInstant = 0.0; ///< Where it is widest, in symbols from a block's first sample,
                              ///< -0.5 up to but not including 0.5.
};

/// What EyeMeter has measured. A value counts only while its flag is set.
struct EyeFigures
{
    bool symbolPeriodFound = false; ///< The samples per symbol were found in the data.
    /// The samples per symbol, 2 to 16; those that a unit sends by default when none were found.
    double samplesPerSymbol = iqBlock::EyeSamplesPerSymbol;
    EyeOpening i; ///< Of the eye of I.
    EyeOpening q; ///< Of the eye of Q.
};

/// Measures an eye pattern over its last 16 blocks.
///
/// addBlock() only keeps the block. figures() finds the samples per symbol and measures the eyes of
/// I and Q, when a block has come since the last call; call it about four times per second while
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
    };

    std::deque<Block> m_blocks;
    EyeFigures m_figures;
    bool m_changed = false;
};
