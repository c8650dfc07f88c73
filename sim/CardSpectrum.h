#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <random>

// What a spectral card sees: on each of three channels a noise floor, the modulated carrier of the
// channel's demodulator, as wide as its bit rate makes it, and two unmodulated carriers, all
// drifting slowly. Frequencies are around the intermediate frequency of 70 MHz. Seeded: the same
// seed gives the same spectra.
class CardSpectrum
{
public:
    static constexpr int Channels = 3;

    explicit CardSpectrum(quint32 seed = 1);

    // channel: 0 to 2. span: an index into the span table. Out: false when there is none such.
    bool setSpan(int channel, int span);
    int span(int channel) const { return m_channels.at(static_cast<size_t>(channel)).span; }
    // trim: 0 to 9, in dB; is kept, the levels do not change.
    bool setTrim(int channel, int trim);
    int trim(int channel) const { return m_channels.at(static_cast<size_t>(channel)).trim; }
    // bitsPerSecond: above 0.
    void setBitRate(int channel, double bitsPerSecond);

    // In: the body of a message from the panel. "D2:RATE:5000000" changes the carrier of
    // demodulator 2, "D2:NFFT:11" its span; "D1 D2 D3:" means all three. Three or four spans have
    // the same parameter, and which of them the operator chose is not on the line: a span that has
    // it already stays, otherwise the narrowest is taken.
    void takeCommand(const QString& body);
    // In: the body of a message to the panel. "SP,1,9" gives the span of channel 1 exactly,
    // whatever the panel says about it then.
    void takeUnitMessage(const QString& body);

    // Out: `count` points of the channel's span at a time in seconds, lowest frequency first, a
    // byte each, level in dB = byte × 0.5 − 120.
    QByteArray points(int channel, int count, double seconds);

    // Out: the level in dB at `offset` MHz from the centre, without noise.
    double level(int channel, double offset, double binMHz, double seconds) const;

private:
    struct Channel
    {
        int span = 0;
        int trim = 0;
        double rateMHz = 1.0; // symbol rate
    };

    void setFftParameter(int channel, const QString& parameter);

    std::array<Channel, Channels> m_channels;
    std::mt19937 m_random;
    std::normal_distribution<double> m_noise;
};
