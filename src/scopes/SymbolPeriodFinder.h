#pragma once

#include <QVector>

#include <array>
#include <deque>

/// Finds the samples per symbol of an eye pattern in the data, 2 to 16, fractional values included.
///
/// A signal of symbols repeats its spectrum at every multiple of the symbol rate. With a roll-off,
/// what lies a little above half the symbol rate is therefore the same as what lies as much below
/// minus that half: the two band edges are coherent at a distance of exactly one symbol rate, and
/// at no other (spectral correlation; Gardner, "Exploitation of spectral redundancy in
/// cyclostationary signals", IEEE Signal Processing Magazine, vol. 8, no. 2, 1991). The finder
/// takes the spectrum of each block, sums the products of the edges for every distance, and adds up
/// their magnitudes over the blocks, because the phase of the symbols may differ from block to
/// block. The distance with the largest coherence is the symbol rate, if the power at half of it
/// has dropped as it does at the edge of a band. I and Q are taken separately, so that a Q that is
/// half a symbol late (OQPSK) does no harm.
class SymbolPeriodFinder
{
public:
    static constexpr int MaxBlocks = 16; ///< That the finder looks at.
    static constexpr int MinBlocks = 8;  ///< Below this, nothing is found.

    /// What was found.
    struct Period
    {
        bool found = false;            ///< The value counts.
        double samplesPerSymbol = 0.0; ///< 2 to 16.
    };

    /// Adds a block; one of less than 256 samples is ignored.
    /// \param i, q samples in parts of full scale, -1 to 1.
    void addBlock(const QVector<double>& i, const QVector<double>& q);

    /// Forgets all blocks.
    void clear() { m_blocks.clear(); }

    /// \return the samples per symbol of the last blocks.
    Period find() const;

private:
    static constexpr int Points = 512;     // of the transform, half of them zeros
    static constexpr int MinDistance = 28; // of the band edges, in lines of the spectrum
    static constexpr int MaxDistance = 264;
    static constexpr int Distances = MaxDistance - MinDistance + 1;
    static_assert(MinDistance >= 20 && MaxDistance < Points * 3 / 4); // see productsAt()

    // What is kept of a block.
    struct Block
    {
        std::array<float, Points / 2 + 1> power{}; // of I and Q together, line by line
        std::array<float, Distances> aligned{};    // product of the edges, Q as late as I
        std::array<float, Distances> staggered{};  // the same, Q half a symbol later
        std::array<float, Distances> largest{};    // what the product can be at most
    };

    static Block blockOf(const QVector<double>& i, const QVector<double>& q);
    static bool edgeIsAt(const Block& sum, int distance);
    static double slopeCorrection(const Block& sum, int distance);
    Block sum() const;

    std::deque<Block> m_blocks;
};
