#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <random>

/// What a spectral card sees.
///
/// Each of the three channels has a noise floor, the modulated carrier of the channel's
/// demodulator, as wide as its bit rate makes it, and two unmodulated carriers. Noise and the
/// modulated carrier have a power per MHz, so that a bin of half the width holds half of it; the
/// modulated carrier keeps its power whatever its rate, and drifts slowly. The unmodulated carriers
/// are other transmitters on fixed frequencies: neither the span nor the drift moves them, only
/// tuning does. Frequencies are relative to the intermediate frequency of 70 MHz.
///
/// The power in a bin has the statistics of one FFT: that of noise and of a modulated carrier has
/// an exponential distribution (chi-square with two degrees of freedom) around its mean; an
/// unmodulated carrier adds to the amplitude of the noise. The same seed gives the same spectra.
class CardSpectrum
{
public:
    static constexpr int Channels = 3; ///< one per demodulator

    /// Spectra with the noise of \a seed.
    explicit CardSpectrum(quint32 seed = 1);

    /// Sets the span of a channel, as the card's bus does. \param channel 0 to 2
    /// \param span an index of the span table
    /// \return false when there is no such channel or span
    bool setSpan(int channel, int span);
    /// \return the span of a channel, an index of the span table
    int span(int channel) const { return m_channels.at(static_cast<size_t>(channel)).span; }
    /// Stores the trim of a channel; the levels do not change. \param trim 0 to 9 dB
    /// \return false when there is no such channel or trim
    bool setTrim(int channel, int trim);
    /// \return the trim of a channel in dB
    int trim(int channel) const { return m_channels.at(static_cast<size_t>(channel)).trim; }
    /// Sets the width of the modulated carrier, which is a bit wider than its symbol rate.
    /// \param symbolsPerSecond above 0
    void setSymbolRate(int channel, double symbolsPerSecond);
    /// Shifts all carriers. \param shift in MHz above the middle
    void setShift(int channel, double shift);
    /// Raises all carriers of all channels, but not the noise. From about 30 dB on the card is
    /// overloaded: it sends bytes of 255. \param level in dB, −MaxLevel to MaxLevel; others are
    /// ignored
    void setLevel(double level);
    static constexpr double MaxLevel = 80.0; ///< of setLevel(), in dB

    /// Takes a message from the panel to a demodulator: "D2:NFFT:11" changes the span of
    /// demodulator 2, "D1 D2 D3:NFFT:11" of all three.
    ///
    /// This is for a panel that does not set spans over the card's bus; a channel whose span was
    /// set there does not change. Three or four spans have the same parameter: a span that has it
    /// already stays, otherwise the narrowest is taken.
    void takeCommand(const QString& body);

    /// \return how many points a K7150 has of a span: those bins of its FFT that it keeps,
    /// 2^fftParam − code of the span table; 0 when there is no such span
    static int bins(int span);

    /// \return \a count points of the channel's span, lowest frequency first, one byte per point;
    /// level in dB = byte × 0.5 − 120. The points are bins that share the analysed width: point i
    /// lies (i − count / 2) × width / count from the centre.
    /// \param seconds the time, which the drift depends on
    QByteArray points(int channel, int count, double seconds);

    /// \return the mean level in dB at \a offset MHz from the centre
    /// \param binMHz width of one point
    double level(int channel, double offset, double binMHz, double seconds) const;

    /// \return the power of the modulated carrier of a channel, in dB
    double carrierPower(int channel) const;
    /// \return the power of the noise in 1 MHz, in dB
    static double noisePerMHz();
    /// \return where the modulated carrier is, in MHz above the middle
    double carrierOffset(int channel, double seconds) const;
    static constexpr double RollOff = 0.35; ///< of the modulated carrier

private:
    struct Channel
    {
        int span = 0;
        bool spanTold = false; // by setSpan()
        int trim = 0;
        double rateMHz = 1.0; // symbol rate
        double shiftMHz = 0.0;
    };

    // The mean powers in a bin.
    struct Powers
    {
        double random; // of noise and modulated carrier
        double line;   // of the unmodulated carriers
    };

    Powers powers(int channel, double offset, double binMHz, double drift) const;
    double randomPower(const Powers& mean);
    double uniform();
    void setFftParameter(int channel, const QString& parameter);

    std::array<Channel, Channels> m_channels;
    std::mt19937 m_random;
    double m_level = 0.0; // of all carriers, in dB
};
