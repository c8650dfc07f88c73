#pragma once

#include "spectrum/ChartMarkers.h"
#include "spectrum/ChartReadout.h"
#include "spectrum/FrequencyAxis.h"
#include "spectrum/SpectrumReading.h"
#include "spectrum/SpectrumTrace.h"

/// What an operator reads at the points of a trace, and where a marker goes from point to point.
///
/// It looks at a trace and the axis that it lies on, which both have to live longer. Places are
/// given as distances from the centre in MHz, as ChartMarkers keeps them. It needs no widget.
class ChartPoints
{
public:
    /// Looks at \a trace on \a axis.
    ChartPoints(const FrequencyAxis& axis, const SpectrumTrace& trace)
        : m_axis(axis)
        , m_trace(trace)
    {
    }

    /// \return the highest point, between the points of the trace as peakSearch finds it; not valid
    /// without points.
    SpectrumReading peak() const;
    /// \return the point that is nearest to this place; not valid without points.
    SpectrumReading at(double offset) const;
    /// \return what is read at each marker: the point where it is, or the difference to marker 1.
    QVector<ChartReadout::Marker> at(const ChartMarkers& markers) const;

    /// \return \a offset, or the nearest place on the axis.
    double inside(double offset) const;
    /// \return \a markers with the active one, or marker 1, on the peak; the same without points.
    ChartMarkers onPeak(const ChartMarkers& markers) const;
    /// \return \a markers with the active one on the highest peak that is lower than the point
    /// where it stands, the same when there is none; without markers, marker 1 on the peak.
    ChartMarkers onNextPeak(const ChartMarkers& markers) const;
    /// \return \a markers with the active one \a bins points to the right, or to the left when that
    /// is negative, at most at the end of the trace; the same without markers or points.
    ChartMarkers stepped(const ChartMarkers& markers, int bins) const;
    /// \return the level below which a tenth of the points lie: noise, unless signals fill nearly
    /// all of the span. 0 without points.
    double floorLevel() const;

private:
    qsizetype indexOf(double offset) const;
    double offsetOf(double index) const;

    const FrequencyAxis& m_axis;
    const SpectrumTrace& m_trace;
};
