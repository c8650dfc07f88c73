#include "spectrum/PeakSearch.h"
#include "support/TestMain.h"

#include <limits>

namespace {

// A line that is a parabola in dB, as a Gaussian window makes it.
QVector<float> line(double index, double level, int size = 41)
{
    QVector<float> levels;
    for (int i = 0; i < size; ++i) {
        const double bins = i - index;
        levels += static_cast<float>(std::max(-120.0, level - 3.0 * bins * bins));
    }
    return levels;
}

bool near(double one, double other)
{
    return std::abs(one - other) < 1e-4;
}

} // namespace

class tst_PeakSearch : public QObject
{
    Q_OBJECT

private slots:
    void a_peak_is_interpolated_data()
    {
        QTest::addColumn<double>("index");
        for (const double index : {20.0, 20.1, 20.25, 20.49, 19.6, 1.2, 38.9}) {
            QTest::addRow("at %g", index) << index;
        }
    }

    void a_peak_is_interpolated()
    {
        QFETCH(double, index);
        const peakSearch::Peak peak = peakSearch::highest(line(index, -33.7));
        QVERIFY(peak.valid);
        QVERIFY2(near(peak.index, index), QByteArray::number(peak.index));
        QVERIFY2(near(peak.level, -33.7), QByteArray::number(peak.level));
    }

    void the_highest_peak_of_special_levels_data()
    {
        QTest::addColumn<QVector<float>>("levels");
        QTest::addColumn<bool>("valid");
        QTest::addColumn<double>("index");
        QTest::addColumn<double>("level");
        using Levels = QVector<float>;
        QTest::newRow("none") << Levels{} << false << 0.0 << 0.0;
        QTest::newRow("one point") << Levels{-50} << true << 0.0 << -50.0;
        QTest::newRow("two points") << Levels{-50, -40} << true << 1.0 << -40.0;
        QTest::newRow("two equal points") << Levels{-50, -50} << true << 0.5 << -50.0;
        QTest::newRow("all equal") << Levels(100, -120.0F) << true << 49.5 << -120.0;
        QTest::newRow("an equal pair on the left") << Levels{5, 5, 1} << true << 0.5 << 5.0;
        QTest::newRow("the first point") << Levels{5, 1, 0} << true << 0.0 << 5.0;
        QTest::newRow("between nothing at all")
            << Levels{-std::numeric_limits<float>::infinity(), -40, -50} << true << 1.0 << -40.0;
        QTest::newRow("three points") << Levels{-50, -40, -50} << true << 1.0 << -40.0;
        QTest::newRow("first point") << Levels{-40, -43, -50} << true << 0.0 << -40.0;
        QTest::newRow("last point") << Levels{-50, -43, -40} << true << 2.0 << -40.0;
        QTest::newRow("plateau of two") << Levels{-50, -40, -40, -44} << true << 1.5 << -40.0;
        QTest::newRow("plateau of three")
            << Levels{-50, -40, -40, -40, -70} << true << 2.0 << -40.0;
        QTest::newRow("plateau at the left end") << Levels{-40, -40, -50} << true << 0.5 << -40.0;
        QTest::newRow("plateau at the right end") << Levels{-50, -40, -40} << true << 1.5 << -40.0;
        QTest::newRow("overloaded") << Levels{7, 7.5, 7.5, 7.5, 7} << true << 2.0 << 7.5;
        QTest::newRow("the first of two")
            << Levels{-50, -40, -50, -40, -50} << true << 1.0 << -40.0;
    }

    void the_highest_peak_of_special_levels()
    {
        QFETCH(QVector<float>, levels);
        QFETCH(double, index);
        QFETCH(double, level);
        const peakSearch::Peak peak = peakSearch::highest(levels);
        QTEST(peak.valid, "valid");
        QCOMPARE(peak.index, index);
        QCOMPARE(peak.level, level);
    }

    void the_top_of_a_point_that_is_no_maximum_is_the_point()
    {
        const QVector<float> levels{-50, -40, -45, -44};
        QCOMPARE(peakSearch::at(levels, 2).index, 2.0);
        QCOMPARE(peakSearch::at(levels, 2).level, -45.0);
        QVERIFY(!peakSearch::at(levels, -1).valid);
        QVERIFY(!peakSearch::at(levels, 4).valid);
    }

    void infinite_levels_give_no_infinite_place()
    {
        constexpr float Lowest = -std::numeric_limits<float>::infinity();
        const peakSearch::Peak peak = peakSearch::highest({Lowest, -40, Lowest});
        QVERIFY(peak.valid && std::isfinite(peak.index) && std::isfinite(peak.level));
    }

    void next_peaks_walk_down_data()
    {
        QTest::addColumn<QVector<float>>("levels");
        QTest::addColumn<QVector<int>>("places");
        using Levels = QVector<float>;
        using Places = QVector<int>;
        QTest::newRow("three") << Levels{-90, -50, -90, -40, -90, -60, -90} << Places{3, 1, 5};
        QTest::newRow("a shoulder does not count")
            << Levels{-90, -40, -45, -44, -90, -60, -90} << Places{1, 5};
        QTest::newRow("just enough excursion")
            << Levels{-90, -40, -51, -45, -51, -90} << Places{1, 3};
        QTest::newRow("just too little excursion")
            << Levels{-90, -40, -50.9F, -45, -51, -90} << Places{1};
        QTest::newRow("equal peaks from left to right")
            << Levels{-90, -40, -90, -40, -90, -40, -90} << Places{1, 3, 5};
        QTest::newRow("at both ends") << Levels{-50, -90, -40, -90, -60} << Places{2, 0, 4};
        QTest::newRow("plateaus") << Levels{-90, -40, -40, -40, -90, -50, -50, -50, -90}
                                  << Places{2, 6};
        QTest::newRow("flat") << Levels(20, -120.0F) << Places{10};
        QTest::newRow("one point") << Levels{-50} << Places{0};
    }

    void next_peaks_walk_down()
    {
        QFETCH(QVector<float>, levels);
        QVector<int> places;
        for (auto peak = peakSearch::highest(levels); peak.valid && places.size() < 20;
             peak = peakSearch::next(levels, places.last())) {
            places += static_cast<int>(std::lround(peak.index));
        }
        QTEST(places, "places");
    }

    void the_next_peak_is_below_a_point_that_is_no_peak()
    {
        const QVector<float> levels{-90, -50, -90, -40, -90, -60, -90};
        QCOMPARE(peakSearch::next(levels, 2).valid, false); // nothing is lower
        QCOMPARE(peakSearch::next({-90, -50, -55, -40, -90, -60, -90}, 2).index, 5.0);
    }

    void next_peaks_are_interpolated()
    {
        QVector<float> levels = line(10.3, -40.0, 60);
        const QVector<float> other = line(40.7, -60.0, 60);
        std::transform(levels.cbegin(), levels.cend(), other.cbegin(), levels.begin(),
            [](float a, float b) { return std::max(a, b); });
        const peakSearch::Peak peak = peakSearch::next(levels, 10);
        QVERIFY(near(peak.index, 40.7) && near(peak.level, -60.0));
    }

    void below_no_point_there_is_no_next_peak()
    {
        QVERIFY(!peakSearch::next({}, 0).valid);
        QVERIFY(!peakSearch::next({-50, -40}, 2).valid);
        QVERIFY(!peakSearch::next({-50, -40}, -1).valid);
    }

    void what_lies_behind_the_last_point_does_not_count()
    {
        QVector<float> levels{-50, -40, -40, -40};
        levels.removeLast(); // which leaves it where it is in memory
        QCOMPARE(peakSearch::highest(levels).index, 1.5);
        levels = {-50, -40, -45};
        levels.removeLast();
        QCOMPARE(peakSearch::highest(levels).index, 1.0);
    }

    void a_point_that_is_no_peak_is_taken_as_it_is()
    {
        const QVector<float> levels{-50, -45, -40, -45, -43};
        for (const int index : {1, 3}) {
            const peakSearch::Peak point = peakSearch::at(levels, index);
            QVERIFY(point.valid);
            QCOMPARE(point.index, double(index));
            QCOMPARE(point.level, -45.0);
        }
        const QVector<float> slope{-46, -45.5, -45, -45.5, -46};
        for (const int index : {1, 3}) {
            QCOMPARE(peakSearch::at(slope, index).index, double(index));
            QCOMPARE(peakSearch::at(slope, index).level, -45.5);
        }
    }
};

QN740_TEST_MAIN(tst_PeakSearch)
#include "tst_PeakSearch.moc"
