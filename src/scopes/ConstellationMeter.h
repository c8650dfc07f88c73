#pragma once

#include "scopes/ModulationOrder.h"

#include <QPointF>
#include <QVector>

#include <deque>

/// What ConstellationMeter has measured. A value counts only while its flag is set.
struct ConstellationFigures
{
    ModulationOrder order = ModulationOrder::Unknown; ///< The constellation that was found.
    bool valid = false;             ///< The order is known: all values but the last two count.
    double evmPercent = 0.0;        ///< Error vector magnitude, rms, of the rms amplitude.
    double merDb = 0.0;             ///< Modulation error ratio in dB.
    double offsetPercent = 0.0;     ///< I/Q origin offset, of the rms amplitude.
    double offsetDb = 0.0;          ///< The same in dB below the mean power of the points.
    QVector<QPointF> idealPoints;   ///< The points of the fit, in parts of full scale.
    bool imbalanceValid = false;    ///< The last two values count; never with BPSK.
    double imbalanceDb = 0.0;       ///< Gain of I over that of Q in dB.
    double quadratureDegrees = 0.0; ///< 90° less the angle between the axes of I and Q.
};

/// Measures a constellation over its last 16 blocks.
///
/// addBlock() only keeps the block. figures() decides which constellation it is and fits it to the
/// points, when a block has come since the last call; call it about four times per second while the
/// numbers are shown, and not at all otherwise.
class ConstellationMeter
{
public:
    static constexpr int MaxBlocks = 16; ///< That the figures are over.

    /// Adds a block. The first pair of a block from the line is no point of the signal and is left
    /// out.
    /// \param i, q samples in parts of full scale, -1 to 1, one per symbol at its decision.
    void addBlock(const QVector<double>& i, const QVector<double>& q);

    /// Forgets all blocks, and the order.
    void clear();

    /// \return how many blocks the figures are over, 0 to MaxBlocks.
    int blockCount() const { return static_cast<int>(m_blocks.size()); }

    /// \return the figures of the last blocks; nothing in them is valid before there are enough.
    const ConstellationFigures& figures();

private:
    struct Block
    {
        QVector<double> i;
        QVector<double> q;
    };

    std::deque<Block> m_blocks;
    ConstellationFigures m_figures;
    bool m_changed = false;
};
