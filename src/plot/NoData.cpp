#include "plot/NoData.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int Remaining = 102; // of 255: two fifths of the light
constexpr int Opaque = 255;
constexpr int Padding = 8;
constexpr double OutlineWidth = 2.0;

QFont fontOf(const QFont& base, int pixels)
{
    QFont font(base);
    font.setPixelSize(pixels);
    font.setBold(true);
    return font;
}

// The largest font in which the text fits the width.
QFont fittingFont(const QFont& base, int width)
{
    int pixels = noData::LargestPixels;
    while (pixels > noData::SmallestPixels &&
        QFontMetrics(fontOf(base, pixels)).horizontalAdvance(noData::text()) + 2 * Padding >
            width) {
        --pixels;
    }
    return fontOf(base, pixels);
}

} // namespace

QString noData::text()
{
    return QStringLiteral("NO DATA");
}

QColor noData::dimmed(const QColor& color)
{
    const auto part = [](int value) { return (value * Remaining + Opaque / 2) / Opaque; };
    return {part(color.red()), part(color.green()), part(color.blue())};
}

void noData::dim(QPainter& painter, const QRect& area)
{
    painter.fillRect(area, QColor(0, 0, 0, Opaque - Remaining));
}

void noData::paint(QPainter& painter, const QRect& area)
{
    dim(painter, area);
    painter.setFont(fittingFont(painter.font(), area.width()));
    const QSize size = painter.fontMetrics().size(0, text()) + QSize(2 * Padding, Padding);
    QRect box(QPoint(0, 0), size);
    box.moveCenter(area.center());
    box &= area;
    painter.fillRect(box, Ground);
    painter.setPen(QPen(Text, OutlineWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(box.adjusted(1, 1, -1, -1));
    painter.drawText(box, Qt::AlignCenter, text());
}
