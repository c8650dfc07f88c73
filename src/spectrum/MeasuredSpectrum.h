#pragma once

#include <QVector>

/// A spectrum as measurements take it: powers on a frequency axis. See SpectrumTrace::powers(),
/// SpectrumTrace::independentSpectra() and FrequencyAxis.
///
/// Its N points are N bins that share the width: point i is the power in a bin around centre +
/// (i − N/2) × width / N. Places between the points are fractional indexes: bin i reaches from
/// i − 0.5 to i + 0.5.
struct MeasuredSpectrum
{
    QVector<float> powers; ///< One per bin, 1 at 0 dB, lowest frequency first.
    double centre = 0.0;   ///< In MHz.
    double width = 0.0;    ///< Of all bins together, in MHz.
    double spectra = 1.0;  ///< How many independent spectra the powers are the mean of, 1 or more.

    /// \return the width of a bin in MHz; the spectrum has points.
    double bin() const { return width / static_cast<double>(powers.size()); }
    /// \return the frequency in MHz of a place between the points; the spectrum has points.
    double frequencyAt(double index) const
    {
        return centre + (index - static_cast<double>(powers.size()) / 2.0) * bin();
    }
    /// \return the place of a frequency in MHz, which may lie outside the spectrum.
    double indexAt(double frequency) const
    {
        return (frequency - centre) / bin() + static_cast<double>(powers.size()) / 2.0;
    }
};
