#pragma once

#include "plot/ColumnRuns.h"
#include "spectrum/ChartGeometry.h"

#include <QColor>
#include <QPolygonF>
#include <QVector>

class QPainter;
class SpectrumTrace;

/// The lines of a spectrum: the trace, max hold as a darker line, and min hold as a dotted one.
class ChartLines
{
public:
    /// Creates yellow lines.
    ChartLines();

    /// Sets the colour of the trace and, darker, of its holds.
    void setColor(const QColor& color);
    /// \return the colour of the trace.
    QColor color() const { return m_color; }

    /// Paints the holds, and the trace over them.
    void paint(QPainter& painter, const SpectrumTrace& trace, const ChartGeometry& geometry);

private:
    void paintLine(QPainter& painter, const QVector<float>& levels, const QColor& color,
        const ChartGeometry& geometry);
    void paintDots(QPainter& painter, const QVector<float>& levels, const ChartGeometry& geometry);

    QColor m_color;
    QColor m_heldColor;
    QPolygonF m_line;  // kept for its memory
    ColumnRuns m_runs; // the same
};
