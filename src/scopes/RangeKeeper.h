#pragma once

/// Half the range of a plot's axes: 1 when it is fixed, otherwise fitted to what the blocks hold.
///
/// A fitted range is one of 1, 0.8, 0.6, 0.4, 0.3, 0.2, 0.15, 0.1, ... so that the scale stays
/// readable. It is chosen with room to spare, grows only with a block that does not fit any more,
/// and shrinks, if it may, only after ShrinkAfter blocks in a row that would all fit into the
/// smaller one with room to spare. So it jumps neither with the peaks of noise nor with a signal
/// that fades in and out.
class RangeKeeper
{
public:
    static constexpr int ShrinkAfter = 30;    ///< In blocks: they arrive in four seconds.
    static constexpr double MinLimit = 0.002; ///< A range never gets smaller, in full scale.

    /// Sets whether the range is fixed, and counts the blocks that would fit a smaller one anew.
    void setFixed(bool fixed);
    /// \return whether the range is fixed; false at first.
    bool fixed() const { return m_fixed; }

    /// Sets whether a fitted range may shrink, true at first: while nothing on the screen fades, a
    /// smaller range would lose what is there.
    void setMayShrink(bool may) { m_mayShrink = may; }
    /// Fits the range to the next block, be it larger or smaller than those before.
    void fitAnew() { m_fitAnew = true; }

    /// Takes a block into account.
    /// \param peak the largest magnitude in the block; NaN and 0 change nothing.
    void addPeak(double peak);

    /// \return half the range: the axis runs from -limit() to limit().
    double limit() const { return m_fixed ? 1.0 : m_limit; }

private:
    double m_limit = 1.0;
    double m_largestSince = 0.0;
    int m_smaller = 0; // blocks in a row that would fit into a smaller range
    bool m_fixed = false;
    bool m_mayShrink = true;
    bool m_fitAnew = false;
};
