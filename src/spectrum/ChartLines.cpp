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
    paintLine(painter, trace.held(), m_heldColor, geometry);
    paintDots(painter, trace.heldLow(), geometry);
    paintLine(painter, trace.levels(), m_color, geometry);
}

void ChartLines::paintLine(QPainter& painter, const QVector<float>& levels, const QColor& color,
    const ChartGeometry& geometry)
{
    if (levels.isEmpty()) {
        return; // Without touching the points of the other lines, which keep their memory.
    }
    traceLine::layOut(levels, geometry.plot, geometry.rows, m_line);
    m_runs.setLine(m_line, geometry.plot);
    m_runs.paint(painter, color);
}

void ChartLines::paintDots(
    QPainter& painter, const QVector<float>& levels, const ChartGeometry& geometry)
{
    if (levels.isEmpty()) {
        return;
    }
    traceLine::layOut(levels, geometry.plot, geometry.rows, m_line);
    painter.setPen(QPen(m_color, 0, Qt::DotLine));
    painter.drawPolyline(m_line);
}
