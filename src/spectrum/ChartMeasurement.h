#pragma once

#include "spectrum/MeasuredSpectrum.h"

#include <QString>

/// What is measured on a chart and how the result reads, one measurement at a time. The numbers are
/// those of channelMeasurements; here they become texts.
namespace chartMeasurement {

/// What is measured.
enum class Kind {
    None,              ///< Nothing.
    ChannelPower,      ///< The power in a channel.
    OccupiedBandwidth, ///< The band with 99 % of the carrier's power.
    HalfPowerWidth,    ///< The band between the points 3 dB below the highest.
    CarrierToNoise,    ///< C/N and C/N0.
    FrequencyError     ///< The carrier's distance from the centre.
};

/// What the operator wants to be measured.
struct Choice
{
    Kind kind = Kind::None; ///< What.
    /// The width of the channel around the centre of the chart, in MHz. 0 for automatic: the band
    /// above the points 26 dB below the carrier's highest level or, where these lie in the noise,
    /// the span's nominal width.
    double bandwidth = 0.0;
};

/// A result as the operator reads it.
struct Reading
{
    QString name;         ///< What is measured.
    QString value;        ///< The result with its unit, "---" while there is none.
    QString details;      ///< What belongs to it, or why there is no result.
    bool hasBand = false; ///< Whether it has limits; the rest means nothing otherwise.
    double low = 0.0;     ///< The lower limit in MHz.
    double high = 0.0;    ///< The upper limit in MHz.
};

/// Measures.
/// \param spectrum the mean powers of a chart.
/// \param nominal the span's nominal width in MHz, the last resort of an automatic channel.
/// \param decimals of a frequency in MHz, see FrequencyAxis::decimals().
Reading measure(
    const Choice& choice, const MeasuredSpectrum& spectrum, double nominal, int decimals);

/// \return the next narrower or wider width of a channel: 1, 1.5, 2, 3, 5 or 7.5 and their tenfold
/// and hundredfold, at least MinBandwidth.
/// \param bandwidth in MHz.
/// \param widest the largest width in MHz, which is a step as well.
double nextBandwidth(double bandwidth, bool wider, double widest);

constexpr double MinBandwidth = 0.01; ///< Of a channel that the operator chooses, in MHz.

} // namespace chartMeasurement
