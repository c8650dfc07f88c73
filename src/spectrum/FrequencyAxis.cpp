#include "spectrum/FrequencyAxis.h"

#include <cmath>

namespace {
constexpr int DefaultDecimals = 3;
} // namespace

FrequencyAxis::FrequencyAxis()
    : m_span(spanTable().first())
{
}

bool FrequencyAxis::canBeCentre(double frequency)
{
    return std::isfinite(frequency) && frequency > 0.0 && frequency <= MaxMHz;
}

bool FrequencyAxis::setCentre(double centre)
{
    if (!canBeCentre(centre) || centre == m_centre) {
        return false;
    }
    m_centre = centre;
    return true;
}

QVector<double> FrequencyAxis::ticks() const
{
    QVector<double> positions = m_span.ticks;
    for (double& position : positions) {
        position += m_centre - SpanCentreMHz;
    }
    return positions;
}

bool FrequencyAxis::covers(double offset) const
{
    return std::abs(offset) <= width() / 2;
}

double FrequencyAxis::frequencyAt(qsizetype index, qsizetype size) const
{
    const auto bins = static_cast<double>(size);
    return m_centre + (static_cast<double>(index) - bins / 2.0) * width() / bins;
}

double FrequencyAxis::frequencyBetween(double index, qsizetype size) const
{
    return m_centre + (index - static_cast<double>(size) / 2.0) * binWidth(size);
}

double FrequencyAxis::binWidth(qsizetype size) const
{
    return size > 0 ? width() / static_cast<double>(size) : 0.0;
}

int FrequencyAxis::decimals(qsizetype size) const
{
    const double bin = binWidth(size);
    if (bin <= 0.0) {
        return DefaultDecimals;
    }
    return qBound(0, static_cast<int>(std::ceil(1.0 - std::log10(bin))), MaxDecimals);
}

double FrequencyAxis::nominalWidth() const
{
    return m_span.ticks.isEmpty() ? 0.0 : m_span.ticks.last() - m_span.ticks.first();
}

qsizetype FrequencyAxis::indexAt(double frequency, qsizetype size) const
{
    const auto bins = static_cast<double>(size);
    const double place = (frequency - m_centre) * bins / width() + bins / 2.0;
    if (std::isnan(place)) {
        return size / 2; // On an axis without width, every point is at the centre.
    }
    return static_cast<qsizetype>(qRound64(qBound(0.0, place, qMax(bins - 1.0, 0.0))));
}
