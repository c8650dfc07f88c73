#pragma once

#include <QColor>
#include <QPointF>
#include <QRect>
#include <QStaticText>
#include <QVector>

class QPainter;

/// The symbols that mark points of a trace.
namespace chartMarks {

/// Symbols with texts, which are laid out once.
class Labels
{
public:
    /// Prepares the texts.
    Labels();

    /// Paints a marker and its number.
    void paintMarker(
        QPainter& painter, QPointF at, const QRect& area, int number, bool active) const;
    /// Paints "OVER" into the upper left corner of the plot, or the right one if the peak is there.
    /// \param peakX the column of the peak in pixels.
    /// \param area the plot.
    void paintOver(QPainter& painter, double peakX, const QRect& area) const;

private:
    QVector<QStaticText> m_numbers; // "0", "1" and so on
    QStaticText m_over;
};

constexpr int Reach =
    6; ///< How far a symbol reaches to the left and right of its point, in pixels.

constexpr int PeakReach =
    14; ///< How far the triangle of the peak reaches above or below its point, in pixels.

/// Paints a triangle that points down at the highest point of a trace. Where there is no room above
/// the point, it stands below and points up; a point outside is marked at the edge of the plot.
/// \param at the point in pixels.
/// \param color the colour of the trace.
/// \param area the plot.
void paintPeak(QPainter& painter, QPointF at, const QColor& color, const QRect& area);

/// Paints the active marker: a diamond around a point of a trace, and a dotted line through it. A
/// point outside is marked at the edge of the plot.
/// \param at the point in pixels.
/// \param area the plot; the line runs from its top to its bottom.
/// \param number of the marker, written beside the diamond; an empty text writes none.
void paintMarker(QPainter& painter, QPointF at, const QRect& area, const QStaticText& number = {});

/// Paints another marker: a square around a point of a trace, without a line.
/// \param at the point in pixels.
/// \param area the plot.
/// \param number of the marker, written beside the square; an empty text writes none.
void paintOtherMarker(
    QPainter& painter, QPointF at, const QRect& area, const QStaticText& number = {});

} // namespace chartMarks
