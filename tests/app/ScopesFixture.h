#pragma once

#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "scopes/ScopesPage.h"
#include "scopes/Streams.h"
#include "support/Pty.h"
#include "support/Screen.h"
#include "tools/screen/Part.h"

#include <QPushButton>
#include <QtTest>

#include <map>
#include <memory>

// The panel is on the screen, and the test is at the other end of its line and of its three scope
// ports.
class ScopesFixture : public QObject
{
protected:
    // Returns a block whose samples are all the same.
    static QByteArray steady(int i, int q)
    {
        return streams::block(QVector<int>(256, i), QVector<int>(256, q));
    }

    void start()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_pty = &m_devices->add(QStringLiteral("ttyO1"));
        for (int n = 1; n <= 3; ++n) {
            m_scopeLines[n] = &m_devices->add(QStringLiteral("ttyUSB%1").arg(n));
        }
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        m_window->resize(800, 480);
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        hideSplash();
    }

    void stop()
    {
        m_window.reset();
        m_devices.reset();
    }

    void send(const QByteArray& body) { m_window->process_mess(QString::fromLatin1(framed(body))); }

    void clickOnScopes()
    {
        if (m_window->rooms().stack->currentWidget() != m_window->rooms().scopes) {
            clickOn(part<QPushButton>(*m_window, "scopesButton"));
        }
        QTRY_COMPARE(m_window->rooms().stack->currentWidget(), m_window->rooms().scopes);
    }

    void hideSplash()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget != m_window.get()) {
                widget->hide();
            }
        }
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    Pty* m_pty = nullptr;
    std::map<int, Pty*> m_scopeLines;
    std::unique_ptr<MainWindow> m_window;
};
