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

ChartMarkers ChartMarkers::with(double offset) const
{
    const auto free = std::find(m_offsets.begin(), m_offsets.end(), std::nullopt);
    if (free == m_offsets.end()) {
        return moved(offset);
    }
    ChartMarkers markers = *this;
    markers.m_active = static_cast<int>(free - m_offsets.begin()) + 1;
    markers.place(markers.m_active) = offset;
    return markers;
}

ChartMarkers ChartMarkers::moved(double offset) const
{
    ChartMarkers markers = *this;
    markers.m_active = std::max(1, m_active);
    markers.place(markers.m_active) = offset;
    return markers;
}

ChartMarkers ChartMarkers::activated(int number) const
{
    ChartMarkers markers = *this;
    if (offset(number)) {
        markers.m_active = number;
    }
    return markers;
}

ChartMarkers ChartMarkers::without(int number) const
{
    ChartMarkers markers = *this;
    if (offset(number)) {
        markers.place(number).reset();
        markers.activateNear(m_active);
    }
    return markers;
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

ChartMarkers ChartMarkers::withDelta(bool on) const
{
    const bool onlyFirst = count() == 1 && m_active == 1;
    ChartMarkers markers = on && onlyFirst ? with(*offset()) : *this;
    markers.m_delta = on;
    return markers;
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
