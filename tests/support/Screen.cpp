#include "support/Screen.h"

#include <QApplication>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <QtTest>

#include <algorithm>

namespace {
constexpr QSize ScreenSize(800, 480);
constexpr int PollMs = 10;
constexpr int MaxWaitMs = 5000;

void pollModal(const std::function<void(QWidget*)>& then, const QPointer<QWidget>& old, int leftMs)
{
    QTimer::singleShot(PollMs, qApp, [then, old, leftMs] {
        const QPointer<QWidget> dialog = QApplication::activeModalWidget();
        if (dialog != nullptr && dialog != old) {
            then(dialog);
            if (QTest::currentTestFailed() && dialog != nullptr) {
                dialog->close();
            }
        } else if (leftMs > 0) {
            pollModal(then, old, leftMs - PollMs);
        } else {
            QTest::qFail("no modal dialog came up", __FILE__, __LINE__);
        }
    });
}

bool standsOver(const QWindow* window, const QWindow* below)
{
    while (window != nullptr && window != below) {
        window = window->transientParent();
    }
    return window != nullptr;
}

// Where a window stands, from the bottom to the top.
int floorOf(const QWidget* window)
{
    if (window->inherits("QMainWindow")) {
        return 0;
    }
    if (window->windowType() == Qt::Popup) {
        return 3;
    }
    const QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr && standsOver(window->windowHandle(), modal->windowHandle()) ? 2 : 1;
}

QWidgetList visibleWindows()
{
    // in the order in which they were made
    const auto made = QGuiApplication::topLevelWindows();
    const auto rank = [&made](const QWidget* window) {
        return std::make_pair(floorOf(window), made.indexOf(window->windowHandle()));
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

} // namespace

QPixmap grabScreen()
{
    QPixmap picture(ScreenSize);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    for (QWidget* window : visibleWindows()) {
        painter.drawPixmap(window->geometry().topLeft(), window->grab());
    }
    return picture;
}

void clickOn(QWidget* widget)
{
    QWidget* window = widget->window();
    const QPoint at = widget->mapTo(window, widget->rect().center());
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, at);
}

QPushButton* buttonWithText(const QWidget* parent, const QString& text)
{
    const auto buttons = parent->findChildren<QPushButton*>();
    for (QPushButton* button : buttons) {
        if (button->isVisible() && button->text() == text) {
            return button;
        }
    }
    return nullptr;
}

void whenModal(const std::function<void(QWidget*)>& then)
{
    pollModal(then, QApplication::activeModalWidget(), MaxWaitMs);
}
