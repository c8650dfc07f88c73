#include "spectrum/ChartScale.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_ChartScale : public QObject
{
    Q_OBJECT

private slots:
    void a_new_chart_shows_all_that_a_card_can_send()
    {
        const ChartScale scale;
        QCOMPARE(scale.reference(), 10);
        QCOMPARE(scale.lowest(), -120);
        QCOMPARE(scale.perDivision(), 10);
        QVERIFY(scale.isDefault());
        QCOMPARE(scale.text(), QString());
    }

    void the_reference_is_the_top_and_thirteen_divisions_lie_below_data()
    {
        QTest::addColumn<double>("reference");
        QTest::addColumn<int>("perDivision");
        QTest::addColumn<int>("lowest");
        QTest::addColumn<QString>("text");
        QTest::newRow("10 dB") << -20.0 << 10 << -150 << u"Ref -20 dB 10 dB/div"_s;
        QTest::newRow("5 dB") << -20.0 << 5 << -85 << u"Ref -20 dB 5 dB/div"_s;
        QTest::newRow("2 dB") << 0.0 << 2 << -26 << u"Ref 0 dB 2 dB/div"_s;
        QTest::newRow("1 dB") << -33.0 << 1 << -46 << u"Ref -33 dB 1 dB/div"_s;
        QTest::newRow("the top of a new chart") << 10.0 << 5 << -55 << u"Ref 10 dB 5 dB/div"_s;
        QTest::newRow("as on a new chart") << 10.0 << 10 << -120 << QString();
        QTest::newRow("a fraction of a decibel") << -20.4 << 5 << -85 << u"Ref -20 dB 5 dB/div"_s;
        QTest::newRow("the lowest reference") << -500.0 << 1 << -123 << u"Ref -110 dB 1 dB/div"_s;
        QTest::newRow("the highest reference") << 500.0 << 1 << 17 << u"Ref 30 dB 1 dB/div"_s;
    }

    void the_reference_is_the_top_and_thirteen_divisions_lie_below()
    {
        QFETCH(double, reference);
        QFETCH(int, perDivision);
        ChartScale scale;
        scale.set(reference, perDivision);
        QTEST(scale.lowest(), "lowest");
        QCOMPARE(scale.reference(), scale.lowest() + 13 * perDivision);
        QTEST(scale.text(), "text");
        QCOMPARE(scale.isDefault(), scale.text().isEmpty());
    }

    void what_is_no_scale_changes_nothing_data()
    {
        QTest::addColumn<double>("reference");
        QTest::addColumn<int>("perDivision");
        QTest::newRow("no number") << qQNaN() << 5;
        QTest::newRow("infinite") << qInf() << 5;
        QTest::newRow("no step") << 0.0 << 0;
        QTest::newRow("negative step") << 0.0 << -5;
        QTest::newRow("unknown step") << 0.0 << 3;
    }

    void what_is_no_scale_changes_nothing()
    {
        QFETCH(double, reference);
        QFETCH(int, perDivision);
        ChartScale scale;
        QVERIFY(scale.set(-20, 5));
        QVERIFY(!scale.set(reference, perDivision));
        QCOMPARE(scale.reference(), -20);
        QCOMPARE(scale.perDivision(), 5);
        QVERIFY(!scale.set(-20, 5)); // nor the same again
    }

    void a_fitted_scale_is_the_finest_that_shows_floor_and_peak_data()
    {
        QTest::addColumn<double>("floor");
        QTest::addColumn<double>("peak");
        QTest::addColumn<int>("perDivision");
        QTest::addColumn<int>("reference");
        QTest::newRow("a strong carrier") << -98.0 << -20.0 << 10 << -10;
        QTest::newRow("the whole range of a card") << -120.0 << 7.5 << 10 << 10;
        QTest::newRow("50 dB") << -100.0 << -50.0 << 5 << -45;
        QTest::newRow("a little more than 50 dB") << -100.5 << -50.0 << 10 << -40;
        QTest::newRow("20 dB") << -90.0 << -70.0 << 2 << -68;
        QTest::newRow("10 dB") << -90.0 << -80.0 << 1 << -79;
        QTest::newRow("a flat line") << -90.0 << -90.0 << 1 << -89;
        QTest::newRow("between two divisions") << -100.0 << -52.0 << 5 << -45;
    }

    void a_fitted_scale_is_the_finest_that_shows_floor_and_peak()
    {
        QFETCH(double, floor);
        QFETCH(double, peak);
        const ChartScale scale = ChartScale::fitted(floor, peak);
        QTEST(scale.perDivision(), "perDivision");
        QTEST(scale.reference(), "reference");
        QVERIFY(scale.reference() >= peak && floor >= scale.lowest());
    }

    // Every pair of levels that a card can send.
    void a_fitted_scale_leaves_room_above_and_below()
    {
        for (double floor = -120.0; floor <= 7.5; floor += 1.5) {
            for (double peak = floor; peak <= 7.5; peak += 1.5) {
                const ChartScale scale = ChartScale::fitted(floor, peak);
                // Nothing lies above 10 dB, and the whole range of a card fills 128 of 130 dB.
                const double above = scale.reference() == 10 ? 2.5 : 0.5 * scale.perDivision();
                const double below = peak - floor <= 100.0 ? 1.5 * scale.perDivision() : 0.0;
                QVERIFY2(scale.reference() - peak >= above && floor - scale.lowest() >= below,
                    qPrintable(u"%1 to %2"_s.arg(floor).arg(peak)));
            }
        }
    }

    void ticks_leave_room_for_their_texts_data()
    {
        QTest::addColumn<int>("perDivision");
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("step");
        QTest::newRow("three charts") << 10 << 143 << 40;
        QTest::newRow("two charts") << 10 << 213 << 20;
        QTest::newRow("one chart") << 10 << 430 << 10;
        QTest::newRow("three charts, 1 dB") << 1 << 143 << 4;
        QTest::newRow("one chart, 2 dB") << 2 << 430 << 2;
        QTest::newRow("the highest of the low ones") << 5 << 169 << 20;
        QTest::newRow("the lowest of the middle ones") << 5 << 170 << 10;
        QTest::newRow("the highest of the middle ones") << 5 << 329 << 10;
        QTest::newRow("the lowest of the high ones") << 5 << 330 << 5;
    }

    void ticks_leave_room_for_their_texts()
    {
        QFETCH(int, perDivision);
        QFETCH(int, height);
        ChartScale scale;
        scale.set(0, perDivision);
        QTEST(scale.tickStep(height), "step");
    }

    void rows_run_from_the_bottom_to_the_top_of_the_plot()
    {
        ChartScale scale;
        scale.set(-20, 5);
        const QRect plot(30, 20, 200, 131);
        const Scale rows = scale.rows(plot);
        QCOMPARE(rows.pixel(-20.0), 20.0);
        QCOMPARE(rows.pixel(-85.0), 150.0);
        QCOMPARE(rows.pixel(-52.5), 85.0);
    }
};

QN740_TEST_MAIN(tst_ChartScale)
#include "tst_ChartScale.moc"
