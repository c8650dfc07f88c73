#include "sim/card/CardSpectrum.h"

#include "wire/SpanTable.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double Floor = -100.0; // dB
constexpr double NoiseDB = 2.0;
constexpr double Pi = 3.14159265358979323846;
constexpr double RollOff = 0.35;
constexpr double DriftSeconds = 20.0;
constexpr int HighestTrim = 9;

struct Carrier
{
    double part;  // its place, as a fraction of the span from the centre
    double level; // dB
};
// beside the modulated carrier in the centre
constexpr std::array<Carrier, 2> Unmodulated{{{-0.31, -62.0}, {0.23, -75.0}}};
constexpr std::array<double, CardSpectrum::Channels> Modulated{-25.0, -32.0, -22.0};

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
    const double flat = (1.0 - RollOff) / 2.0;
    const double end = (1.0 + RollOff) / 2.0;
    if (distance <= flat) {
        return 1.0;
    }
    return distance >= end ? 0.0 : 0.5 * (1.0 + std::cos(Pi * (distance - flat) / RollOff));
}

} // namespace

CardSpectrum::CardSpectrum(quint32 seed)
    : m_random(seed)
    , m_noise(0.0, NoiseDB)
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

double CardSpectrum::level(int channel, double offset, double binMHz, double seconds) const
{
    const Channel& one = m_channels.at(static_cast<size_t>(channel));
    const double width = spanTable().at(one.span).spanMHz;
    const double drift =
        one.shiftMHz + 0.01 * width * std::sin(2.0 * Pi * (seconds / DriftSeconds + channel / 3.0));
    const double rate = std::max(one.rateMHz, binMHz);
    double sum = power(Floor);
    sum += power(Modulated.at(static_cast<size_t>(channel))) * haystack((offset - drift) / rate);
    for (const Carrier& carrier : Unmodulated) {
        const double bins = (offset - drift - carrier.part * width) / binMHz;
        sum += power(carrier.level - 3.0 * bins * bins);
    }
    return decibels(sum);
}

QByteArray CardSpectrum::points(int channel, int count, double seconds)
{
    const double width = spanTable().at(m_channels.at(static_cast<size_t>(channel)).span).spanMHz;
    const double bin = width / std::max(1, count);
    QByteArray bytes(count, '\0');
    for (int i = 0; i < count; ++i) {
        const double offset = (i - count / 2.0) * bin;
        const double dB = level(channel, offset, bin, seconds) + m_noise(m_random);
        bytes[i] = static_cast<char>(std::lround(std::clamp((dB + 120.0) * 2.0, 0.0, 255.0)));
    }
    return bytes;
}
