#include "touch/FingerScroll.h"

#include "touch/HeldKeys.h"
#include "touch/Sizes.h"

#include <QMouseEvent>
#include <QScrollBar>

#include <cmath>
#include <utility>

namespace {

// The handle has a contrast of more than 3 : 1 to its groove and to the windows.
QString barSheet()
{
    return QStringLiteral(
        "QScrollBar:vertical {width: %1px; background: #c8c8c8; border: 1px solid #505050; margin: 0px;}"
        "QScrollBar::handle:vertical {background: #425994; border: 1px solid black; border-radius: 4px; min-height: %1px;}"
        "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical {height: 0px;}"
        "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical {background: none;}")
        .arg(touch::ScrollBarWidth);
}

} // namespace

FingerScroll::FingerScroll(QWidget* parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setStyleSheet(QStringLiteral("FingerScroll {border: none;}"));
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    verticalScrollBar()->setStyleSheet(barSheet());
}

void FingerScroll::setContents(QWidget* contents)
{
    setWidget(contents);
    followOn(contents);
}

void FingerScroll::followOn(QWidget* part)
{
    part->installEventFilter(this);
}

bool FingerScroll::eventFilter(QObject* watched, QEvent* event)
{
    auto* touched = qobject_cast<QWidget*>(watched);
    const auto type = event->type();
    const bool ofMouse = type == QEvent::MouseButtonPress || type == QEvent::MouseMove ||
        type == QEvent::MouseButtonRelease;
    if (!ofMouse || touched == nullptr || touched == viewport()) {
        return QScrollArea::eventFilter(watched, event);
    }
    const auto* mouse = static_cast<const QMouseEvent*>(event);
    switch (type) {
    case QEvent::MouseButtonPress:
        m_touched = true;
        m_dragging = false;
        m_startY = mouse->globalPosition().y();
        m_startValue = verticalScrollBar()->value();
        return false;
    case QEvent::MouseMove:
        return m_touched && mouse->buttons().testFlag(Qt::LeftButton) &&
            follow(touched, mouse->globalPosition().y());
    default:
        m_touched = false;
        return std::exchange(m_dragging, false);
    }
}

// Returns whether the finger scrolls, so that what it touches must not see its move.
bool FingerScroll::follow(QWidget* touched, double y)
{
    const double moved = y - m_startY;
    if (!m_dragging && std::abs(moved) >= DragDistance) {
        m_touched = false; // the events that let the button go are not the finger's
        touch::letGo(touched->window());
        m_touched = true;
        m_dragging = true;
    }
    if (m_dragging) {
        verticalScrollBar()->setValue(m_startValue - static_cast<int>(std::lround(moved)));
    }
    return m_dragging;
}
