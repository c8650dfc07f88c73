#include "spectrum/ChartKeyActions.h"

#include "spectrum/SpectrumChart.h"

#include <array>
#include <utility>

namespace {

using chartKeys::Key;
using chartMeasurement::Choice;
using Measured = chartMeasurement::Kind;

using Average = SpectrumTrace::Average;

struct Averaging
{
    Key key;
    Average kind;
    int depth;
};

constexpr std::array Averagings{Averaging{Key::Power4, Average::Power, 4},
    Averaging{Key::Power16, Average::Power, 16}, Averaging{Key::Power64, Average::Power, 64},
    Averaging{Key::Log4, Average::Log, 4}, Averaging{Key::Log16, Average::Log, 16},
    Averaging{Key::Log64, Average::Log, 64}};

constexpr std::array Divisions{std::pair{Key::Decibels10, 10}, std::pair{Key::Decibels5, 5},
    std::pair{Key::Decibels2, 2}, std::pair{Key::Decibel1, 1}};

constexpr std::array Measurements{std::pair{Key::ChannelPower, Measured::ChannelPower},
    std::pair{Key::OccupiedBandwidth, Measured::OccupiedBandwidth},
    std::pair{Key::HalfPowerWidth, Measured::HalfPowerWidth},
    std::pair{Key::CarrierToNoise, Measured::CarrierToNoise},
    std::pair{Key::FrequencyError, Measured::FrequencyError},
    std::pair{Key::NoMeasurement, Measured::None}};

void average(SpectrumChart& chart, Average kind, int depth)
{
    chart.setAverageKind(kind);
    if (kind != Average::Off) {
        chart.setAveraging(depth);
    }
}

// Each of these functions returns whether the key was one of its own.

bool changeTrace(Key key, SpectrumChart& chart)
{
    const ChartSettings settings = chart.settings();
    switch (key) {
    case Key::Average:
        average(chart, settings.averageKind == Average::Off ? Average::Power : Average::Off,
            chartKeys::AverageDepth);
        return true;
    case Key::NoAverage:
        chart.setAverageKind(Average::Off);
        return true;
    case Key::MaxHold:
        chart.setMaxHold(!settings.maxHold);
        return true;
    case Key::MinHold:
        chart.setMinHold(!settings.minHold);
        return true;
    case Key::Clear:
        chart.restartAverage();
        return true;
    default:
        break;
    }
    for (const Averaging& averaging : Averagings) {
        if (averaging.key == key) {
            average(chart, averaging.kind, averaging.depth);
            return true;
        }
    }
    return false;
}

bool changeScale(Key key, SpectrumChart& chart)
{
    const ChartScale scale = chart.scale();
    switch (key) {
    case Key::ReferenceUp:
        chart.setScale(scale.reference() + scale.perDivision(), scale.perDivision());
        return true;
    case Key::ReferenceDown:
        chart.setScale(scale.reference() - scale.perDivision(), scale.perDivision());
        return true;
    case Key::AutoScale:
        chart.autoScale();
        return true;
    case Key::FullScale:
        chart.setScale(ChartScale::DefaultReference, ChartScale::DefaultPerDivision);
        return true;
    default:
        break;
    }
    for (const auto& [divisionKey, perDivision] : Divisions) {
        if (divisionKey == key) {
            chart.setScale(scale.reference(), perDivision);
            return true;
        }
    }
    return false;
}

bool changeMarkers(Key key, SpectrumChart& chart)
{
    switch (key) {
    case Key::MarkPeak:
        chart.markerToPeak();
        return true;
    case Key::MarkNextPeak:
        chart.markerToNextPeak();
        return true;
    case Key::MarkLeft:
        chart.stepMarker(-1);
        return true;
    case Key::MarkRight:
        chart.stepMarker(1);
        return true;
    case Key::MarkDelta:
        chart.setMarkerDelta(!chart.markers().delta());
        return true;
    case Key::MarkOff:
        chart.removeMarker();
        return true;
    default:
        return false;
    }
}

void changeMeasurement(Key key, Choice& choice, double nominal)
{
    if (key == Key::Narrower || key == Key::Wider) {
        const double from = choice.bandwidth > 0.0 ? choice.bandwidth : nominal;
        choice.kind = Measured::ChannelPower;
        choice.bandwidth = chartMeasurement::nextBandwidth(from, key == Key::Wider, nominal);
    }
    if (key == Key::ChannelAuto) {
        choice = {Measured::ChannelPower, 0.0};
    }
    for (const auto& [measurementKey, kind] : Measurements) {
        if (measurementKey == key) {
            choice.kind = kind;
        }
    }
}

} // namespace

void chartKeys::carryOut(Key key, SpectrumChart& chart, Choice& measurement, double nominal)
{
    if (!changeTrace(key, chart) && !changeScale(key, chart) && !changeMarkers(key, chart)) {
        changeMeasurement(key, measurement, nominal);
    }
}

QVector<chartKeys::Key> chartKeys::inEffect(
    const ChartSettings& settings, const Choice& measurement)
{
    QVector<Key> keys;
    const auto add = [&keys](Key key, bool on) {
        if (on) {
            keys += key;
        }
    };
    const bool averages = settings.averageKind != Average::Off;
    add(Key::Average, averages);
    add(Key::NoAverage, !averages);
    add(Key::MaxHold, settings.maxHold);
    add(Key::MinHold, settings.minHold);
    add(Key::MarkDelta, settings.markers.delta());
    for (const Averaging& averaging : Averagings) {
        add(averaging.key,
            averaging.kind == settings.averageKind && averaging.depth == settings.depth);
    }
    for (const auto& [key, perDivision] : Divisions) {
        add(key, perDivision == settings.scale.perDivision());
    }
    for (const auto& [key, kind] : Measurements) {
        add(key, kind == measurement.kind);
    }
    add(Key::ChannelAuto,
        measurement.kind == Measured::ChannelPower && measurement.bandwidth == 0.0);
    return keys;
}
