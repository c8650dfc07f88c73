#include "tools/measure/SpectrumTables.h"

#include "spectrum/ChannelMeasurements.h"
#include "spectrum/PeakSearch.h"
#include "tools/measure/SimulatedCarrier.h"
#include "wire/SpanTable.h"

#include <algorithm>
#include <cmath>
#include <limits>

using channelMeasurements::State;

namespace {

constexpr double Pi = 3.14159265358979323846;
constexpr double KHzPerMHz = 1000.0;
constexpr double InvalidValue = std::numeric_limits<double>::quiet_NaN();

using Settings = SimulatedCarrier::Settings;

// The line of an unmodulated carrier in dB, by the window of the FFT; bins from its middle.
double gaussianLine(double bins)
{
    return -3.0 * bins * bins;
}

double hannLine(double bins)
{
    const double distance = std::abs(bins);
    if (distance < 1e-9) {
        return 0.0;
    }
    if (std::abs(distance - 1.0) < 1e-9) {
        return 20.0 * std::log10(0.5);
    }
    const double amplitude = std::sin(Pi * bins) / (Pi * bins) / (1.0 - bins * bins);
    return 20.0 * std::log10(std::max(1e-9, std::abs(amplitude)));
}

// The levels of a line as they come from the card, in steps of half a decibel.
QVector<float> levelsOf(double (*line)(double), double index, double level)
{
    constexpr int Points = 64;
    constexpr double Floor = -110.0;
    QByteArray bytes;
    for (int i = 0; i < Points; ++i) {
        const double dB = std::max(Floor, level + line(i - index));
        bytes += static_cast<char>(std::lround(std::clamp((dB + 120.0) * 2.0, 0.0, 255.0)));
    }
    SpectrumTrace trace;
    trace.add(bytes);
    return trace.levels();
}

QString spanName(int span)
{
    const QVector<double>& ticks = spanTable().at(span).ticks;
    return QStringLiteral("%1 MHz span").arg(ticks.last() - ticks.first());
}

QString carrierName(const Settings& settings)
{
    return QStringLiteral("%1, carrier of %2 MHz, %3")
        .arg(spanName(settings.span))
        .arg(settings.rate)
        .arg(settings.averages == 1 ? QStringLiteral("1 spectrum")
                                    : QStringLiteral("%1 averages").arg(settings.averages));
}

template <class Result>
double valueOf(const Result& result, double value)
{
    return result.state == State::Valid ? value : InvalidValue;
}

void addLines(MeasurementRows& rows, const QString& table)
{
    constexpr double Point = 30.0;
    constexpr double Level = -60.2; // Not a multiple of half a decibel.
    for (const auto& [window, line] : {std::pair(QStringLiteral("Gaussian window"), &gaussianLine),
             std::pair(QStringLiteral("Hann window"), &hannLine)}) {
        for (const double offset : {0.0, 0.1, 0.2, 0.3, 0.4, 0.5}) {
            const peakSearch::Peak peak =
                peakSearch::highest(levelsOf(line, Point + offset, Level));
            rows += {table, QStringLiteral("%1, %2 bins above a point").arg(window).arg(offset),
                offset, peak.index - Point, 0.1, QStringLiteral("bins")};
        }
    }
}

// The two unmodulated carriers of the simulated card, in its noise.
void addUnmodulated(MeasurementRows& rows, const QString& table)
{
    for (const int span : {6, 7, 8, 9}) {
        const SimulatedCarrier carrier({span, 2.5, 0.0, 0.0, 16, 1});
        for (const auto& [offset, level] : {std::pair(-6.2, -62), std::pair(4.6, -75)}) {
            const double index = offset / carrier.bin() + CardSpectrum::bins(span) / 2.0;
            constexpr int Around = 10;
            const auto first = std::lround(index) - Around;
            const peakSearch::Peak peak =
                peakSearch::highest(carrier.trace().levels().mid(first, 2 * Around + 1));
            rows += {table, QStringLiteral("%1, %2 dB, 16 averages").arg(spanName(span)).arg(level),
                index, peak.index + static_cast<double>(first), 0.1, QStringLiteral("bins")};
        }
    }
}

MeasurementRows peakRows()
{
    MeasurementRows rows;
    addLines(rows, QStringLiteral("Peak frequency"));
    addUnmodulated(rows, QStringLiteral("Peak frequency"));
    return rows;
}

// What the chart shows of noise when decibels are averaged: less than its power.
MeasurementRow logRow()
{
    constexpr double BelowPower = 2.507; // 10 γ / ln 10 dB, with Euler's constant γ
    const SimulatedCarrier carrier(
        {9, 2.5, 0.0, -CardSpectrum::MaxLevel, 64, 1, SpectrumTrace::Average::Log});
    double sum = 0.0;
    for (const float level : carrier.trace().levels()) {
        sum += static_cast<double>(level);
    }
    return {QStringLiteral("Noise level"),
        QStringLiteral("40 MHz span, no carrier, log mean of 64 as the chart shows it"),
        carrier.noiseLevel() - BelowPower, sum / static_cast<double>(carrier.trace().size()), 0.2,
        QStringLiteral("dB")};
}

MeasurementRow noiseRow(const Settings& settings, const QString& condition, double tolerance)
{
    const SimulatedCarrier carrier(settings);
    const auto noise = channelMeasurements::noiseFloor(carrier.spectrum());
    return {QStringLiteral("Noise level"), condition, carrier.noiseLevel(),
        valueOf(noise, noise.level), tolerance, QStringLiteral("dB")};
}

MeasurementRows noiseRows()
{
    constexpr double Tolerance = 0.2;
    constexpr double NoCarrier = -CardSpectrum::MaxLevel;
    MeasurementRows rows;
    for (int span = 0; span < spanTable().size(); ++span) {
        const Settings settings{span, span < 2 ? 0.5 : 2.5};
        rows += noiseRow(settings, carrierName(settings), Tolerance);
    }
    rows += noiseRow({9, 2.5, 0.0, NoCarrier},
        QStringLiteral("40 MHz span, no carrier, 64 averages"), Tolerance);
    for (const int averages : {16, 4, 1}) {
        const Settings settings{9, 2.5, 0.0, 0.0, averages};
        rows += noiseRow(settings, carrierName(settings), averages > 4 ? Tolerance : 0.5);
    }
    rows += logRow();
    return rows;
}

// In the band at -26 dB, which hardly leaves anything of the carrier outside.
MeasurementRow autoPowerRow(const Settings& settings)
{
    const SimulatedCarrier carrier(settings);
    const auto band = channelMeasurements::bandwidthBelow(carrier.spectrum(), 26.0);
    const auto power =
        channelMeasurements::channelPower(carrier.spectrum(), band.middle(), band.width());
    return {QStringLiteral("Channel power"),
        QStringLiteral("%1: in the band at −26 dB").arg(carrierName(settings)),
        carrier.carrierPower(), valueOf(power, power.level), 0.3, QStringLiteral("dB")};
}

MeasurementRows channelPowerRows()
{
    MeasurementRows rows;
    for (const Settings& settings :
        {Settings{2, 0.625}, Settings{4, 2.5}, Settings{6, 5.0}, Settings{9, 10.0, -3.3}}) {
        const SimulatedCarrier carrier(settings);
        const QVector<double>& ticks = spanTable().at(settings.span).ticks;
        const double centre = SimulatedCarrier::Centre;
        for (const auto& [middle, width] : {std::pair(centre, ticks.last() - ticks.first()),
                 std::pair(centre + settings.offset, 1.4 * settings.rate),
                 std::pair(centre + settings.offset, 0.37 * settings.rate),
                 std::pair(centre + settings.offset + settings.rate, 0.5 * settings.rate)}) {
            const auto power = channelMeasurements::channelPower(carrier.spectrum(), middle, width);
            rows += {QStringLiteral("Channel power"),
                QStringLiteral("%1: %2 MHz around %3 MHz")
                    .arg(carrierName(settings))
                    .arg(width)
                    .arg(middle),
                carrier.channelPower(middle, width), valueOf(power, power.level), 0.3,
                QStringLiteral("dB")};
        }
        rows += autoPowerRow(settings);
    }
    return rows;
}

// The level that gives the carrier this ratio to the noise in its occupied bandwidth.
double levelFor(double ratio, const Settings& settings)
{
    const SimulatedCarrier carrier({settings.span, settings.rate, 0.0, 0.0, 0});
    return ratio + CardSpectrum::noisePerMHz() + 10.0 * std::log10(carrier.occupiedBandwidth()) -
        carrier.carrierPower();
}

const QVector<Settings>& bandwidthSettings()
{
    static const QVector<Settings> settings{
        {1, 0.625}, {2, 2.5}, {4, 2.5}, {6, 5.0}, {9, 10.0}, {9, 20.0}, {6, 2.5, 3.21}};
    return settings;
}

double bandwidthTolerance(const SimulatedCarrier& carrier, double bandwidth, double size)
{
    return KHzPerMHz * size * std::max(carrier.bin(), bandwidth / 100.0);
}

MeasurementRows occupiedRows()
{
    MeasurementRows rows;
    for (Settings settings : bandwidthSettings()) {
        for (const double ratio : {20.0, 30.0, 40.0}) {
            settings.level = levelFor(ratio, settings);
            ++settings.seed;
            const SimulatedCarrier carrier(settings);
            const auto band = channelMeasurements::occupiedBandwidth(carrier.spectrum());
            const double width = carrier.occupiedBandwidth();
            rows += {QStringLiteral("Occupied bandwidth"),
                QStringLiteral("%1, C/N %2 dB").arg(carrierName(settings)).arg(ratio),
                KHzPerMHz * width, valueOf(band, KHzPerMHz * band.width()),
                bandwidthTolerance(carrier, width, 1.0), QStringLiteral("kHz"), 1};
        }
    }
    return rows;
}

MeasurementRows belowRows()
{
    MeasurementRows rows;
    for (const double down : {3.0, 26.0}) {
        for (Settings settings : bandwidthSettings()) {
            settings.level = levelFor(40.0, settings);
            const SimulatedCarrier carrier(settings);
            const auto band = channelMeasurements::bandwidthBelow(carrier.spectrum(), down);
            const double width = carrier.bandwidthBelow(down);
            rows += {QStringLiteral("Bandwidth below the peak"),
                QStringLiteral("−%1 dB, %2, C/N 40 dB").arg(down).arg(carrierName(settings)),
                KHzPerMHz * width, valueOf(band, KHzPerMHz * band.width()),
                bandwidthTolerance(carrier, width, 2.0), QStringLiteral("kHz"), 1};
        }
    }
    return rows;
}

MeasurementRows ratioRows()
{
    MeasurementRows ratios;
    MeasurementRows densities;
    for (Settings settings :
        {Settings{2, 0.625}, Settings{4, 2.5}, Settings{6, 5.0}, Settings{9, 10.0, 4.0}}) {
        for (const double ratio : {5.0, 10.0, 15.0, 20.0, 25.0, 30.0, 35.0, 40.0}) {
            settings.level = levelFor(ratio, settings);
            ++settings.seed;
            const SimulatedCarrier carrier(settings);
            const auto measured = channelMeasurements::carrierToNoise(carrier.spectrum());
            const QString name = carrierName(settings);
            ratios += {QStringLiteral("C/N"), QStringLiteral("%1, C/N %2 dB").arg(name).arg(ratio),
                ratio, valueOf(measured, measured.ratio), 0.5, QStringLiteral("dB")};
            densities +=
                {QStringLiteral("C/N0"), QStringLiteral("%1, C/N %2 dB").arg(name).arg(ratio),
                    carrier.carrierPower() - CardSpectrum::noisePerMHz() + 60.0,
                    valueOf(measured, measured.density), 0.5, QStringLiteral("dBHz")};
        }
    }
    return ratios + densities;
}

MeasurementRows frequencyRows()
{
    MeasurementRows rows;
    for (Settings settings : bandwidthSettings()) {
        for (const double part : {0.0, 0.0123, -0.1}) {
            settings.offset = part * settings.rate;
            settings.level = levelFor(20.0, settings);
            ++settings.seed;
            const SimulatedCarrier carrier(settings);
            const auto error = channelMeasurements::frequencyError(carrier.spectrum());
            rows += {QStringLiteral("Frequency error"),
                QStringLiteral("%1, C/N 20 dB").arg(carrierName(settings)),
                KHzPerMHz * settings.offset, valueOf(error, KHzPerMHz * error.error),
                KHzPerMHz * carrier.bin(), QStringLiteral("kHz"), 1};
        }
    }
    return rows;
}

} // namespace

MeasurementRows spectrumTables::rows()
{
    MeasurementRows rows;
    for (const auto table : {peakRows, noiseRows, channelPowerRows, occupiedRows, belowRows,
             ratioRows, frequencyRows}) {
        rows += table();
    }
    return rows;
}
