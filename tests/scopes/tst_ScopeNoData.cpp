// What a scope shows when its line brings nothing, and what it says about itself.
#include "plot/NoData.h"
#include "scopes/ScopeFixture.h"
#include "spectrum/Clock.h"
#include "support/TestMain.h"

#include <QElapsedTimer>

#include <functional>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(std::function<void(Scope&)>)

using namespace scopeFixture;

class tst_ScopeNoData : public QObject
{
    Q_OBJECT

private slots:
    void a_plot_that_gets_no_more_data_says_so_data()
    {
        QTest::addColumn<int>("plotType");
        QTest::addColumn<bool>("withQ");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("eye pattern") << int(Scope::EyePattern) << true << steady(16000, 16000);
        QTest::newRow("constellation") << int(Scope::Constellation) << false << steady(16000, 0);
        QTest::newRow("SDI") << int(Scope::Sdi) << false
                             << QByteArray("\x01\xff"
                                           "12345");
    }

    void a_plot_that_gets_no_more_data_says_so()
    {
        QFETCH(int, plotType);
        QFETCH(bool, withQ);
        QFETCH(QByteArray, bytes);
        ScopeFixture fixture;
        fixture.scope.setPlotType(plotType);
        auto* silence = fixture.scope.findChild<QTimer*>(u"silence"_s);
        QVERIFY(silence != nullptr && silence->isActive()); // It is on, and data are expected.
        const auto badges = [&] {
            return QStringList{plot(fixture.scope, "plotI")->content()->badge(),
                withQ ? plot(fixture.scope, "plotQ")->content()->badge() : u"NO DATA"_s};
        };
        const auto received = [&] { return fixture.blocks.size() + fixture.records.size(); };
        fixture.line.write(bytes);
        QTRY_COMPARE(received(), 1);
        QVERIFY(badges().first().isEmpty());
        QVERIFY(!fixture.scope.stale());
        QCOMPARE(testClock::intervals(silence), QList<int>{2000});
        testClock::expire(silence);
        QCOMPARE(badges(), (QStringList{u"NO DATA"_s, u"NO DATA"_s}));
        QVERIFY(fixture.scope.stale() && !silence->isActive());
        QCOMPARE(fixture.scope.readout(), u"NO DATA"_s);
        QVERIFY(plot(fixture.scope, "plotI")->isStale());
        const int painted = plot(fixture.scope, "plotI")->paintCount();
        QTRY_VERIFY(plot(fixture.scope, "plotI")->paintCount() > painted);

        fixture.line.write(bytes);
        QTRY_COMPARE(received(), 2);
        QVERIFY(badges().first().isEmpty());
        QVERIFY(silence->isActive());
        QVERIFY(!fixture.scope.stale() && !plot(fixture.scope, "plotI")->isStale());
        QCOMPARE(fixture.scope.readout(), QString());
        fixture.scope.clearPlots();
        QVERIFY(silence->isActive()); // Empty plots wait for data as well.
        QVERIFY(badges().first().isEmpty());
    }

    void no_data_stands_over_the_last_picture_which_is_dimmed()
    {
        ScopeFixture fixture;
        fixture.scope.setPlotType(Scope::Constellation);
        fixture.line.write(steady(16000, 0));
        QTRY_COMPARE(fixture.blocks.size(), 1);
        PlotView* view = plot(fixture.scope, "plotI");
        const QImage healthy = view->grab().toImage();
        testClock::expire(fixture.scope.findChild<QTimer*>(u"silence"_s));
        const QImage dead = view->grab().toImage();
        const QRect area = view->dataArea();
        int dimmed = 0;
        int letters = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                const QColor now = dead.pixelColor(x, y);
                const QColor wanted = noData::dimmed(healthy.pixelColor(x, y));
                dimmed += std::abs(now.lightness() - wanted.lightness()) <= 2 ? 1 : 0;
                letters += now == noData::Text ? 1 : 0;
            }
        }
        QVERIFY2(letters > 200, qPrintable(QString::number(letters)));
        QVERIFY2(
            dimmed > area.width() * area.height() * 3 / 4, qPrintable(QString::number(dimmed)));
        QCOMPARE(dead.copy(0, 0, area.left(), dead.height()),
            healthy.copy(0, 0, area.left(), healthy.height())); // the axis
    }

    void only_data_end_the_note_data()
    {
        using Change = std::function<void(Scope&)>;
        QTest::addColumn<Change>("change");
        QTest::newRow("told again that it is on")
            << Change([](Scope& scope) { scope.setOff(false); });
        QTest::newRow("another type and back") << Change([](Scope& scope) {
            scope.setPlotType(Scope::Sdi);
            scope.setPlotType(Scope::EyePattern);
        });
        QTest::newRow("the same type")
            << Change([](Scope& scope) { scope.setPlotType(Scope::EyePattern); });
        QTest::newRow("toggled") << Change([](Scope& scope) { scope.togglePlotType(); });
        QTest::newRow("touched") << Change([](Scope& scope) { scope.plotClickSlot(); });
        QTest::newRow("emptied") << Change([](Scope& scope) { scope.clearPlots(); });
        QTest::newRow("colour") << Change([](Scope& scope) { scope.setLineColor(3); });
        QTest::newRow("hidden and shown") << Change([](Scope& scope) {
            scope.setPlotsShown(false);
            scope.setPlotsShown(true);
        });
        QTest::newRow("one plot") << Change([](Scope& scope) { scope.setNumOfPlots(1); });
        QTest::newRow("not on the screen for a while") << Change([](Scope& scope) {
            scope.hide();
            scope.show();
        });
    }

    void only_data_end_the_note()
    {
        QFETCH(std::function<void(Scope&)>, change);
        ScopeFixture fixture;
        Scope& scope = fixture.scope;
        auto* silence = scope.findChild<QTimer*>(u"silence"_s);
        fixture.line.write(steady(16000, 16000));
        QTRY_COMPARE(fixture.blocks.size(), 1);
        QTest::qWait(50);
        change(scope);
        QVERIFY(silence->isActive());
        QVERIFY2(silence->remainingTime() <= 1960,
            qPrintable(QString::number(silence->remainingTime())));
        testClock::expire(silence);
        QVERIFY(scope.stale());
        change(scope);
        QVERIFY(scope.stale());
        QCOMPARE(scope.readout(), u"NO DATA"_s);
        QVERIFY(plot(scope, "plotI")->isStale());
        scope.setPlotType(Scope::EyePattern);
        fixture.line.write(steady(16000, 16000));
        QTRY_COMPARE(fixture.blocks.size(), 2);
        QVERIFY(!scope.stale());
        QCOMPARE(scope.readout(), QString());
    }

    void a_dead_line_is_noticed_after_two_seconds()
    {
        ScopeFixture fixture;
        fixture.line.write(steady(16000, 16000));
        QTRY_COMPARE(fixture.blocks.size(), 1);
        QElapsedTimer elapsed;
        elapsed.start();
        QTRY_VERIFY_WITH_TIMEOUT(fixture.scope.stale(), 4000);
        QVERIFY2(elapsed.elapsed() > 1900, qPrintable(QString::number(elapsed.elapsed())));
    }

    void the_read_out_of_a_scope_is_what_stands_on_it()
    {
        ScopeFixture fixture;
        Scope& scope = fixture.scope;
        QCOMPARE(scope.readout(), QString());
        fixture.line.write(steady(32767, 32767));
        QTRY_COMPARE(fixture.blocks.size(), 1);
        QCOMPARE(scope.readout(), u"CLIP"_s);
        scope.setPlotsShown(false);
        QCOMPARE(scope.readout(), u"Hidden by the main unit"_s);
        scope.setPlotsShown(true);
        fixture.line.write(steady(100, 32767)); // Q alone is clipped, and not shown any more
        QTRY_COMPARE(fixture.blocks.size(), 2);
        scope.setShowQPlot(false);
        QCOMPARE(scope.readout(), QString());
    }

    void a_scope_that_is_off_is_not_stale()
    {
        ScopeFixture fixture;
        auto* silence = fixture.scope.findChild<QTimer*>(u"silence"_s);
        testClock::expire(silence);
        QVERIFY(fixture.scope.stale());
        fixture.scope.setOff(true);
        QVERIFY(!fixture.scope.stale() && !silence->isActive());
        QCOMPARE(fixture.scope.readout(), QString());
        QVERIFY(!plot(fixture.scope, "plotI")->isStale());
        fixture.scope.setOff(false);
        QVERIFY(!fixture.scope.stale());
        QCOMPARE(testClock::intervals(silence), QList<int>{2000});
    }

    void a_scope_that_is_on_and_gets_nothing_says_so()
    {
        ScopeFixture fixture;
        fixture.scope.setOff(false);
        testClock::expire(fixture.scope.findChild<QTimer*>(u"silence"_s));
        QCOMPARE(plot(fixture.scope, "plotI")->content()->badge(), u"NO DATA"_s);
    }

    void a_scope_that_is_off_removes_the_block_that_was_under_way()
    {
        ScopeFixture fixture;
        auto* silence = fixture.scope.findChild<QTimer*>(u"silence"_s);
        fixture.scope.setPlotType(Scope::Constellation);
        fixture.scope.setOff(true);
        QVERIFY(!silence->isActive());
        fixture.line.write(steady(16000, 16000));
        QTRY_COMPARE(fixture.blocks.size(), 1);
        QVERIFY(!fixture.scope.constellation().plotted().isEmpty());
        testClock::expire(silence);
        QVERIFY(fixture.scope.constellation().plotted().isEmpty());
        QVERIFY(plot(fixture.scope, "plotI")->content()->badge().isEmpty());
        QVERIFY(!silence->isActive());
    }
};

QN740_TEST_MAIN(tst_ScopeNoData)
#include "tst_ScopeNoData.moc"
