#pragma once

#include "spectrum/MeasuredSpectrum.h"

#include <QString>

/// What is measured on the carrier of a channel.
///
/// The carrier is the part of the spectrum with the most power above the noise that CarrierSearch
/// finds. The noise floor, measured beside it, is subtracted from each of its bins before anything
/// else is made of them, so that bandwidth and power do not depend on the noise. Every result says
/// whether it is valid. docs/measurements.md has the formulas with their sources, and tables of the
/// errors.
namespace channelMeasurements {

/// Whether a result is valid, or why not.
enum class State {
    Valid,      ///< The numbers are measured.
    NoSpectrum, ///< There are no points, or too few of them, or no width.
    NoCarrier,  ///< Nothing rises enough above the noise, or the carrier fills the whole span.
    BeyondSpan, ///< The carrier or the wanted bandwidth reaches beyond the spectrum.
    NoNoise,    ///< No noise is seen beside the carrier, or it lies below the card's scale.
    InNoise     ///< The level where the bandwidth is measured lies in the noise.
};

/// Why a result is not valid, for the operator. \return "No carrier" and so on; empty for
/// State::Valid.
QString stateText(State state);

/// The power in a band.
struct ChannelPower
{
    State state = State::NoSpectrum; ///< The rest means nothing unless valid.
    double centre = 0.0;             ///< Of the band, in MHz.
    double bandwidth = 0.0;          ///< In MHz.
    double level = 0.0;              ///< In dB, noise included.
};

/// A band.
struct Bandwidth
{
    State state = State::NoSpectrum; ///< The rest means nothing unless valid.
    double low = 0.0;                ///< The lower limit in MHz.
    double high = 0.0;               ///< The upper limit in MHz.

    /// \return the width in MHz.
    double width() const { return high - low; }
    /// \return the frequency in the middle, in MHz.
    double middle() const { return (low + high) / 2.0; }
};

/// The noise beside the carrier.
struct NoiseFloor
{
    State state = State::NoSpectrum; ///< The rest means nothing unless valid.
    double level = 0.0;              ///< The mean power in a bin, in dB.
    double density = 0.0;            ///< In dB per Hz.
};

/// A carrier and the noise under it.
struct CarrierToNoise
{
    State state = State::NoSpectrum; ///< The rest means nothing unless valid.
    double carrier = 0.0;            ///< The carrier's power without noise, in dB.
    double bandwidth = 0.0;          ///< The occupied bandwidth in MHz, in which noise counts.
    double ratio = 0.0;              ///< C/N in dB.
    double density = 0.0;            ///< C/N0 in dBHz.
};

/// Where the carrier is.
struct FrequencyError
{
    State state = State::NoSpectrum; ///< The rest means nothing unless valid.
    double frequency = 0.0;          ///< The middle of the occupied band, in MHz.
    double error = 0.0;              ///< Its distance from the centre of the chart, in MHz.
};

/// \return the power in the band of \a bandwidth MHz around \a centre MHz: the sum of the powers of
/// the bins, of which those at the edges count with the part that lies inside (the integration
/// bandwidth method of spectrum analysers; Parseval's theorem). Noise is not subtracted.
ChannelPower channelPower(const MeasuredSpectrum& spectrum, double centre, double bandwidth);

/// \return the band that holds 99 % of the carrier's power, 0.5 % lying on either side of it
/// (No. 1.153 of the ITU Radio Regulations; Recommendation ITU-R SM.443, Annex 1), without the
/// noise.
Bandwidth occupiedBandwidth(const MeasuredSpectrum& spectrum);

/// \return the band outside which the carrier, without the noise, is at least \a down dB below its
/// highest level (x-dB bandwidth, Recommendation ITU-R SM.443, Annex 2), interpolated between the
/// bins. \param down in dB, above 0: 3 and 26 are usual.
Bandwidth bandwidthBelow(const MeasuredSpectrum& spectrum, double down);

/// \return the mean noise power beside the carrier; without a carrier, that of the whole spectrum.
/// It is found from a median, see noise::medianOverMean().
NoiseFloor noiseFloor(const MeasuredSpectrum& spectrum);

/// \return C/N and C/N0: the carrier's power without the noise, divided by the noise in the
/// occupied bandwidth, and in 1 Hz (B. Sklar, "Digital Communications", chapter "Communications
/// Link Analysis").
CarrierToNoise carrierToNoise(const MeasuredSpectrum& spectrum);

/// \return the middle of the occupied band, and how far it is from the centre of the spectrum. This
/// is a definition of our own, for a carrier whose spectrum is symmetric.
FrequencyError frequencyError(const MeasuredSpectrum& spectrum);

} // namespace channelMeasurements
