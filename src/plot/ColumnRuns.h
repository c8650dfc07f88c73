#pragma once

#include <QPolygonF>
#include <QRect>

#include <vector>

class QColor;
class QPainter;

/// A line that runs from left to right, as one run of pixels in each column.
///
/// A trace of a thousand points in a few hundred columns goes up and down in every column. Drawn
/// segment by segment it hits most pixels more than once. Here the points are reduced to the rows
/// that the line covers in each column, which are then drawn once.
///
/// A pixel belongs to the line where the line crosses the middle of its row within its column, and
/// where it is the nearest pixel to a point or to where the line crosses the middle of the column.
/// So a flat line has one pixel in each column, and a steep one has no gaps.
class ColumnRuns
{
public:
    /// The rows that a line covers in a column. There are none when \a first is below \a last.
    struct Run
    {
        int first; ///< The upper row.
        int last;  ///< The lower row.
    };

    /// Takes a line. What was there before is replaced, and its memory used again.
    /// \param line its points from left to right. What lies above or below \a area is left out; a
    /// point beside it counts in its outermost column.
    /// \param area in pixels.
    void setLine(const QPolygonF& line, const QRect& area);

    /// \return the area's columns from left to right.
    const std::vector<Run>& runs() const { return m_runs; }

    /// Paints the line. The pixels of the picture are written straight where it has them in 16 or
    /// 32 bits and nothing is scaled or turned; else the painter draws the same runs.
    /// A clip of the painter's own counts as the rectangle around it.
    /// \param color an opaque one.
    void paint(QPainter& painter, const QColor& color) const;

private:
    void drawRuns(QPainter& painter, const QColor& color) const;

    QRect m_area;
    std::vector<Run> m_runs;
};
