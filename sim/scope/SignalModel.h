#pragma once

#include <QString>
#include <QVector>

#include <complex>
#include <random>
#include <vector>

// What a demodulator's signal is made of. Amplitudes are parts of full scale.
struct SignalSettings
{
    enum class Modulation { Bpsk, Qpsk, Oqpsk, Psk8, Qam16 };

    Modulation modulation = Modulation::Qpsk;
    double snr = 20.0;      // symbol energy over noise density, in dB, at the decision
    double phase = 0.0;     // phase noise, in degrees rms
    double offset = 0.0;    // frequency offset, in turns a symbol
    double imbalance = 0.0; // gain of I over that of Q, in dB
    double skew = 0.0;      // I and Q off their right angle, in degrees
    double clip = 1.0;      // magnitude at which I and Q are clipped, 0 to 1
    double level = 0.5;     // mean amplitude of the symbols
    double rolloff = 0.35;  // of the root-raised-cosine shaping, 0.05 to 1
    double band = 1000.0;   // bandwidth of the filter in front of the demodulator, in symbol rates

    // In: "bpsk", "qpsk", "oqpsk", "8psk" or "16qam", and behind it any of ":snr=20", ":phase=3"
    // and so on by the names above. Out: the settings; on a fault `fault` says why and the settings
    // are those of the default.
    static SignalSettings fromText(const QString& text, QString& fault);
};

// A demodulator's signal at its decision filter's output: random symbols, root-raised-cosine
// shaping, noise, the receiver's intermediate-frequency filter, the matched filter, and behind it
// the faults of a receiver: frequency offset, phase noise, I/Q imbalance and clipping. Seeded: the
// same seed gives the same samples.
class SignalModel
{
public:
    explicit SignalModel(const SignalSettings& settings, quint32 seed = 1);

    // Another signal from the next sample on, which is at a decision.
    void setSettings(const SignalSettings& settings);

    // Appends `count` samples, -32768 to 32767 each, to both lists. samplesPerSymbol:
    // iqBlock::EyeSamplesPerSymbol, from a decision on, or 1, at the decisions (for OQPSK, whose Q
    // is half a symbol later, each at its own).
    void append(int count, int samplesPerSymbol, QVector<int>& i, QVector<int>& q);

    // The points of a modulation, of mean energy 1.
    static std::vector<std::complex<double>> alphabet(SignalSettings::Modulation modulation);

    // The root-raised-cosine filter of this roll-off over SpanSymbols symbols, of energy 1.
    static std::vector<double> rootRaisedCosine(double rolloff);
    static constexpr int SpanSymbols = 16;

    // A low-pass filter of the same length that passes half of `band` (in symbol rates) to either
    // side of the carrier; one single tap where that is more than the samples can hold.
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
    Complex impaired(Complex sample);
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
