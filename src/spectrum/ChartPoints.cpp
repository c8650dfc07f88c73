#include "spectrum/ChartPoints.h"

#include "spectrum/PeakSearch.h"

#include <algorithm>

qsizetype ChartPoints::indexOf(double offset) const
{
    return m_axis.indexAt(m_axis.centre() + offset, m_trace.size());
}

double ChartPoints::inside(double offset) const
{
    return qBound(-m_axis.width() / 2, offset, m_axis.width() / 2);
}

// The first point lies on the edge of the axis, and a rounding error must not put it outside.
double ChartPoints::offsetOf(double index) const
{
    return inside(m_axis.frequencyBetween(index, m_trace.size()) - m_axis.centre());
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

ChartMarkers ChartPoints::onPeak(const ChartMarkers& markers) const
{
    const SpectrumReading top = peak();
    return top.valid ? markers.moved(inside(top.frequency - m_axis.centre())) : markers;
}

ChartMarkers ChartPoints::onNextPeak(const ChartMarkers& markers) const
{
    const auto from = markers.offset();
    if (!from) {
        return onPeak(markers);
    }
    const auto next = peakSearch::next(m_trace.levels(), indexOf(*from));
    return next.valid ? markers.moved(offsetOf(next.index)) : markers;
}

ChartMarkers ChartPoints::stepped(const ChartMarkers& markers, int bins) const
{
    const auto from = markers.offset();
    const qsizetype size = m_trace.size();
    if (!from || size == 0) {
        return markers;
    }
    const qsizetype index = qBound(qsizetype{0}, indexOf(*from) + bins, size - 1);
    return markers.moved(offsetOf(static_cast<double>(index)));
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
