#include "popups/TouchSlider.h"

#include <QMouseEvent>
#include <QStyleOptionSlider>

namespace {
constexpr int MinMove = 4; // pixels; a finger that only touches moves less
}

TouchSlider::TouchSlider(QWidget* parent)
    : QSlider(Qt::Horizontal, parent)
{
}

QRect TouchSlider::handle() const
{
    return handleAt(sliderPosition());
}

QRect TouchSlider::handleAt(int position) const
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    option.sliderPosition = position;
    return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
}

void TouchSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QSlider::mousePressEvent(event);
        return;
    }
    const int x = qRound(event->position().x());
    if (x < handle().left() || x > handle().right()) {
        setValue(positionFor(x));
    }
    m_touchedX = x;
    m_grip = x - handle().center().x();
    m_moved = false;
    // For QSlider the finger is on the handle, whatever its height.
    const QRect taken = handle();
    const QPointF on(qBound(taken.left(), x, taken.right()), taken.center().y());
    QMouseEvent press(event->type(), on, event->scenePosition(), event->globalPosition(),
        event->button(), event->buttons(), event->modifiers());
    QSlider::mousePressEvent(&press);
    event->setAccepted(press.isAccepted());
}

// QSlider would take the whole groove for the way of the handle, which is shorter by the groove's
// border: the value would jump when the finger begins to move.
void TouchSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (!isSliderDown()) {
        QSlider::mouseMoveEvent(event);
        return;
    }
    const int x = qRound(event->position().x());
    m_moved = m_moved || qAbs(x - m_touchedX) >= MinMove;
    if (m_moved) {
        setSliderPosition(positionFor(x - m_grip));
    }
}

// The position at which the middle of the handle is nearest to x.
int TouchSlider::positionFor(int x) const
{
    const int from = handleAt(minimum()).center().x();
    const int way = handleAt(maximum()).center().x() - from;
    return QStyle::sliderValueFromPosition(minimum(), maximum(), qBound(0, x - from, way), way);
}
