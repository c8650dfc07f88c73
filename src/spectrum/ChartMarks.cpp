#include "spectrum/ChartMarks.h"

#include "spectrum/ChartLook.h"
#include "spectrum/ChartMarkers.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace {

constexpr double Symbol = 5.0; // Half the width of a mark, in pixels.
constexpr double TipGap = 2.0; // Between a point and its triangle.
constexpr int NumberGap = 3;   // Between a mark and its number.

// The row of a mark that reaches \a reach pixels above and below it, inside the plot.
double rowInside(double row, double reach, const QRect& area)
{
    const double lowest = std::max<double>(area.top(), area.bottom() - reach);
    return std::clamp<double>(row, std::min(area.top() + reach, lowest), lowest);
}

// Writes the number to the right of the mark, or to its left at the edge of the plot, on a dark
// ground so that the trace does not run through it. Above stands the triangle of the peak.
void paintNumber(QPainter& painter, QPointF at, const QRect& area, const QStaticText& number)
{
    if (number.text().isEmpty()) {
        return;
    }
    const QSize size = number.size().toSize();
    const double away = Symbol + NumberGap;
    const bool right = at.x() + away + size.width() <= area.right();
    const double x = right ? at.x() + away : at.x() - away - size.width();
    const QPoint place(
        qRound(x), qRound(rowInside(at.y(), size.height() / 2.0, area)) - size.height() / 2);
    painter.fillRect(QRect(place, size).adjusted(-1, 2, 1, -2), chartLook::Background);
    painter.setFont(chartLook::font());
    painter.drawStaticText(place, number);
}

} // namespace

chartMarks::Labels::Labels()
    : m_over(chartLook::preparedText(chartLook::overText()))
{
    for (int number = 0; number <= ChartMarkers::MaxCount; ++number) {
        m_numbers += chartLook::preparedText(QString::number(number));
    }
}

void chartMarks::Labels::paintMarker(
    QPainter& painter, QPointF at, const QRect& area, int number, bool active) const
{
    if (active) {
        chartMarks::paintMarker(painter, at, area, m_numbers.at(number));
    } else {
        paintOtherMarker(painter, at, area, m_numbers.at(number));
    }
}

void chartMarks::Labels::paintOver(QPainter& painter, double peakX, const QRect& area) const
{
    constexpr int Padding = 5;
    constexpr int Inset = 4;
    const QSize size = m_over.size().toSize() + QSize(2 * Padding, 2);
    const bool left = peakX > area.left() + 2 * Inset + size.width() + Symbol;
    const QPoint at(
        left ? area.left() + Inset : area.right() - Inset - size.width(), area.top() + Inset);
    painter.fillRect(QRect(at, size), chartLook::OverGround);
    painter.setFont(chartLook::font());
    painter.setPen(chartLook::OverText);
    painter.drawStaticText(at + QPoint(Padding, 1), m_over);
}

void chartMarks::paintPeak(QPainter& painter, QPointF at, const QColor& color, const QRect& area)
{
    const double y = std::clamp<double>(at.y(), area.top(), area.bottom());
    const bool above = y - TipGap - 2 * Symbol >= area.top();
    const double down = above ? -1.0 : 1.0; // the way from the point into the triangle
    const QPointF tip(at.x(), y + down * TipGap);
    painter.setPen(QPen(color, 0));
    painter.setBrush(chartLook::Text);
    painter.drawConvexPolygon(QPolygonF({tip, tip + QPointF(-Symbol, down * 2 * Symbol),
        tip + QPointF(Symbol, down * 2 * Symbol)}));
}

void chartMarks::paintMarker(
    QPainter& painter, QPointF at, const QRect& area, const QStaticText& number)
{
    painter.setPen(QPen(chartLook::Marked, 0, Qt::DotLine));
    painter.drawLine(QPointF(at.x(), area.top()), QPointF(at.x(), area.bottom()));
    painter.setPen(QPen(chartLook::Marked, 0));
    painter.setBrush(Qt::NoBrush);
    at.setY(rowInside(at.y(), Symbol, area));
    painter.drawConvexPolygon(QPolygonF({at + QPointF(0, -Symbol), at + QPointF(Symbol, 0),
        at + QPointF(0, Symbol), at + QPointF(-Symbol, 0)}));
    paintNumber(painter, at, area, number);
}

void chartMarks::paintOtherMarker(
    QPainter& painter, QPointF at, const QRect& area, const QStaticText& number)
{
    constexpr double Half = Symbol - 1.0;
    painter.setPen(QPen(chartLook::Marked, 0));
    painter.setBrush(Qt::NoBrush);
    at.setY(rowInside(at.y(), Symbol, area));
    painter.drawRect(QRectF(at.x() - Half, at.y() - Half, 2 * Half, 2 * Half));
    paintNumber(painter, at, area, number);
}
