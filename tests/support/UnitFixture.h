#pragma once

#include "app/MainWindow.h"
#include "support/Program.h"

#include <QApplication>
#include <QSplashScreen>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

/// The panel's window in the process of the test, without its start-up picture, and the simulated
/// unit (the program) at the other end of all its lines. Base class of the tests that press keys
/// and check how the unit reacts.
class UnitFixture
{
protected:
    static constexpr int LongMs = 40000;

    /// Starts the unit and the window and waits for the menus. \param simulator path of the program
    /// \param options of the program, in addition to --dir
    void start(const QString& simulator, const QStringList& options)
    {
        m_parent = std::make_unique<QTemporaryDir>();
        const QString devices = m_parent->filePath(QStringLiteral("dev"));
        m_unit = std::make_unique<Program>(
            simulator, QStringList{QStringLiteral("--dir"), devices} + options);
        QTRY_VERIFY_WITH_TIMEOUT(m_unit->has("sim: ready " + devices.toUtf8()), LongMs);
        qputenv("QN740_DEV", devices.toLocal8Bit());
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<QSplashScreen*>(widget) != nullptr) {
                widget->hide();
            }
        }
        QTRY_VERIFY_WITH_TIMEOUT(m_unit->has("sim: menus sent"), LongMs);
        say("PING");
    }

    /// Ends the window and the unit.
    void stop()
    {
        m_window.reset();
        m_unit.reset();
        m_parent.reset();
    }

    /// Lets the unit send a message and waits until the panel has handled it.
    void say(const QByteArray& message)
    {
        const QByteArray answer("panel: 1.1.6.4\n");
        const auto before = m_unit->output().count(answer);
        m_unit->write(message + "\nVER\n");
        QTRY_VERIFY_WITH_TIMEOUT(m_unit->output().count(answer) > before, LongMs);
    }

    std::unique_ptr<QTemporaryDir> m_parent;
    std::unique_ptr<Program> m_unit;
    std::unique_ptr<MainWindow> m_window;
};
