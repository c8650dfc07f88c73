#include "spectrum/ChartMeasurement.h"

#include "spectrum/ChannelMeasurements.h"

#include <QVector>

#include <cmath>

namespace {

using channelMeasurements::State;
using chartMeasurement::Choice;
using chartMeasurement::Kind;
using chartMeasurement::Reading;

constexpr double Below = 26.0;         // dB below the highest level, of an automatic channel
constexpr double HalfPower = 3.0;      // dB
constexpr int Decades = 6;             // of the widths of a channel
constexpr double KilohertzLimit = 1.0; // MHz; a smaller frequency error is written in kHz

// A spectrum and how its frequencies are written.
struct Source
{
    const MeasuredSpectrum& spectrum;
    double nominal;
    int decimals;

    QString megahertz(double frequency) const { return QString::number(frequency, 'f', decimals); }
};

QString decibels(double level)
{
    return QString::number(level, 'f', 1);
}

Reading invalid(const QString& name, State state)
{
    return {name, QStringLiteral("---"), channelMeasurements::stateText(state), false, 0.0, 0.0};
}

Reading channelPower(const Source& source, double chosen)
{
    const QString name = QStringLiteral("Channel power");
    double centre = source.spectrum.centre;
    double width = chosen;
    if (chosen <= 0.0) {
        const auto band = channelMeasurements::bandwidthBelow(source.spectrum, Below);
        centre = band.state == State::Valid ? band.middle() : centre;
        width = band.state == State::Valid ? band.width() : source.nominal;
    }
    const auto power = channelMeasurements::channelPower(source.spectrum, centre, width);
    if (power.state != State::Valid) {
        return invalid(name, power.state);
    }
    const QString details = QStringLiteral("in %1 MHz%2 at %3 MHz")
                                .arg(source.megahertz(power.bandwidth),
                                    chosen <= 0.0 ? QStringLiteral(" (auto)") : QString(),
                                    source.megahertz(power.centre));
    return {name, decibels(power.level) + QStringLiteral(" dB"), details, true,
        power.centre - power.bandwidth / 2, power.centre + power.bandwidth / 2};
}

Reading bandwidth(
    const QString& name, const channelMeasurements::Bandwidth& band, const Source& source)
{
    if (band.state != State::Valid) {
        return invalid(name, band.state);
    }
    return {name, source.megahertz(band.width()) + QStringLiteral(" MHz"),
        QStringLiteral("%1 to %2 MHz").arg(source.megahertz(band.low), source.megahertz(band.high)),
        true, band.low, band.high};
}

Reading carrierToNoise(const Source& source)
{
    const QString name = QStringLiteral("C/N");
    const auto ratio = channelMeasurements::carrierToNoise(source.spectrum);
    if (ratio.state != State::Valid) {
        return invalid(name, ratio.state);
    }
    return {name, decibels(ratio.ratio) + QStringLiteral(" dB"),
        QStringLiteral("C/N0 %1 dBHz, in %2 MHz")
            .arg(decibels(ratio.density), source.megahertz(ratio.bandwidth)),
        false, 0.0, 0.0};
}

Reading frequencyError(const Source& source)
{
    const QString name = QStringLiteral("Frequency error");
    const auto error = channelMeasurements::frequencyError(source.spectrum);
    if (error.state != State::Valid) {
        return invalid(name, error.state);
    }
    const bool small = std::abs(error.error) < KilohertzLimit;
    const QString sign = error.error > 0.0 ? QStringLiteral("+") : QString();
    const QString value = small
        ? QString::number(error.error * 1000.0, 'f', qMax(0, source.decimals - 3)) +
            QStringLiteral(" kHz")
        : source.megahertz(error.error) + QStringLiteral(" MHz");
    return {name, sign + value,
        QStringLiteral("carrier at %1 MHz").arg(source.megahertz(error.frequency)), true,
        error.frequency, error.frequency};
}

// 1, 1.5, 2, 3, 5, 7.5 and their tenfold and so on, below the widest.
QVector<double> bandwidths(double widest)
{
    QVector<double> list;
    for (int exponent = 0; exponent < Decades; ++exponent) {
        const double decade = chartMeasurement::MinBandwidth * std::pow(10.0, exponent);
        for (const double step : {1.0, 1.5, 2.0, 3.0, 5.0, 7.5}) {
            if (step * decade < widest) {
                list += step * decade;
            }
        }
    }
    return list + QVector<double>{widest};
}

} // namespace

Reading chartMeasurement::measure(
    const Choice& choice, const MeasuredSpectrum& spectrum, double nominal, int decimals)
{
    const Source source{spectrum, nominal, decimals};
    switch (choice.kind) {
    case Kind::None:
        return {};
    case Kind::ChannelPower:
        return channelPower(source, choice.bandwidth);
    case Kind::OccupiedBandwidth:
        return bandwidth(QStringLiteral("Occupied BW (99 %)"),
            channelMeasurements::occupiedBandwidth(spectrum), source);
    case Kind::HalfPowerWidth:
        return bandwidth(QStringLiteral("-3 dB BW"),
            channelMeasurements::bandwidthBelow(spectrum, HalfPower), source);
    case Kind::CarrierToNoise:
        return carrierToNoise(source);
    case Kind::FrequencyError:
        return frequencyError(source);
    }
    return {};
}

double chartMeasurement::nextBandwidth(double bandwidth, bool wider, double widest)
{
    constexpr double Near = 1e-6; // of a width that is the same but for rounding
    const QVector<double> list = bandwidths(widest);
    double next = wider ? list.last() : list.first();
    for (const double step : list) {
        if (wider && step > bandwidth * (1 + Near)) {
            return step;
        }
        if (!wider && step < bandwidth * (1 - Near)) {
            next = step;
        }
    }
    return next;
}
