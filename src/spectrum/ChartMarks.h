#pragma once

#include <QColor>
#include <QPointF>
#include <QRect>

class QPainter;

/// The symbols that mark points of a trace.
namespace chartMarks {

/// Paints a triangle that points down at the highest point of a trace.
/// \param at the point in pixels.
/// \param color the colour of the trace.
void paintPeak(QPainter& painter, QPointF at, const QColor& color);

/// Paints a diamond around a point of a trace, and a dotted line through it.
/// \param at the point in pixels.
/// \param area the plot; the line runs from its top to its bottom.
void paintMarker(QPainter& painter, QPointF at, const QRect& area);

} // namespace chartMarks
