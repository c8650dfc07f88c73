#pragma once

#include "plot/Scale.h"
#include "spectrum/SpectrumReading.h"

#include <QPointF>
#include <QRect>

/// Where frequencies and levels lie on a chart.
struct ChartGeometry
{
    QRect plot;    ///< The plot in pixels.
    Scale columns; ///< From MHz to columns.
    Scale rows;    ///< From dB to rows.

    /// \return the pixel of a reading; it lies outside the plot when the reading does.
    QPointF pixel(const SpectrumReading& reading) const
    {
        return {columns.pixel(reading.frequency), rows.pixel(reading.level)};
    }
};
