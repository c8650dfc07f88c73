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
    const double part =
        size <= 1 ? 0.5 : static_cast<double>(index) / static_cast<double>(size - 1);
    return m_centre + (part - 0.5) * width();
}

qsizetype FrequencyAxis::indexAt(double frequency, qsizetype size) const
{
    const double part = (frequency - m_centre) / width() + 0.5;
    const qsizetype last = size - 1;
    return qBound(
        qsizetype{0}, qRound64(part * static_cast<double>(last)), qMax(last, qsizetype{0}));
}
