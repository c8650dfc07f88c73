#include "touch/PresentMark.h"

#include <QEvent>
#include <QPainter>

namespace {

constexpr double OuterWidth = 3.0;
constexpr double InnerWidth = 2.0;
constexpr double Radius = 4.0;
constexpr double CheckSize = 16.0; // width and height of the disc with the check mark
constexpr double CheckMargin = 3.0;
constexpr double CheckWidth = 2.2;

void paintRing(QPainter& painter, const QRectF& area)
{
    const double half = OuterWidth / 2;
    painter.setPen(QPen(Qt::black, OuterWidth));
    painter.drawRoundedRect(area.adjusted(half, half, -half, -half), Radius, Radius);
    const double inside = OuterWidth + InnerWidth / 2;
    painter.setPen(QPen(Qt::white, InnerWidth));
    painter.drawRoundedRect(area.adjusted(inside, inside, -inside, -inside), Radius, Radius);
}

void paintCheck(QPainter& painter, const QRectF& area)
{
    const double inset = OuterWidth + InnerWidth + CheckMargin - 1.0;
    const QRectF disc(
        area.right() - inset - CheckSize, area.top() + inset - 1.0, CheckSize, CheckSize);
    painter.setPen(QPen(Qt::white, 1.0));
    painter.setBrush(Qt::black);
    painter.drawEllipse(disc);
    const auto at = [&disc](double x, double y) {
        return QPointF(disc.left() + x * disc.width(), disc.top() + y * disc.height());
    };
    painter.setPen(QPen(Qt::white, CheckWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({at(0.25, 0.55), at(0.43, 0.72), at(0.75, 0.32)}));
}

} // namespace

PresentMark::PresentMark(QWidget* button)
    : QWidget(button)
{
    setObjectName(QStringLiteral("presentMark"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry(button->rect());
    button->installEventFilter(this);
    show();
}

bool PresentMark::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize && watched == parentWidget()) {
        resize(parentWidget()->size());
    }
    return false;
}

void PresentMark::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintRing(painter, rect());
    paintCheck(painter, rect());
}
