// These tests run the scopes against the real simulated unit: the unit sends what the operator has
// chosen, and the scopes plot it.
#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "scopes/PlotView.h"
#include "scopes/ScopesPage.h"
#include "support/Program.h"
#include "support/Pty.h"
#include "support/Screen.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongMs = Program::LongMs;

} // namespace

class tst_SimulatedScopes : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { qunsetenv("QN740_DEV"); }

    void a_mode_that_is_chosen_is_sent_and_plotted()
    {
        start({u"--signal"_s, u"qpsk:snr=30"_s});
        QSignalSpy blocks(scope(2), &Scope::rcv_eye_msg);
        choose(2, u"Constellation"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_unit->has("panel: D2:DSDM:1"), LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(blocks.size() >= 3, LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(plot(2)->paintCount() > 2, LongMs);
        // There is one sample per symbol, so all samples are near the four points.
        const QVector<QPointF> points = scope(2)->constellation().plotted();
        const double level = 0.5 / std::sqrt(2.0);
        for (int k = 1; k < points.size(); ++k) {
            QVERIFY(std::abs(std::abs(points.at(k).x()) - level) < 0.12);
            QVERIFY(std::abs(std::abs(points.at(k).y()) - level) < 0.12);
        }
        choose(2, u"Off"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_unit->has("panel: D2:DSDM:0"), LongMs);
    }

    void all_three_scopes_run_at_once()
    {
        start({u"--scope-mode"_s, u"2"_s});
        QTRY_VERIFY_WITH_TIMEOUT(plot(1)->paintCount() > 5, LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(plot(2)->paintCount() > 5, LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(plot(3)->paintCount() > 5, LongMs);
    }

    void sdi_is_set_by_the_unit_and_shown()
    {
        start({});
        QSignalSpy records(scope(1), &Scope::rcv_sdi_msg);
        m_unit->write("SM,1,3\n");
        QTRY_VERIFY_WITH_TIMEOUT(records.size() >= 3, LongMs);
        QCOMPARE(records.last().first().toByteArray().size(), 5);
        QCOMPARE(m_window->rooms().scopes->modeButton(1)->text(), u"Demod 1 SDI"_s);
    }

    void a_spoiled_line_is_still_shown_data()
    {
        QTest::addColumn<QString>("fault");
        for (const char* fault : {"scope-index=0.25", "scope-loss=0.2", "scope-noise=0.1",
                 "scope-silence=0.02", "scope-index=0.2,scope-loss=0.2,scope-noise=0.1"}) {
            QTest::newRow(fault) << QString::fromUtf8(fault);
        }
    }

    void a_spoiled_line_is_still_shown()
    {
        QFETCH(QString, fault);
        start({u"--scope-mode"_s, u"2"_s, u"--fault"_s, fault, u"--seed"_s, u"7"_s});
        QSignalSpy blocks(scope(1), &Scope::rcv_eye_msg);
        QTRY_VERIFY_WITH_TIMEOUT(blocks.size() >= 8, LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(plot(1)->paintCount() > 3, LongMs);
    }

    void nonsense_on_the_command_line_is_reported_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("signal") << QStringList{u"--signal"_s, u"fsk"_s};
        QTest::newRow("fault") << QStringList{u"--fault"_s, u"smoke"_s};
        QTest::newRow("mode") << QStringList{u"--scope-mode"_s, u"4"_s};
        QTest::newRow("seed") << QStringList{u"--seed"_s, u"x"_s};
    }

    void nonsense_on_the_command_line_is_reported()
    {
        QFETCH(QStringList, arguments);
        Program unit(QString::fromUtf8(QN740_SIM), arguments);
        QVERIFY(unit.ends());
        QCOMPARE(unit.exitCode(), 1);
        QVERIFY2(unit.errors().startsWith("qn740-sim: ") &&
                unit.errors().contains(arguments.constLast().toUtf8()),
            unit.errors());
    }

private:
    void start(const QStringList& arguments)
    {
        m_window.reset();
        m_parent = std::make_unique<QTemporaryDir>();
        const QString devices = m_parent->filePath(u"dev"_s);
        m_unit = std::make_unique<Program>(QString::fromUtf8(QN740_SIM),
            QStringList{u"--dir"_s, devices, u"--no-menus"_s} + arguments);
        QTRY_VERIFY_WITH_TIMEOUT(m_unit->has("sim: ready " + devices.toUtf8()), LongMs);
        qputenv("QN740_DEV", devices.toLocal8Bit());
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget != m_window.get()) {
                widget->hide(); // the splash
            }
        }
        clickOn(part<QPushButton>(*m_window, "scopesButton"));
    }

    void choose(int demodulator, const QString& text)
    {
        whenModal([text](QWidget* dialog) { clickOn(buttonWithText(dialog, text)); });
        clickOn(m_window->rooms().scopes->modeButton(demodulator));
    }

    Scope* scope(int demodulator) const { return m_window->rooms().scopes->scope(demodulator); }
    PlotView* plot(int demodulator) const
    {
        return scope(demodulator)->findChild<PlotView*>(u"plotI"_s);
    }

    std::unique_ptr<QTemporaryDir> m_parent;
    std::unique_ptr<Program> m_unit;
    std::unique_ptr<MainWindow> m_window;
};

QN740_TEST_MAIN(tst_SimulatedScopes)
#include "tst_SimulatedScopes.moc"
