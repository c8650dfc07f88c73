#include "touch/WindowOrder.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace {

bool standsOver(const QWindow* window, const QWindow* below)
{
    while (window != nullptr && window != below) {
        window = window->transientParent();
    }
    return window != nullptr;
}

// The layer of a window: 0 is the lowest, 4 the highest.
int layerOf(const QWidget* window)
{
    if (window->inherits("QMainWindow")) {
        return 0;
    }
    if (window->windowType() == Qt::Popup) {
        return 4;
    }
    const QWidget* modal = QApplication::activeModalWidget();
    if (window == modal) {
        return 2;
    }
    return modal != nullptr && standsOver(window->windowHandle(), modal->windowHandle()) ? 3 : 1;
}

// Others, as "offscreen", answer by the order in which windows were made, and know of no other.
bool platformKnowsOrder()
{
    const QString platform = QGuiApplication::platformName();
    return platform == QLatin1String("linuxfb") || platform == QLatin1String("vnc") ||
        platform == QLatin1String("eglfs") || platform == QLatin1String("xcb");
}

} // namespace

QWidgetList touch::visibleWindows()
{
    // in the order in which they were created
    const auto created = QGuiApplication::topLevelWindows();
    const auto rank = [&created](const QWidget* window) {
        return std::make_pair(layerOf(window), created.indexOf(window->windowHandle()));
    };
    QWidgetList windows;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible()) {
            windows += window;
        }
    }
    std::sort(windows.begin(), windows.end(),
        [&rank](const QWidget* a, const QWidget* b) { return rank(a) < rank(b); });
    return windows;
}

bool touch::isBlocked(const QWidget* window)
{
    const QWidget* modal = QApplication::activeModalWidget();
    const bool isPopup = window->windowType() == Qt::Popup;
    return modal != nullptr && !isPopup && layerOf(window) < 2;
}

QWidget* touch::windowAt(QPoint point)
{
    const QWindow* top = platformKnowsOrder() ? QGuiApplication::topLevelAt(point) : nullptr;
    QWidget* highest = nullptr;
    for (QWidget* window : visibleWindows()) {
        if (top != nullptr && window->windowHandle() == top) {
            return window;
        }
        if (window->geometry().contains(point)) {
            highest = window;
        }
    }
    return highest;
}
