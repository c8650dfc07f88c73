#pragma once

#include "plot/Scale.h"

#include <QPolygonF>
#include <QRect>
#include <QVector>

/// The line of a trace in pixels, with no more points than can be seen.
namespace traceLine {

/// Lays \a values out evenly from the left edge of \a area to the right one.
///
/// Up to two values per column of pixels each become a point. Of more, each column keeps its lowest
/// and its highest one in the order in which they came, so that no peak is lost and the columns
/// join. A single value becomes a line across the area.
///
/// \param levels from a value to a pixel's row.
/// \param line receives the points; what was in it is replaced and its memory used again. Empty
/// when there are no values or the area is empty.
void layOut(const QVector<float>& values, const QRect& area, const Scale& levels, QPolygonF& line);

} // namespace traceLine
