#include "scopes/PlotView.h"
#include "scopes/ScopesPage.h"
#include "scopes/StcMagPhasePlot.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr QSize PageSize(800, 428); // what the status bar leaves
} // namespace

class tst_ScopesPage : public QObject
{
    Q_OBJECT

private slots:
    void has_three_scopes_on_their_ports()
    {
        ScopesPage page;
        for (int n = 1; n <= 3; ++n) {
            QVERIFY(page.scope(n) != nullptr);
            QCOMPARE(page.scope(n)->objectName(), QStringLiteral("scope%1").arg(n));
            QCOMPARE(page.scope(n)->portName(), QStringLiteral("ttyUSB%1").arg(n));
            QCOMPARE(page.scope(n)->demodulator(), n);
            QCOMPARE(page.modeButton(n)->objectName(), QStringLiteral("modeButton%1").arg(n));
        }
        for (const int n : {0, 4, -1, 1000}) {
            QVERIFY(page.scope(n) == nullptr);
            QVERIFY(page.modeButton(n) == nullptr);
            QVERIFY(page.scopeGrid(n) == nullptr);
            QCOMPARE(page.storedMode(n), 0);
            page.setMode(n, *ScopeMode::ofMessage(1));
        }
    }

    // A look takes as long to work out as it takes to make the widget.
    void the_looks_of_a_hidden_page_are_worked_out_when_it_is_shown()
    {
        QWidget window;
        window.setStyleSheet(u"QPushButton:pressed {background-color: #4169e1;}"_s);
        window.resize(PageSize);
        auto* page = new ScopesPage(&window);
        page->resize(PageSize);
        page->hide();
        window.show();
        QCoreApplication::processEvents();
        const auto isWorkedOut = [](const QWidget* part) {
            return part->testAttribute(Qt::WA_WState_Polished);
        };
        const auto parts = page->magPhasePlot()->findChildren<QLabel*>();
        QVERIFY(!parts.isEmpty());
        QVERIFY(std::none_of(parts.begin(), parts.end(), isWorkedOut));
        QVERIFY(!isWorkedOut(page->modeButton(1)));
        page->show();
        QVERIFY(std::all_of(parts.begin(), parts.end(), isWorkedOut));
        QVERIFY(isWorkedOut(page->modeButton(1)));
        QCOMPARE(page->modeButton(1)->font().pixelSize(), 18);
    }

    void starts_with_all_demodulators_off()
    {
        ScopesPage page;
        for (int n = 1; n <= 3; ++n) {
            QCOMPARE(page.modeButton(n)->text(), QStringLiteral("Demod %1 Off").arg(n));
            QCOMPARE(page.storedMode(n), 0);
            QCOMPARE(page.scope(n)->plotType(), 1);
        }
    }

    void a_mode_of_the_main_unit_sets_button_plot_type_and_stored_mode_data()
    {
        QTest::addColumn<int>("message");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("plotType");
        QTest::addColumn<int>("stored");
        QTest::newRow("0") << 0 << "Demod %1 Off" << 1 << 0;
        QTest::newRow("1") << 1 << "Demod %1 Constellation" << 2 << 2;
        QTest::newRow("2") << 2 << "Demod %1 Eye Pattern" << 1 << 1;
        QTest::newRow("3") << 3 << "Demod %1 SDI" << 0 << 3;
    }

    void a_mode_of_the_main_unit_sets_button_plot_type_and_stored_mode()
    {
        QFETCH(int, message);
        QFETCH(QString, text);
        QFETCH(int, plotType);
        QFETCH(int, stored);
        ScopesPage page;
        for (int n = 1; n <= 3; ++n) {
            page.setMode(n, *ScopeMode::ofMessage(message == 3 ? 1 : 3)); // another one
            QVERIFY(page.storedMode(n) != stored);
            page.setMode(n, *ScopeMode::ofMessage(message));
            QCOMPARE(page.modeButton(n)->text(), text.arg(n));
            QCOMPARE(page.scope(n)->plotType(), plotType);
            QCOMPARE(page.storedMode(n), stored);
        }
    }

    void only_a_scope_that_is_on_waits()
    {
        ScopesPage page;
        auto* silence = page.scope(2)->findChild<QTimer*>(QStringLiteral("silence"));
        QVERIFY(!silence->isActive());
        for (const int message : {1, 2, 3}) {
            page.setMode(2, *ScopeMode::ofMessage(message));
            QVERIFY(silence->isActive());
            page.setMode(2, *ScopeMode::ofMessage(0));
            QVERIFY(!silence->isActive());
        }
    }

    void a_mode_that_is_repeated_does_not_keep_no_data_away()
    {
        ScopesPage page;
        Scope& scope = *page.scope(2);
        page.setMode(2, *ScopeMode::ofMessage(2));
        QVector<double> half(256, 0.5);
        scope.plotEyeConsData(half, half);
        QElapsedTimer elapsed;
        elapsed.start();
        // The main unit repeats "SM", sooner than the time runs out.
        while (!scope.stale() && elapsed.elapsed() < 5000) {
            QTest::qWait(100);
            page.setMode(2, *ScopeMode::ofMessage(elapsed.elapsed() > 1000 ? 1 : 2));
        }
        QVERIFY(scope.stale());
        page.setMode(2, *ScopeMode::ofMessage(1));
        page.setMode(2, *ScopeMode::ofMessage(2));
        QCOMPARE(scope.readout(), u"NO DATA"_s);
    }

    void off_empties_the_plots_of_the_scope()
    {
        ScopesPage page;
        QVector<double> half(256, 0.5);
        page.setMode(1, *ScopeMode::ofMessage(2));
        Scope& scope = *page.scope(1);
        page.resize(800, 430);
        page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page));
        auto* view = scope.findChild<PlotView*>(QStringLiteral("plotI"));
        const QImage empty = view->grab().toImage();
        scope.plotEyeConsData(half, half);
        QVERIFY(view->grab().toImage() != empty);
        page.setMode(1, *ScopeMode::ofMessage(0));
        QCOMPARE(view->grab().toImage(), empty);
    }

    void a_choice_of_the_operator_is_mapped_to_its_mode_data()
    {
        QTest::addColumn<int>("choice");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("plotType");
        QTest::addColumn<int>("stored");
        QTest::addColumn<QString>("command");
        QTest::newRow("0") << 0 << "Demod 2 Eye Pattern" << 1 << 1 << "D2:DSDM:2";
        QTest::newRow("1") << 1 << "Demod 2 Constellation" << 2 << 2 << "D2:DSDM:1";
        QTest::newRow("2") << 2 << "Demod 2 Off" << 1 << 0 << "D2:DSDM:0";
    }

    void a_choice_of_the_operator_is_mapped_to_its_mode()
    {
        QFETCH(int, choice);
        const auto mode = ScopeMode::ofChoice(choice);
        QVERIFY(mode.has_value());
        QTEST(mode->buttonText(2), "text");
        QTEST(mode->plotType, "plotType");
        QTEST(mode->stored, "stored");
        QTEST(mode->commandText(2), "command");
    }

    void other_choices_and_modes_do_not_exist()
    {
        for (const int number : {-1, 3, 4, 1000}) {
            QVERIFY(!ScopeMode::ofChoice(number));
        }
        for (const int number : {-1, 4, 1000}) {
            QVERIFY(!ScopeMode::ofMessage(number));
        }
        QCOMPARE(ScopeMode::choices(), QStringLiteral("0 Eye Pattern:1 Constellation:2 Off:"));
    }

    void all_parts_lie_inside_the_page_and_do_not_overlap()
    {
        ScopesPage page;
        page.setFixedSize(PageSize);
        page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page));
        const auto inPage = [&](const QWidget* widget) {
            return QRect(widget->mapTo(&page, QPoint()), widget->size());
        };
        for (int n = 1; n <= 3; ++n) {
            const QRect scope = inPage(page.scope(n));
            const QRect button = inPage(page.modeButton(n));
            QVERIFY(page.rect().contains(scope) && page.rect().contains(button));
            QVERIFY(scope.height() >= 300 && scope.width() >= 260);
            QVERIFY(button.height() >= 47);
            QVERIFY(button.top() > scope.bottom());
            if (n > 1) {
                QVERIFY(scope.left() > inPage(page.scope(n - 1)).right());
                QVERIFY(qAbs(scope.width() - page.scope(1)->width()) <= 1);
            }
            QVERIFY(inPage(page.magPhasePlot()).top() > button.bottom());
        }
        QVERIFY(page.rect().contains(inPage(page.magPhasePlot())));
    }

    void a_lent_scope_returns_to_its_grid()
    {
        ScopesPage page;
        page.setFixedSize(PageSize);
        page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page));
        const QRect before = page.scope(3)->geometry();
        QWidget other;
        auto* grid = new QGridLayout(&other);
        grid->addWidget(page.scope(3), 0, 0);
        QCOMPARE(page.scope(3)->window(), &other);
        page.scopeGrid(3)->addWidget(page.scope(3), 0, 0);
        page.scope(3)->show();
        QTRY_COMPARE(page.scope(3)->geometry(), before);
    }

    void a_deleted_scope_is_tolerated()
    {
        ScopesPage page;
        delete page.scope(2);
        QVERIFY(page.scope(2) == nullptr);
        page.setMode(2, *ScopeMode::ofMessage(1));
        QCOMPARE(page.storedMode(2), 2);
        QVERIFY(!page.anyPortOpen());
    }

    void reports_whether_any_port_is_open()
    {
        DeviceDirectory devices;
        {
            const ScopesPage page;
            QVERIFY(!page.anyPortOpen());
        }
        devices.add(QStringLiteral("ttyUSB2"));
        const ScopesPage page;
        QVERIFY(page.anyPortOpen());
    }
};

QN740_TEST_MAIN(tst_ScopesPage)
#include "tst_ScopesPage.moc"
