#include "support/Screen.h"

#include <QApplication>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <QtTest>

namespace {
constexpr QSize ScreenSize(800, 480);
constexpr int PollMs = 10;
constexpr int LongestWaitMs = 5000;

void pollModal(const std::function<void(QWidget*)>& then, int leftMs)
{
    QTimer::singleShot(PollMs, qApp, [then, leftMs] {
        if (QWidget* dialog = QApplication::activeModalWidget()) {
            then(dialog);
        } else if (leftMs > 0) {
            pollModal(then, leftMs - PollMs);
        } else {
            QTest::qFail("no modal dialog came up", __FILE__, __LINE__);
        }
    });
}
} // namespace

QPixmap grabScreen()
{
    QPixmap picture(ScreenSize);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    const auto windows = QApplication::topLevelWidgets();
    // the main window first, then what stands over it in the order of creation
    for (const bool front : {false, true}) {
        for (QWidget* window : windows) {
            const bool isMain = window->inherits("QMainWindow");
            if (window->isVisible() && isMain != front) {
                painter.drawPixmap(window->pos(), window->grab());
            }
        }
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
    pollModal(then, LongestWaitMs);
}
