#pragma once

#include "spectrum/MeasuredSpectrum.h"

/// The strongest carrier of a spectrum and the noise beside it.
///
/// find() begins with a floor that it takes from the quietest parts of the spectrum. A carrier is a
/// run of bins that lie more than 3 dB above the floor in the mean: their distances from it are
/// summed from left to right, and the run ends where the sum has fallen from its highest value by
/// more than noise can make it fall (the cumulative sum test, E. S. Page, "Continuous Inspection
/// Schemes", Biometrika 1954). Of several runs, the one with the most power is the carrier. The
/// noise outside that run and a guard on either side of it gives a better floor, and the search is
/// repeated with that. A carrier whose power in its bins is less than 1.8 dB above the noise in
/// them is not taken as one, and neither is one of less than 9 dB beside which there is more than
/// noise: it is a part of a wider carrier that is lost in the noise elsewhere.
class CarrierSearch
{
public:
    /// A spectrum with fewer points has neither carrier nor noise.
    static constexpr qsizetype MinPoints = 16;
    /// With fewer bins beside the carrier, the noise is not known.
    static constexpr qsizetype MinNoiseBins = 8;

    /// Searches the carrier in \a spectrum.
    explicit CarrierSearch(const MeasuredSpectrum& spectrum);

    /// \return whether there is a carrier.
    bool found() const { return m_first >= 0; }
    /// \return the first bin that rises above the noise.
    qsizetype first() const { return m_first; }
    /// \return the last bin that rises above the noise.
    qsizetype last() const { return m_last; }
    /// \return the first bin of the guard, which holds the skirts that lie in the noise.
    qsizetype guardFirst() const;
    /// \return the last bin of the guard.
    qsizetype guardLast() const;
    /// \return whether the carrier reaches an end of the spectrum.
    bool isCut() const { return m_first == 0 || m_last == m_powers.size() - 1; }

    /// \return whether there is noise to be measured.
    bool hasNoise() const { return m_hasNoise; }
    /// \return the mean power of the noise in a bin; the best guess while hasNoise() is false.
    double floor() const { return m_floor; }
    /// \return how many independent spectra each bin is the mean of, as the spread of the noise
    /// tells: at least as many as are known.
    double spectra() const { return m_shape; }

private:
    // A run of bins above the floor.
    struct Run
    {
        qsizetype first = -1;
        qsizetype last = -1;
        double excess = 0.0; // power above the floor
    };

    double quietestParts() const;
    Run strongestRun() const;
    Run runAt(qsizetype first) const;
    void take(const Run& run);
    double ratio() const;
    bool isWeak() const;
    bool isPart() const;
    void measureNoise();
    qsizetype guard() const;

    const QVector<float>& m_powers;
    double m_spectra; // as they are known
    double m_shape;
    double m_fall; // of the sum at the end of a run
    double m_floor = 0.0;
    qsizetype m_first = -1;
    qsizetype m_last = -1;
    bool m_hasNoise = false;
};
