#pragma once

#include "plot/Scale.h"

#include <QPolygonF>
#include <QRect>
#include <QVector>

/// The line of a trace in pixels, with no more points than can be seen.
namespace traceLine {

/// Lays \a values out as the bins that share the width of \a area: of N values, value i lies i/N of
/// the way from the left edge to the right one.
///
/// Up to two values per column of pixels each become a point. Of more, each column keeps the lowest
/// and the highest one of those that lie nearest to it, in the order in which they came, so that no
/// peak is lost and the columns join. A single value becomes a line across the area.
///
/// \param levels from a value to a pixel's row.
/// \param line receives the points; what was in it is replaced and its memory used again. Empty
/// when there are no values or the area is empty.
void layOut(const QVector<float>& values, const QRect& area, const Scale& levels, QPolygonF& line);

} // namespace traceLine
