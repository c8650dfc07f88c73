#pragma once

#include "app/MainWindow.h"
#include "link/LinkMode.h"
#include "support/Pty.h"
#include "support/Screen.h"

#include <QApplication>
#include <QtTest>

/// The panel on the screen, with the test as the main unit at the other end of its line.
class Panel
{
public:
    Panel()
    {
        window.show();
        if (!QTest::qWaitForWindowExposed(&window)) {
            qFatal("the panel does not come up");
        }
        const auto windows = QApplication::topLevelWidgets();
        for (QWidget* top : windows) {
            if (top->objectName() == QLatin1String("splash")) {
                top->hide();
            }
        }
    }

    /// Sends messages (without their frame characters) in one write and waits until the panel has
    /// handled all of them.
    /// \return what the panel has sent meanwhile
    QByteArray say(const QList<QByteArray>& messages)
    {
        QByteArray bytes;
        for (const QByteArray& message : messages) {
            bytes += framed(message);
        }
        unit.takeReceived();
        return sent(bytes);
    }

    /// \return everything that the panel has sent until it answers a "PING"
    QByteArray heard() { return sent(QByteArray()); }

    /// \return the first visible window with this object name, nullptr when there is none
    static QWidget* shownWindow(const char* name)
    {
        const auto windows = QApplication::topLevelWidgets();
        for (QWidget* top : windows) {
            if (top->isVisible() && top->objectName() == QLatin1String(name)) {
                return top;
            }
        }
        return nullptr;
    }

    DeviceDirectory devices;
    Pty& unit = devices.add(QStringLiteral("ttyO1"));
    MainWindow window;

private:
    QByteArray sent(const QByteArray& after)
    {
        const QByteArray pong = framed("PONG");
        if (!unit.write(after + framed("PING")) ||
            !QTest::qWaitFor([&] { return unit.received().endsWith(pong); }, MaxWaitMs)) {
            QTest::qFail("the panel does not answer", __FILE__, __LINE__);
        }
        QByteArray answer = unit.takeReceived();
        answer.chop(pong.size());
        return answer;
    }

    static constexpr int MaxWaitMs = 20'000;
};
