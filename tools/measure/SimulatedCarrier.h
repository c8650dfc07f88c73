#pragma once

#include "sim/card/CardSpectrum.h"
#include "spectrum/MeasuredSpectrum.h"
#include "spectrum/SpectrumTrace.h"

/// The modulated carrier of a simulated card, seen by a chart, and what is true of it.
class SimulatedCarrier
{
public:
    /// What the carrier and the chart are set to.
    struct Settings
    {
        int span = 6;        ///< An index of the span table.
        double rate = 2.5;   ///< Symbols per microsecond: the carrier's width in MHz at −3 dB.
        double offset = 0.0; ///< Of the carrier from the chart's centre, in MHz.
        double level = 0.0;  ///< In dB, see CardSpectrum::setLevel().
        int averages = 64;   ///< So many spectra are received.
        quint32 seed = 1;    ///< Of the noise.
        SpectrumTrace::Average kind = SpectrumTrace::Average::Power; ///< What is averaged.
    };

    static constexpr double Centre = 70.0; ///< Of the chart, in MHz.

    /// Receives the spectra.
    explicit SimulatedCarrier(const Settings& settings);

    /// \return what the chart shows.
    const SpectrumTrace& trace() const { return m_trace; }
    /// \return the spectrum for measurements.
    MeasuredSpectrum spectrum() const;
    /// \return the width of a bin in MHz.
    double bin() const;

    /// \return the power of the carrier in dB.
    double carrierPower() const;
    /// \return the power of carrier and noise in a band of \a bandwidth MHz around \a centre MHz.
    double channelPower(double centre, double bandwidth) const;
    /// \return the power of the noise in a bin, in dB.
    double noiseLevel() const;
    /// \return the bandwidth in MHz that holds 99 % of the carrier's power.
    double occupiedBandwidth() const;
    /// \return the width in MHz at which the carrier's spectrum is \a down dB lower than in its
    /// middle.
    double bandwidthBelow(double down) const;

private:
    static constexpr int Channel = 0; // It has no drift at the time 0.

    Settings m_settings;
    CardSpectrum m_card;
    SpectrumTrace m_trace;
};
