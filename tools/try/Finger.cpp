#include "tools/try/Finger.h"

#include "tools/try/Glass.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPointer>
#include <QWindow>
#include <QtTest/qtestmouse.h>

using namespace Qt::StringLiterals;

namespace {

// What the finger is on. It gets the release too, wherever that is.
QPointer<QWindow>& touched()
{
    static QPointer<QWindow> window;
    return window;
}

} // namespace

void finger::down(QPoint point)
{
    const QWidget* window = glass::windowAt(point);
    touched() = window != nullptr ? window->windowHandle() : nullptr;
    if (QWindow* on = touched()) {
        QTest::mousePress(on, Qt::LeftButton, Qt::NoModifier, on->mapFromGlobal(point));
    }
}

void finger::move(QPoint point)
{
    if (QWindow* on = touched()) {
        QTest::mouseMove(on, on->mapFromGlobal(point));
    }
}

void finger::up(QPoint point)
{
    if (QWindow* on = touched()) {
        touched() = nullptr;
        QTest::mouseRelease(on, Qt::LeftButton, Qt::NoModifier, on->mapFromGlobal(point));
    }
}

void finger::tap(QPoint point)
{
    down(point);
    up(point);
}

finger::Target finger::on(const QAbstractButton& button)
{
    const QString obstacle = glass::obstacle(button);
    if (!obstacle.isEmpty()) {
        return {u"\"%1\" %2"_s.arg(glass::label(button), obstacle), {}};
    }
    return {{}, button.mapToGlobal(glass::middle(button))};
}

finger::Target finger::key(const QString& pattern, int number)
{
    const auto buttons = glass::buttons(pattern);
    if (buttons.isEmpty()) {
        const QString where = QApplication::activeModalWidget() != nullptr
            ? u"in the window that is open"_s
            : u"on the screen"_s;
        return {u"no key \"%1\" %2"_s.arg(pattern, where), {}};
    }
    if (number > buttons.size()) {
        return {u"only %1 of \"%2\" on the screen"_s.arg(buttons.size()).arg(pattern), {}};
    }
    if (number > 0) {
        return on(*buttons.at(number - 1));
    }
    Target reached;
    int count = 0;
    for (const QAbstractButton* button : buttons) {
        const Target target = on(*button);
        if (target.fault.isEmpty()) {
            ++count;
        }
        if (target.fault.isEmpty() || count == 0) {
            reached = target;
        }
    }
    if (count > 1) {
        return {u"%1 keys \"%2\" on the screen; say which, as in: press \"%2\" 1"_s.arg(count).arg(
                    pattern),
            {}};
    }
    return reached;
}
