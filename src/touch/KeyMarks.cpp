#include "touch/KeyMarks.h"

#include <QColor>
#include <QPainter>
#include <QPolygonF>

namespace {

// From the key's edge; the style sheets of the keys have a border of 2 pixels.
constexpr int Inset = 4;
constexpr int RingWidth = 2;

// Contrast with the grey and the green face at least 4 : 1, with the dark one 8 : 1.
constexpr QColor OnLight(0, 0, 0);
constexpr QColor OnDark(0xff, 0xfa, 0xcd);

constexpr QColor LitColour(0xff, 0xff, 0x00);

void paintLamp(QPainter& painter, const QRect& place, bool isOn, bool isEnabled)
{
    painter.setPen(QPen(isEnabled ? OnLight : OnDark, RingWidth));
    painter.setBrush(Qt::NoBrush);
    if (isOn) {
        painter.setBrush(isEnabled ? LitColour : OnDark);
    }
    const double half = RingWidth / 2.0;
    painter.drawEllipse(QRectF(place).adjusted(half, half, -half, -half));
}

void paintHourglass(QPainter& painter, const QRect& place, bool isEnabled)
{
    const QRectF box(place);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isEnabled ? OnLight : OnDark);
    painter.drawPolygon(QPolygonF({box.topLeft(), box.topRight(), box.center()}));
    painter.drawPolygon(QPolygonF({box.bottomLeft(), box.bottomRight(), box.center()}));
    painter.drawRect(QRectF(box.left(), box.top(), box.width(), RingWidth));
    painter.drawRect(QRectF(box.left(), box.bottom() - RingWidth, box.width(), RingWidth));
}

} // namespace

namespace keyMarks {

QRect lampPlace(const QRect& key)
{
    return {key.right() + 1 - Inset - MarkSize, key.top() + Inset, MarkSize, MarkSize};
}

QRect pendingPlace(const QRect& key)
{
    return {key.left() + Inset, key.top() + Inset, MarkSize, MarkSize};
}

void paint(QPainter& painter, const QRect& key, const Marks& marks, bool isEnabled)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (marks.lamp != Lamp::None) {
        paintLamp(painter, lampPlace(key), marks.lamp == Lamp::On, isEnabled);
    }
    if (marks.isPending) {
        paintHourglass(painter, pendingPlace(key), isEnabled);
    }
    painter.restore();
}

} // namespace keyMarks
