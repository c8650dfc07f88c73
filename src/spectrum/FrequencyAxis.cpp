#include "spectrum/FrequencyAxis.h"

#include <cmath>

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

qsizetype FrequencyAxis::indexAt(double frequency, qsizetype size) const
{
    const auto bins = static_cast<double>(size);
    const qsizetype nearest = qRound64((frequency - m_centre) * bins / width() + bins / 2.0);
    return qBound(qsizetype{0}, nearest, qMax(size - 1, qsizetype{0}));
}
