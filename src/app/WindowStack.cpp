#include "app/WindowStack.h"

#include <QApplication>
#include <QBackingStore>
#include <QImage>
#include <QPaintEvent>
#include <QWidget>
#include <QWindow>

#include <algorithm>

WindowStack::WindowStack(QObject* parent)
    : QObject(parent)
{
    // What Qt moves inside a backing store, instead of painting it again, would not be seen here.
    qputenv("QT_NO_FAST_SCROLL", "1");
    qputenv("QT_NO_FAST_MOVE", "1");
    qApp->installEventFilter(this);
}

QList<QWidget*> WindowStack::windows() const
{
    QList<QWidget*> all;
    for (const Entry& entry : m_stack) {
        if (entry.window != nullptr && entry.painted && entry.window->isVisible()) {
            all += entry.window;
        }
    }
    return all;
}

QImage WindowStack::picture(const QWidget* window)
{
    const QBackingStore* store = window->backingStore();
    const QWindow* handle = window->windowHandle();
    if (store == nullptr || handle == nullptr) {
        return {};
    }
    const QPaintDevice* device = const_cast<QBackingStore*>(store)->paintDevice();
    if (device == nullptr || device->devType() != QInternal::Image) {
        return {};
    }
    const auto* image = static_cast<const QImage*>(device);
    // A window that was resized has not painted itself yet.
    const QSizeF wanted = QSizeF(window->size()) * handle->devicePixelRatio();
    if (qAbs(image->width() - wanted.width()) > 1 || qAbs(image->height() - wanted.height()) > 1) {
        return {};
    }
    return {image->constBits(), image->width(), image->height(), image->bytesPerLine(),
        image->format()};
}

bool WindowStack::eventFilter(QObject* watched, QEvent* event)
{
    if (!watched->isWidgetType()) {
        return false;
    }
    auto* widget = static_cast<QWidget*>(watched);
    if (event->type() == QEvent::Paint) {
        notePaint(widget, *static_cast<QPaintEvent*>(event));
    } else if (widget->isWindow()) {
        windowEvent(widget, *event);
    }
    return false;
}

void WindowStack::windowEvent(QWidget* window, const QEvent& event)
{
    switch (event.type()) {
    case QEvent::Show:
        emit appearing(window);
        bringUp(window);
        break;
    case QEvent::ZOrderChange:
        bringUp(window);
        break;
    case QEvent::Hide:
        remove(window);
        break;
    case QEvent::Move:
    case QEvent::Resize:
        break;
    default:
        return;
    }
    emit changed();
}

void WindowStack::bringUp(QWidget* window)
{
    const auto here = std::find_if(m_stack.cbegin(), m_stack.cend(),
        [window](const Entry& entry) { return entry.window == window; });
    Entry entry{window};
    if (here != m_stack.cend()) {
        entry = *here;
        m_stack.erase(here);
    }
    m_stack += entry;
}

void WindowStack::remove(QWidget* window)
{
    m_stack.removeIf(
        [window](const Entry& entry) { return entry.window == nullptr || entry.window == window; });
}

void WindowStack::notePaint(QWidget* widget, const QPaintEvent& event)
{
    QWidget* window = widget->window();
    const auto here = std::find_if(m_stack.begin(), m_stack.end(),
        [window](const Entry& entry) { return entry.window == window; });
    if (here == m_stack.end()) {
        return;
    }
    here->painted = true;
    emit painted(QRect(widget->mapToGlobal(event.rect().topLeft()), event.rect().size()));
}
