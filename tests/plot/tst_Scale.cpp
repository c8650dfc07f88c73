#include "plot/Scale.h"
#include "support/TestMain.h"

class tst_Scale : public QObject
{
    Q_OBJECT

private slots:
    void both_ends_lie_on_their_pixels()
    {
        const Scale levels(-120.0, 10.0, 199.0, 17.0);
        QCOMPARE(levels.pixel(-120.0), 199.0);
        QCOMPARE(levels.pixel(10.0), 17.0);
        QCOMPARE(levels.pixelsPerUnit(), -182.0 / 130.0);
    }

    void values_between_and_outside_are_mapped_linearly_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("pixel");
        QTest::newRow("a quarter") << 25.0 << 35.0;
        QTest::newRow("below the axis") << -10.0 << 0.0;
        QTest::newRow("above the axis") << 200.0 << 210.0;
    }

    void values_between_and_outside_are_mapped_linearly()
    {
        QFETCH(double, value);
        QFETCH(double, pixel);
        const Scale scale(0.0, 100.0, 10.0, 110.0);
        QCOMPARE(scale.pixel(value), pixel);
        QCOMPARE(scale.value(pixel), value);
    }

    void a_pixel_leads_back_to_its_value()
    {
        const Scale frequencies = Scale::aroundMiddle(2250.5, 46.67, 45.0, 604.0);
        for (double pixel = 45.0; pixel <= 604.0; pixel += 0.5) {
            const double back = frequencies.pixel(frequencies.value(pixel));
            QVERIFY2(std::abs(back - pixel) < 1e-6, qPrintable(QString::number(back - pixel)));
        }
    }

    void the_middle_is_exact()
    {
        // 0.1 and 70.3 have no exact binary form.
        const Scale scale = Scale::aroundMiddle(70.3, 0.1, 45.0, 604.0);
        QVERIFY(scale.pixel(70.3) == 324.5);
        QVERIFY(scale.value(324.5) == 70.3);
    }

    void a_scale_without_width_maps_everything_to_one_pixel()
    {
        const Scale none(5.0, 5.0, 10.0, 110.0);
        QCOMPARE(none.pixel(5.0), 10.0);
        QCOMPARE(none.pixel(1e9), 10.0);
        QCOMPARE(none.value(60.0), 5.0);
        QCOMPARE(Scale().pixel(3.0), 0.0);
    }
};

QN740_TEST_MAIN(tst_Scale)
#include "tst_Scale.moc"
