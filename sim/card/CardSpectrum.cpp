#include "sim/card/CardSpectrum.h"

#include "wire/SpanTable.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double NoisePerMHz = -86.5; // dB: -100 in a bin of 45 kHz
constexpr double Pi = 3.14159265358979323846;
constexpr double DriftSeconds = 20.0;
constexpr double DriftMHz = 0.1; // to either side
constexpr int HighestTrim = 9;

struct Carrier
{
    double offset; // MHz from the middle
    double level;  // dB
};
// beside the modulated carrier in the centre
constexpr std::array<Carrier, 2> Unmodulated{{{-6.2, -62.0}, {4.6, -75.0}}};
constexpr std::array<double, CardSpectrum::Channels> Modulated{-7.5, -20.5, -1.5}; // dB in all
constexpr double LineCurve = 3.0; // dB that the line of an unmodulated carrier falls in one bin
constexpr double LineReach = 8.0; // bins

double decibels(double power)
{
    return 10.0 * std::log10(std::max(power, 1e-30));
}

double power(double dB)
{
    return std::pow(10.0, dB / 10.0);
}

// The power spectrum of random symbols after a root-raised-cosine filter. turns: distance from the
// carrier in symbol rates.
double haystack(double turns)
{
    const double distance = std::abs(turns);
    const double flat = (1.0 - CardSpectrum::RollOff) / 2.0;
    const double end = (1.0 + CardSpectrum::RollOff) / 2.0;
    if (distance <= flat) {
        return 1.0;
    }
    return distance >= end ? 0.0
                           : 0.5 * (1.0 + std::cos(Pi * (distance - flat) / CardSpectrum::RollOff));
}

} // namespace

CardSpectrum::CardSpectrum(quint32 seed)
    : m_random(seed)
{
    setSymbolRate(0, 2.5e6);
    setSymbolRate(1, 0.625e6);
    setSymbolRate(2, 5e6);
}

bool CardSpectrum::setSpan(int channel, int span)
{
    if (channel < 0 || channel >= Channels || span < 0 || span >= spanTable().size()) {
        return false;
    }
    Channel& one = m_channels.at(static_cast<size_t>(channel));
    one.span = span;
    one.spanTold = true;
    return true;
}

bool CardSpectrum::setTrim(int channel, int trim)
{
    if (channel < 0 || channel >= Channels || trim < 0 || trim > HighestTrim) {
        return false;
    }
    m_channels.at(static_cast<size_t>(channel)).trim = trim;
    return true;
}

void CardSpectrum::setSymbolRate(int channel, double symbolsPerSecond)
{
    if (channel >= 0 && channel < Channels && symbolsPerSecond > 0.0 &&
        std::isfinite(symbolsPerSecond)) {
        m_channels.at(static_cast<size_t>(channel)).rateMHz = symbolsPerSecond / 1e6;
    }
}

void CardSpectrum::setShift(int channel, double shift)
{
    if (channel >= 0 && channel < Channels && std::isfinite(shift)) {
        m_channels.at(static_cast<size_t>(channel)).shiftMHz = shift;
    }
}

void CardSpectrum::setLevel(double level)
{
    if (std::abs(level) <= MaxLevel) {
        m_level = level;
    }
}

void CardSpectrum::setFftParameter(int channel, const QString& parameter)
{
    const auto& table = spanTable();
    Channel& one = m_channels.at(static_cast<size_t>(channel));
    if (one.spanTold || parameter == QLatin1String(table.at(one.span).fftParam)) {
        return;
    }
    for (int span = 0; span < table.size(); ++span) {
        if (parameter == QLatin1String(table.at(span).fftParam)) {
            one.span = span;
            return;
        }
    }
}

void CardSpectrum::takeCommand(const QString& body)
{
    const QString who = body.section(QLatin1Char(':'), 0, 0);
    const QString word = body.section(QLatin1Char(':'), 1, 1);
    const QString value = body.section(QLatin1Char(':'), 2);
    for (int channel = 0; channel < Channels; ++channel) {
        const QString demodulator = QStringLiteral("D%1").arg(channel + 1);
        if (!who.split(QLatin1Char(' ')).contains(demodulator)) {
            continue;
        }
        if (word == QLatin1String("NFFT")) {
            setFftParameter(channel, value);
        }
    }
}

int CardSpectrum::bins(int span)
{
    if (span < 0 || span >= spanTable().size()) {
        return 0;
    }
    const SpanInfo& info = spanTable().at(span);
    return (1 << QByteArray(info.fftParam).toInt()) - QByteArray(info.code).toInt();
}

double CardSpectrum::carrierPower(int channel) const
{
    return Modulated.at(static_cast<size_t>(channel)) + m_level;
}

double CardSpectrum::noisePerMHz()
{
    return NoisePerMHz;
}

double CardSpectrum::carrierOffset(int channel, double seconds) const
{
    return m_channels.at(static_cast<size_t>(channel)).shiftMHz +
        DriftMHz * std::sin(2.0 * Pi * (seconds / DriftSeconds + channel / 3.0));
}

CardSpectrum::Powers CardSpectrum::powers(
    int channel, double offset, double binMHz, double drift) const
{
    const Channel& one = m_channels.at(static_cast<size_t>(channel));
    const double rate = std::max(one.rateMHz, binMHz);
    Powers mean{power(NoisePerMHz) * binMHz, 0.0};
    mean.random += power(carrierPower(channel)) * binMHz / rate * haystack((offset - drift) / rate);
    for (const Carrier& carrier : Unmodulated) {
        const double bins = (offset - one.shiftMHz - carrier.offset) / binMHz;
        if (std::abs(bins) < LineReach) {
            mean.line += power(carrier.level + m_level - LineCurve * bins * bins);
        }
    }
    return mean;
}

double CardSpectrum::level(int channel, double offset, double binMHz, double seconds) const
{
    const Powers mean = powers(channel, offset, binMHz, carrierOffset(channel, seconds));
    return decibels(mean.random + mean.line);
}

// Above 0, up to 1. No standard distribution: their results differ between libraries.
double CardSpectrum::uniform()
{
    return (static_cast<double>(m_random()) + 1.0) / 4294967296.0;
}

// The power of a line and a random amplitude, both parts of which are normally distributed (the
// polar form of the method of Box and Muller).
double CardSpectrum::randomPower(const Powers& mean)
{
    const double random = -std::log(uniform()) * mean.random;
    if (mean.line <= 0.0) {
        return random;
    }
    return mean.line + random +
        2.0 * std::sqrt(mean.line * random) * std::cos(2.0 * Pi * uniform());
}

QByteArray CardSpectrum::points(int channel, int count, double seconds)
{
    const double width = spanTable().at(m_channels.at(static_cast<size_t>(channel)).span).spanMHz;
    const double bin = width / std::max(1, count);
    const double drift = carrierOffset(channel, seconds);
    QByteArray bytes(count, '\0');
    for (int i = 0; i < count; ++i) {
        const double offset = (i - count / 2.0) * bin;
        const double dB = decibels(randomPower(powers(channel, offset, bin, drift)));
        bytes[i] = static_cast<char>(std::lround(std::clamp((dB + 120.0) * 2.0, 0.0, 255.0)));
    }
    return bytes;
}
