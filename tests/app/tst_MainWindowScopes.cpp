// These tests check the scopes in the whole panel: their data, their page, and the scope on the PAX
// main menu.
#include "app/ScopesFixture.h"
#include "scopes/PlotView.h"
#include "support/TestMain.h"

#include <QLoggingCategory>
#include <QSignalSpy>

class tst_MainWindowScopes : public ScopesFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    void hidden_plots_stay_hidden_when_the_mode_changes()
    {
        clickOnScopes();
        const auto visible = [this](int demodulator, const char* plot) {
            return m_window->rooms()
                .scopes->scope(demodulator)
                ->findChild<PlotView*>(QLatin1String(plot))
                ->isVisible();
        };
        QVERIFY(visible(2, "plotI") && visible(2, "plotQ"));
        send("SQ,2,0");
        for (const char* mode : {"SM,2,1", "SM,2,3", "SM,2,0", "SM,2,2"}) {
            send(mode);
            QVERIFY2(!visible(2, "plotI") && !visible(2, "plotQ"), mode);
            QVERIFY(visible(1, "plotI") && visible(3, "plotQ"));
        }
        send("SQ,2,1");
        QVERIFY(visible(2, "plotI") && visible(2, "plotQ"));
    }

    void the_data_of_each_demodulator_reach_its_own_slot_only()
    {
        static QStringList noted;
        noted.clear();
        QLoggingCategory::setFilterRules(QStringLiteral("qn740.scopes.debug=true"));
        const QtMessageHandler before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { noted += text; });
        const auto atEnd = qScopeGuard([before] {
            qInstallMessageHandler(before);
            QLoggingCategory::setFilterRules(QString());
        });
        for (const int demodulator : {2, 1, 3}) {
            QVERIFY(m_scopeLines[demodulator]->write(steady(demodulator, 0)));
            QTRY_COMPARE(noted.size(), 1);
            QCOMPARE(noted.takeFirst(),
                QStringLiteral("Demod %1 block of 256 I and 256 Q samples").arg(demodulator));
        }
        for (const int demodulator : {3, 1, 2}) {
            m_window->process_SM({QString::number(demodulator), QStringLiteral("3")});
            QVERIFY(m_scopeLines[demodulator]->write(QByteArray("\x00\xff"
                                                                "abcde",
                7)));
            QTRY_COMPARE(noted.size(), 1);
            QCOMPARE(noted.takeFirst(),
                QStringLiteral("Demod %1 SDI record \"61 62 63 64 65\"").arg(demodulator));
        }
    }

    void a_scope_is_available_while_a_port_is_open()
    {
        QVERIFY(m_window->scope_available());
        m_window.reset();
        m_devices = std::make_unique<DeviceDirectory>();
        m_window = std::make_unique<MainWindow>();
        QVERIFY(!m_window->scope_available());
    }

    void the_colour_of_a_trace_is_set_on_its_scope_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<int>("scope"); // 0: none
        QTest::newRow("trace 1") << QByteArray("LC,2,1") << 1;
        QTest::newRow("trace 2") << QByteArray("LC,2,2") << 2;
        QTest::newRow("trace 3") << QByteArray("LC,2,3") << 3;
        // These messages set only the colour of the spectrum, or nothing.
        for (const char* none : {"LC,2", "LC,2,0", "LC,2,4", "LC,2,-1", "LC,2,-2147483648",
                 "LC,2,2147483647", "LC,2,x", "LC,x,1", "LC,8,1", "LC,-1,2", "LC"}) {
            QTest::newRow(none) << QByteArray(none) << 0;
        }
    }

    void the_colour_of_a_trace_is_set_on_its_scope()
    {
        QFETCH(QByteArray, message);
        QFETCH(int, scope);
        const QColor red(255, 0, 0);
        const QColor blue(0x60, 0x90, 0xff);
        send(message);
        for (const int demodulator : {1, 2, 3}) {
            QCOMPARE(m_window->rooms().scopes->scope(demodulator)->lineColor(),
                demodulator == scope ? blue : red);
        }
    }

    void a_colour_for_a_scope_that_does_not_exist_changes_nothing()
    {
        for (const int none : {-1, 3, 1000}) {
            m_window->setScopeLineColor(6, none);
        }
        for (const int demodulator : {1, 2, 3}) {
            QCOMPARE(m_window->rooms().scopes->scope(demodulator)->lineColor(), QColor(255, 0, 0));
        }
    }

    void plots_are_painted_only_while_the_page_is_shown()
    {
        auto* plot =
            m_window->rooms().scopes->scope(1)->findChild<PlotView*>(QStringLiteral("plotI"));
        QSignalSpy blocks(m_window->rooms().scopes->scope(1), &Scope::rcv_eye_msg);
        QVERIFY(m_scopeLines[1]->write(steady(1, 1) + steady(2, 2)));
        QTRY_COMPARE(blocks.size(), 2);
        QTest::qWait(100); // longer than the pause before a paint
        QCOMPARE(plot->paintCount(), 0);
        clickOnScopes();
        QTRY_VERIFY(plot->paintCount() > 0);
        const int shown = plot->paintCount();
        QVERIFY(m_scopeLines[1]->write(steady(1, 1)));
        QTRY_VERIFY(plot->paintCount() > shown);
    }

    void the_PAX_main_menu_borrows_the_scope_of_the_combiner_and_returns_it()
    {
        Scope* scope = m_window->rooms().scopes->scope(3);
        QWidget* home = scope->parentWidget();
        send("AK,Tuner CH1,1,One,0,,0,,0,0,0,1");
        send("MS,Pax,Tuner CH1,1");
        send("PAX,1");
        QVERIFY(scope->disableFixIsize());
        QTRY_VERIFY(scope->isVisible());
        QCOMPARE(m_window->rooms().stack->currentIndex(), m_window->paxMenuIndex());
        QVERIFY(m_window->rooms().stack->currentWidget()->isAncestorOf(scope));
        QSignalSpy blocks(scope, &Scope::rcv_eye_msg);
        QVERIFY(m_scopeLines[3]->write(steady(16384, 16384)));
        QTRY_COMPARE(blocks.size(), 1);
        const QRect place(scope->mapTo(m_window.get(), QPoint()), scope->size());
        QVERIFY(m_window->rect().contains(place));
        send("PAX,0");
        QVERIFY(!scope->disableFixIsize());
        QCOMPARE(scope->parentWidget(), home);
        // Returning it again changes nothing.
        send("PAX,0");
        QCOMPARE(scope->parentWidget(), home);
        clickOnScopes();
        QTRY_VERIFY(scope->isVisible());
    }

    void the_scope_outlives_the_PAX_main_menu()
    {
        const QPointer<Scope> scope = m_window->rooms().scopes->scope(3);
        send("AK,Tuner CH1,1,One,0,,0,,0,0,0,1");
        send("MS,Pax,Tuner CH1,1");
        send("PAX,1");
        send("CLEAR");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(scope != nullptr);
        QVERIFY(m_window->rooms().scopes->isAncestorOf(scope));
    }

    void nothing_lies_outside_the_screen()
    {
        clickOnScopes();
        const QRect screen(0, 0, 800, 480);
        QCOMPARE(m_window->size(), screen.size());
        for (QWidget* widget : m_window->rooms().scopes->findChildren<QWidget*>()) {
            if (widget->isVisible()) {
                const QRect place(widget->mapTo(m_window.get(), QPoint()), widget->size());
                QVERIFY2(screen.contains(place), qPrintable(widget->objectName()));
            }
        }
    }
};

QN740_TEST_MAIN(tst_MainWindowScopes)
#include "tst_MainWindowScopes.moc"
