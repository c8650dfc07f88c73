#include "spectrum/ChartMarks.h"

#include "spectrum/ChartLook.h"

#include <QPainter>

namespace {
constexpr double Symbol = 5.0; // Half the width of a mark, in pixels.
} // namespace

void chartMarks::paintPeak(QPainter& painter, QPointF at, const QColor& color)
{
    const QPointF tip = at - QPointF(0, 2);
    painter.setPen(QPen(color, 0));
    painter.setBrush(chartLook::Text);
    painter.drawConvexPolygon(
        QPolygonF({tip, tip + QPointF(-Symbol, -2 * Symbol), tip + QPointF(Symbol, -2 * Symbol)}));
}

void chartMarks::paintMarker(QPainter& painter, QPointF at, const QRect& area)
{
    painter.setPen(QPen(chartLook::Marked, 0, Qt::DotLine));
    painter.drawLine(QPointF(at.x(), area.top()), QPointF(at.x(), area.bottom()));
    painter.setPen(QPen(chartLook::Marked, 0));
    painter.setBrush(Qt::NoBrush);
    painter.drawConvexPolygon(QPolygonF({at + QPointF(0, -Symbol), at + QPointF(Symbol, 0),
        at + QPointF(0, Symbol), at + QPointF(-Symbol, 0)}));
}
