#include "app/TouchTrial.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>

#include <algorithm>

namespace {

constexpr QSize ScreenSize(800, 480);
constexpr int Margin = 40;    // from the edge to a cross
constexpr int ArmLength = 14; // of a cross
constexpr int DotRadius = 3;
constexpr int MaxTrail = 500; // points that stay on the page
constexpr QRect EndKey(300, 360, 200, 70);
constexpr QRect TextPlace(100, 90, 600, 90);

} // namespace

TouchTrial::TouchTrial(QWidget* parent)
    : QWidget(parent)
    , m_crosses{QPoint(Margin, Margin), QPoint(ScreenSize.width() - Margin, Margin),
          QPoint(Margin, ScreenSize.height() - Margin),
          QPoint(ScreenSize.width() - Margin, ScreenSize.height() - Margin),
          QPoint(ScreenSize.width() / 2, ScreenSize.height() / 2)}
    , m_hit(m_crosses.size(), false)
    , m_end(new QPushButton(QStringLiteral("End"), this))
{
    setFixedSize(ScreenSize);
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setCursor(Qt::BlankCursor);
    m_end->setGeometry(EndKey);
    connect(m_end, &QPushButton::clicked, this, &TouchTrial::ended);
}

int TouchTrial::hits() const
{
    return static_cast<int>(std::count(m_hit.cbegin(), m_hit.cend(), true));
}

QString TouchTrial::readout() const
{
    if (m_trail.isEmpty()) {
        return QStringLiteral("Touch the middle of each cross");
    }
    const QPoint point = m_trail.constLast();
    const QPoint off = point - m_crosses.at(nearestCross(point));
    return QStringLiteral("x %1, y %2\n%3 right of and %4 below the nearest cross")
        .arg(point.x())
        .arg(point.y())
        .arg(off.x())
        .arg(off.y());
}

qsizetype TouchTrial::nearestCross(QPoint point) const
{
    const auto nearest =
        std::min_element(m_crosses.cbegin(), m_crosses.cend(), [point](QPoint one, QPoint other) {
            return (point - one).manhattanLength() < (point - other).manhattanLength();
        });
    return nearest - m_crosses.cbegin();
}

void TouchTrial::mousePressEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    const qsizetype cross = nearestCross(point);
    const QPoint off = point - m_crosses.at(cross);
    if (std::abs(off.x()) <= ToleranceInPx && std::abs(off.y()) <= ToleranceInPx) {
        m_hit[cross] = true;
    }
    take(point);
}

void TouchTrial::mouseMoveEvent(QMouseEvent* event)
{
    take(event->position().toPoint());
}

void TouchTrial::take(QPoint point)
{
    if (m_trail.size() == MaxTrail) {
        m_trail.removeFirst();
    }
    m_trail += point;
    update();
}

void TouchTrial::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    for (qsizetype i = 0; i < m_crosses.size(); ++i) {
        const QPoint cross = m_crosses.at(i);
        painter.setPen(QPen(m_hit.at(i) ? Qt::green : Qt::white, 3));
        painter.drawLine(cross - QPoint(ArmLength, 0), cross + QPoint(ArmLength, 0));
        painter.drawLine(cross - QPoint(0, ArmLength), cross + QPoint(0, ArmLength));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::yellow);
    for (const QPoint point : m_trail) {
        painter.drawEllipse(point, DotRadius, DotRadius);
    }
    painter.setPen(Qt::white);
    QFont large = font();
    large.setPixelSize(24);
    painter.setFont(large);
    painter.drawText(TextPlace, Qt::AlignCenter, readout());
}
