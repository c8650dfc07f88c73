#include "spectrum/ChartMarkers.h"

#include <algorithm>

QVector<ChartMarkers::Marker> ChartMarkers::all() const
{
    QVector<Marker> markers;
    for (int number = 1; number <= MaxCount; ++number) {
        if (const auto at = offset(number)) {
            markers += {number, *at};
        }
    }
    return markers;
}

int ChartMarkers::count() const
{
    return static_cast<int>(std::count_if(m_offsets.begin(), m_offsets.end(),
        [](const std::optional<double>& offset) { return offset.has_value(); }));
}

std::optional<double> ChartMarkers::offset(int number) const
{
    return number < 1 || number > MaxCount ? std::nullopt
                                           : m_offsets[static_cast<size_t>(number) - 1];
}

void ChartMarkers::add(double offset)
{
    const auto free = std::find(m_offsets.begin(), m_offsets.end(), std::nullopt);
    if (free == m_offsets.end()) {
        move(offset);
        return;
    }
    *free = offset;
    m_active = static_cast<int>(free - m_offsets.begin()) + 1;
}

void ChartMarkers::move(double offset)
{
    m_active = std::max(1, m_active);
    m_offsets[static_cast<size_t>(m_active) - 1] = offset;
}

void ChartMarkers::activate(int number)
{
    if (offset(number)) {
        m_active = number;
    }
}

void ChartMarkers::remove()
{
    if (m_active > 0) {
        m_offsets[static_cast<size_t>(m_active) - 1].reset();
        activateNear(m_active);
    }
}

void ChartMarkers::clear()
{
    m_offsets.fill(std::nullopt);
    m_active = 0;
}

void ChartMarkers::keepInside(const FrequencyAxis& axis)
{
    for (auto& offset : m_offsets) {
        if (offset && !axis.covers(*offset)) {
            offset.reset();
        }
    }
    activateNear(m_active);
}

bool ChartMarkers::isRelative(int number) const
{
    return m_delta && number > 1 && offset(1) && offset(number);
}

// Activates the marker with this number or the next lower one that is set, else the lowest.
void ChartMarkers::activateNear(int number)
{
    m_active = 0;
    for (const Marker& marker : all()) {
        if (m_active == 0 || marker.number <= number) {
            m_active = marker.number;
        }
    }
}
