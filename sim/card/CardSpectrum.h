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

    // What the card is told over its bus. channel: 0 to 2. span: an index into the span table. Out:
    // false when there is none such.
    bool setSpan(int channel, int span);
    int span(int channel) const { return m_channels.at(static_cast<size_t>(channel)).span; }
    // trim: 0 to 9, in dB; is kept, the levels do not change.
    bool setTrim(int channel, int trim);
    int trim(int channel) const { return m_channels.at(static_cast<size_t>(channel)).trim; }
    // symbolsPerSecond: above 0; the modulated carrier is a bit wider than that.
    void setSymbolRate(int channel, double symbolsPerSecond);
    // shift: in MHz, by how much all carriers stand above the middle.
    void setShift(int channel, double shift);

    // In: the body of a message from the panel. "D2:NFFT:11" changes the span of demodulator 2; "D1
    // D2 D3:" means all three. Three or four spans have the same parameter: this is for a panel
    // that tells the card nothing. A span that has the parameter already stays, otherwise the
    // narrowest is taken. Of a channel whose span the card was told, nothing changes.
    void takeCommand(const QString& body);

    // Out: `count` points of the channel's span at a time in seconds, lowest frequency first, a
    // byte each, level in dB = byte × 0.5 − 120.
    QByteArray points(int channel, int count, double seconds);

    // Out: the level in dB at `offset` MHz from the centre, without noise.
    double level(int channel, double offset, double binMHz, double seconds) const;

private:
    struct Channel
    {
        int span = 0;
        bool spanTold = false; // by setSpan()
        int trim = 0;
        double rateMHz = 1.0; // symbol rate
        double shiftMHz = 0.0;
    };

    void setFftParameter(int channel, const QString& parameter);

    std::array<Channel, Channels> m_channels;
    std::mt19937 m_random;
    std::normal_distribution<double> m_noise;
};
