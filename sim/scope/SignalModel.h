#pragma once

#include "wire/IqBlock.h"

#include <QString>
#include <QVector>

#include <complex>
#include <random>
#include <vector>

/// The parameters of a demodulator's signal. Amplitudes are fractions of full scale.
struct SignalSettings
{
    /// The modulations that the model has.
    enum class Modulation { Bpsk, Qpsk, Oqpsk, Psk8, Qam16 };

    Modulation modulation = Modulation::Qpsk; ///< of the carrier
    double snr = 20.0;      ///< symbol energy over noise density, in dB, at the decision
    double phase = 0.0;     ///< phase noise, in degrees rms
    double offset = 0.0;    ///< frequency offset, in turns per symbol
    double imbalance = 0.0; ///< gain of I over that of Q, in dB
    double skew = 0.0;      ///< 90° less the angle between the axes of I and Q, in degrees
    double dci = 0.0;       ///< origin offset of I, in per cent of the level
    double dcq = 0.0;       ///< origin offset of Q, in per cent of the level
    double clip = 1.0;      ///< magnitude at which I and Q are clipped, 0 to 1
    double level = 0.5;     ///< mean amplitude of the symbols
    double rolloff = 0.35;  ///< of the root-raised-cosine shaping, 0.05 to 1
    double band = 1000.0; ///< bandwidth of the filter in front of the demodulator, in symbol rates
    double sps = iqBlock::EyeSamplesPerSymbol; ///< samples per symbol of an eye pattern, 2 to 16

    /// Parses "bpsk", "qpsk", "oqpsk", "8psk" or "16qam", followed by any of ":snr=20", ":phase=3"
    /// and so on with the names above.
    /// \param[out] fault why the text is refused; unchanged when it is accepted
    /// \return the settings; the defaults when the text is refused
    static SignalSettings fromText(const QString& text, QString& fault);
};

/// A demodulator's signal at the output of its decision filter.
///
/// Random symbols go through root-raised-cosine shaping, noise is added, then come the receiver's
/// intermediate-frequency filter, the matched filter, and the faults of a receiver: frequency
/// offset, phase noise, I/Q imbalance, origin offset and clipping. The same seed gives the same
/// samples.
class SignalModel
{
public:
    /// A signal with the symbols and the noise of \a seed.
    explicit SignalModel(const SignalSettings& settings, quint32 seed = 1);

    /// Changes the signal from the next sample on, which is at a decision.
    void setSettings(const SignalSettings& settings);

    /// Appends \a count samples, -32768 to 32767 each, to both lists.
    /// \param samplesPerSymbol iqBlock::EyeSamplesPerSymbol for an eye pattern, which begins at a
    /// decision and has the samples per symbol of the settings; or 1 for the decisions alone, where
    /// I and Q of OQPSK, whose Q is half a symbol later, are each taken at their own
    void append(int count, int samplesPerSymbol, QVector<int>& i, QVector<int>& q);

    /// \return the constellation points of a modulation, with a mean energy of 1
    static std::vector<std::complex<double>> alphabet(SignalSettings::Modulation modulation);

    /// \return the root-raised-cosine filter of this roll-off over SpanSymbols symbols, with an
    /// energy of 1
    static std::vector<double> rootRaisedCosine(double rolloff);
    static constexpr int SpanSymbols = 16; ///< length of the filters in symbols

    /// \return a low-pass filter of the same length that passes half of \a band (in symbol rates)
    /// on either side of the carrier; a single tap when the sample rate is too low for that
    static std::vector<double> bandPass(double band);

private:
    using Complex = std::complex<double>;

    // A FIR filter with its delay line.
    class Filter
    {
    public:
        explicit Filter(std::vector<double> taps = {1.0});
        Complex step(Complex input);

    private:
        std::vector<double> m_taps;
        std::vector<Complex> m_delay;
        size_t m_at = 0;
    };

    void fill();
    Complex nextSample();
    void appendDecisions(int count, QVector<int>& i, QVector<int>& q);
    void appendEye(int count, QVector<int>& i, QVector<int>& q);
    void appendInterpolated(int count, QVector<int>& i, QVector<int>& q);
    void send(Complex sample, double samplesPerSymbol, QVector<int>& i, QVector<int>& q);
    Complex impaired(Complex sample, double samplesPerSymbol);
    int quantised(double value) const;

    SignalSettings m_settings;
    std::mt19937 m_random;
    std::normal_distribution<double> m_normal;
    std::vector<Complex> m_alphabet;
    Filter m_shaping;
    Filter m_band;
    Filter m_matched;
    Complex m_symbol;    // the one whose Q is still to come (OQPSK)
    double m_turn = 0.0; // of the frequency offset, in turns
    double m_wander = 0.0;
    int m_phase = 0; // samples since the last symbol
};
