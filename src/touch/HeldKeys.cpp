#include "touch/HeldKeys.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QPointer>

namespace {

// Tells a widget that the finger has left it and was lifted outside. The widgets' own handlers then
// reset all that a press has set, which none of their functions does.
void liftOutside(QWidget* held)
{
    const QPointF outside(-held->width() - 1, -held->height() - 1);
    const QPointF global = held->mapToGlobal(outside);
    const QPointer<QWidget> guard(held);
    if (qobject_cast<QAbstractButton*>(held) != nullptr) {
        QMouseEvent move(QEvent::MouseMove, outside, global, Qt::NoButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(held, &move);
    }
    if (guard != nullptr) {
        QMouseEvent release(
            QEvent::MouseButtonRelease, outside, global, Qt::LeftButton, Qt::NoButton, {});
        QCoreApplication::sendEvent(held, &release);
    }
}

bool isHeld(const QWidget* widget)
{
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    return button != nullptr ? button->isDown()
                             : qobject_cast<const QAbstractSlider*>(widget) != nullptr;
}

} // namespace

void touch::letGo(QWidget* window)
{
    QList<QPointer<QWidget>> held;
    const auto widgets = window->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (isHeld(widget)) {
            held += widget;
        }
    }
    for (const QPointer<QWidget>& widget : std::as_const(held)) {
        if (widget != nullptr) {
            liftOutside(widget);
        }
    }
}
