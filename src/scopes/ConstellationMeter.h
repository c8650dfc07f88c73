#pragma once

#include "scopes/ConstellationFit.h"

#include <QPointF>
#include <QVector>

#include <deque>

/// What ConstellationMeter has measured. A value counts only while its flag is set.
///
/// The definitions are those of ETSI TR 101 290 (Measurement guidelines for DVB systems), where it
/// has one. The error vector is the received point less its ideal one, which is the decided point
/// turned and scaled as a whole with the least mean square of the error. An origin offset, an
/// imbalance and a quadrature error are not taken out, so they are part of EVM and MER.
struct ConstellationFigures
{
    ModulationOrder order = ModulationOrder::Unknown; ///< The constellation that was found.
    bool valid = false; ///< The order is known: all values but the last two count.
    /// Error vector magnitude: rms error over the rms amplitude of the ideal points. (TR 101 290
    /// refers it to the outermost point, which for 16QAM gives a value smaller by 1.34.)
    double evmPercent = 0.0;
    /// Modulation error ratio in dB: mean power of the ideal points over that of the error.
    double merDb = 0.0;
    double offsetPercent = 0.0;   ///< I/Q origin offset, of the rms amplitude of the ideal points.
    double offsetDb = 0.0;        ///< The same in dB, -100 at least.
    QVector<QPointF> idealPoints; ///< The ideal points, in parts of full scale.
    /// The last two values count: never with BPSK, whose points lie on one axis, and not while
    /// noise may move them by 0.1 dB or 0.5° (three times the standard deviation).
    bool imbalanceValid = false;
    double imbalanceDb = 0.0;       ///< Gain imbalance: gain of I over that of Q, in dB.
    double quadratureDegrees = 0.0; ///< Quadrature error: 90° less the angle between I and Q.
};

/// \return the figures of a fit to received points.
ConstellationFigures constellationFigures(
    const ReceivedPoints& received, const ConstellationFit& fit);

/// Measures a constellation over its last 16 blocks.
///
/// addBlock() only keeps the block. figures() finds out which constellation it is and fits it to
/// the points, when a block has come since the last call; call it about four times per second while
/// the numbers are shown, and not at all otherwise.
///
/// The order has a hysteresis: a stricter test names points than the one that goes on calling them
/// so, and an order is given up only after two failures in a row. Between two orders there is
/// always "unknown".
class ConstellationMeter
{
public:
    static constexpr int MaxBlocks = 16; ///< That the figures are over.
    static constexpr int MinBlocks = 4;  ///< Below this, nothing is found.

    /// Adds a block. The first pair of a block from the line is no point of the signal and is left
    /// out.
    /// \param i, q samples in parts of full scale, -1 to 1, one per symbol at its decision; of two
    /// lengths the shorter one counts.
    void addBlock(const QVector<double>& i, const QVector<double>& q);

    /// Forgets all blocks, and the order.
    void clear();

    /// \return how many blocks the figures are over, 0 to MaxBlocks.
    int blockCount() const { return static_cast<int>(m_blocks.size()); }

    /// \return the figures of the last blocks.
    const ConstellationFigures& figures();

private:
    struct Block
    {
        QVector<double> i;
        QVector<double> q;
    };

    ReceivedPoints received() const;
    void updateFit(const ReceivedPoints& received);

    std::deque<Block> m_blocks;
    ConstellationFit m_fit;
    ConstellationFigures m_figures;
    int m_failures = 0; // of keeping the order, in a row
    bool m_changed = false;
};
