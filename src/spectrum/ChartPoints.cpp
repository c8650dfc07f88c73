#include "spectrum/ChartPoints.h"

#include "spectrum/PeakSearch.h"

#include <algorithm>

qsizetype ChartPoints::indexOf(double offset) const
{
    return m_axis.indexAt(m_axis.centre() + offset, m_trace.size());
}

SpectrumReading ChartPoints::peak() const
{
    const auto peak = peakSearch::at(m_trace.levels(), m_trace.peak());
    if (!peak.valid) {
        return {};
    }
    return {true, m_axis.frequencyBetween(peak.index, m_trace.size()), peak.level};
}

SpectrumReading ChartPoints::at(double offset) const
{
    if (m_trace.size() == 0) {
        return {};
    }
    const qsizetype index = indexOf(offset);
    return {true, m_axis.frequencyAt(index, m_trace.size()),
        static_cast<double>(m_trace.levelAt(index))};
}

QVector<ChartReadout::Marker> ChartPoints::at(const ChartMarkers& markers) const
{
    QVector<ChartReadout::Marker> readings;
    for (const ChartMarkers::Marker& marker : markers.all()) {
        SpectrumReading reading = at(marker.offset);
        const bool relative = markers.isRelative(marker.number);
        if (relative) {
            const SpectrumReading first = at(*markers.offset(1));
            reading.frequency -= first.frequency;
            reading.level -= first.level;
        }
        readings += {marker.number, marker.number == markers.active(), relative, reading};
    }
    return readings;
}

std::optional<double> ChartPoints::nextPeak(double offset) const
{
    const auto next = peakSearch::next(m_trace.levels(), indexOf(offset));
    if (!next.valid) {
        return std::nullopt;
    }
    return m_axis.frequencyBetween(next.index, m_trace.size()) - m_axis.centre();
}

double ChartPoints::stepped(double offset, int bins) const
{
    const qsizetype size = m_trace.size();
    if (size == 0) {
        return offset;
    }
    const qsizetype index = qBound(qsizetype{0}, indexOf(offset) + bins, size - 1);
    return m_axis.frequencyAt(index, size) - m_axis.centre();
}

double ChartPoints::floorLevel() const
{
    QVector<float> levels = m_trace.levels();
    if (levels.isEmpty()) {
        return 0.0;
    }
    const auto tenth = levels.begin() + levels.size() / 10;
    std::nth_element(levels.begin(), tenth, levels.end());
    return static_cast<double>(*tenth);
}
