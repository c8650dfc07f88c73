#include "tools/screen/Screen.h"

#include <QApplication>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <QtTest/qtestmouse.h>

#include <memory>

namespace {
constexpr QSize ScreenSize(800, 480);
constexpr int PollMs = 10;
constexpr int MaxWaitMs = 5000;

struct Poll
{
    std::function<void(QWidget*)> then;
    std::function<void()> otherwise;
    QPointer<QWidget> old; // the dialog that was up before
};

void pollModal(const std::shared_ptr<const Poll>& poll, int leftMs)
{
    QTimer::singleShot(PollMs, qApp, [poll, leftMs] {
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog != nullptr && dialog != poll->old) {
            poll->then(dialog);
        } else if (leftMs > 0) {
            pollModal(poll, leftMs - PollMs);
        } else {
            poll->otherwise();
        }
    });
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

void whenModal(const std::function<void(QWidget*)>& then, const std::function<void()>& otherwise)
{
    const Poll poll{then, otherwise, QApplication::activeModalWidget()};
    pollModal(std::make_shared<const Poll>(poll), MaxWaitMs);
}
