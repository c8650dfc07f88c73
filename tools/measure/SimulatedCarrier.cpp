#include "tools/measure/SimulatedCarrier.h"

#include "wire/SpanTable.h"

#include <cmath>

namespace {

constexpr double Pi = 3.14159265358979323846;
constexpr double OutsidePart = 0.005; // of the power on either side of the occupied band
constexpr int Halvings = 60;

double power(double dB)
{
    return std::pow(10.0, dB / 10.0);
}

// Returns where a rising function of 0 to 1 reaches the value.
template <class Function>
double solve(Function function, double value)
{
    double low = 0.0;
    double high = 1.0;
    for (int i = 0; i < Halvings; ++i) {
        const double middle = (low + high) / 2.0;
        (function(middle) < value ? low : high) = middle;
    }
    return low;
}

} // namespace

SimulatedCarrier::SimulatedCarrier(const Settings& settings)
    : m_settings(settings)
    , m_card(settings.seed)
{
    m_card.setSpan(Channel, settings.span);
    m_card.setSymbolRate(Channel, settings.rate * 1e6);
    m_card.setShift(Channel, settings.offset);
    m_card.setLevel(settings.level);
    m_trace.setAveraging(settings.averages);
    if (settings.averages > 1) {
        m_trace.setAverageKind(settings.kind);
    }
    for (int i = 0; i < settings.averages; ++i) {
        m_trace.add(m_card.points(Channel, CardSpectrum::bins(settings.span), 0.0));
    }
}

MeasuredSpectrum SimulatedCarrier::spectrum() const
{
    return {m_trace.powers(), Centre, spanTable().at(m_settings.span).spanMHz,
        m_trace.independentSpectra()};
}

double SimulatedCarrier::bin() const
{
    return spanTable().at(m_settings.span).spanMHz / CardSpectrum::bins(m_settings.span);
}

double SimulatedCarrier::carrierPower() const
{
    return m_card.carrierPower(Channel);
}

double SimulatedCarrier::channelPower(double centre, double bandwidth) const
{
    constexpr int Steps = 20000;
    const double step = bandwidth / Steps;
    double sum = 0.0;
    for (int i = 0; i < Steps; ++i) {
        const double offset = centre - Centre - bandwidth / 2.0 + (i + 0.5) * step;
        sum += power(m_card.level(Channel, offset, step, 0.0));
    }
    return 10.0 * std::log10(sum);
}

double SimulatedCarrier::noiseLevel() const
{
    return CardSpectrum::noisePerMHz() + 10.0 * std::log10(bin());
}

// The skirt of a raised-cosine spectrum, from its outer end (0) to its inner one (1), is
// (1 − cos(π y)) / 2, and it is as wide as the roll-off. The whole has an area of 1.
double SimulatedCarrier::occupiedBandwidth() const
{
    const auto area = [](double y) {
        return CardSpectrum::RollOff / 2.0 * (y - std::sin(Pi * y) / Pi);
    };
    const double y = solve(area, OutsidePart);
    return m_settings.rate * (1.0 + CardSpectrum::RollOff * (1.0 - 2.0 * y));
}

double SimulatedCarrier::bandwidthBelow(double down) const
{
    const double y =
        solve([](double inside) { return (1.0 - std::cos(Pi * inside)) / 2.0; }, power(-down));
    return m_settings.rate * (1.0 + CardSpectrum::RollOff * (1.0 - 2.0 * y));
}
