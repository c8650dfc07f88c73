#include "spectrum/ChartLines.h"

#include "plot/TraceLine.h"
#include "spectrum/SpectrumTrace.h"
#include "touch/LineColors.h"

#include <QPainter>

ChartLines::ChartLines()
{
    setColor(Qt::yellow);
}

void ChartLines::setColor(const QColor& color)
{
    m_color = color;
    m_heldColor = lineColors::darker(color);
}

void ChartLines::paint(QPainter& painter, const SpectrumTrace& trace, const ChartGeometry& geometry)
{
    paintLine(painter, trace.held(), QPen(m_heldColor, 0), geometry);
    paintLine(painter, trace.heldLow(), QPen(m_color, 0, Qt::DotLine), geometry);
    paintLine(painter, trace.levels(), QPen(m_color, 0), geometry);
}

void ChartLines::paintLine(
    QPainter& painter, const QVector<float>& levels, const QPen& pen, const ChartGeometry& geometry)
{
    if (levels.isEmpty()) {
        return; // Without touching the points of the other lines, which keep their memory.
    }
    traceLine::layOut(levels, geometry.plot, geometry.rows, m_line);
    painter.setPen(pen);
    painter.drawPolyline(m_line);
}
