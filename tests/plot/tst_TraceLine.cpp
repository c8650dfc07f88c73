#include "plot/TraceLine.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

namespace {

const QRect Area(10, 20, 101, 131);            // columns 10 to 110, rows 20 to 150
const Scale Levels(-120.0, 10.0, 150.0, 20.0); // one pixel per dB, upwards

QPolygonF layOut(const QVector<float>& values, const QRect& area = Area)
{
    QPolygonF line;
    traceLine::layOut(values, area, Levels, line);
    return line;
}

} // namespace

class tst_TraceLine : public QObject
{
    Q_OBJECT

private slots:
    void the_points_are_bins_that_share_the_width()
    {
        QCOMPARE(layOut({-120.0F, -60.5F, 10.0F, 10.0F}),
            QPolygonF({QPointF(10, 150), QPointF(35, 90.5), QPointF(60, 20), QPointF(85, 20)}));
    }

    void a_reduced_peak_stands_in_the_column_nearest_to_its_bin_data()
    {
        QTest::addColumn<int>("peak");
        QTest::addColumn<int>("count");
        for (const int count : {203, 512, 1010, 4096}) {
            for (const int peak : {0, 1, count / 3, count / 2, count - 2, count - 1}) {
                QTest::addRow("%d of %d", peak, count) << peak << count;
            }
        }
    }

    void a_reduced_peak_stands_in_the_column_nearest_to_its_bin()
    {
        QFETCH(int, peak);
        QFETCH(int, count);
        QVector<float> values(count, -100.0F);
        values[peak] = 0.0F;
        const double wanted = 10.0 + 100.0 * peak / count;
        int found = 0;
        for (const QPointF& point : layOut(values)) {
            if (point.y() == Levels.pixel(0.0)) {
                ++found;
                QVERIFY2(std::abs(point.x() - wanted) <= 0.5,
                    qPrintable(u"%1 for %2"_s.arg(point.x()).arg(wanted)));
            }
        }
        QVERIFY(found >= 1); // Both points of a column may be the same.
    }

    void one_value_is_a_line_across_the_area()
    {
        QCOMPARE(layOut({-20.0F}), QPolygonF({QPointF(10, 50), QPointF(110, 50)}));
    }

    void two_values_per_column_are_all_kept()
    {
        QVector<float> values(202, -100.0F);
        QCOMPARE(layOut(values).size(), 202);
        values.append(-100.0F);
        QCOMPARE(layOut(values).size(), 202); // two points a column
    }

    void more_values_keep_the_lowest_and_the_highest_of_each_column_in_their_order()
    {
        QVector<float> values(1010, -100.0F); // ten values a column
        values[503] = -10.0F;                 // column 50: the highest before the lowest
        values[507] = -115.0F;
        values[512] = -115.0F; // column 51: the lowest before the highest
        values[518] = -10.0F;
        const QPolygonF line = layOut(values);
        QCOMPARE(line.size(), 202);
        QCOMPARE(line.at(100), QPointF(60, 40));
        QCOMPARE(line.at(101), QPointF(60, 145));
        QCOMPARE(line.at(102), QPointF(61, 145));
        QCOMPARE(line.at(103), QPointF(61, 40));
        QCOMPARE(line.at(104), QPointF(62, 130));
        QCOMPARE(line.last().x(), 110.0);
    }

    void no_values_or_no_area_make_no_line()
    {
        QPolygonF line({QPointF(1, 1)});
        traceLine::layOut({}, Area, Levels, line);
        QVERIFY(line.isEmpty());
        QVERIFY(layOut({-20.0F, -30.0F}, QRect()).isEmpty());
        QVERIFY(layOut({-20.0F}, QRect(0, 0, 0, 50)).isEmpty());
    }

    void a_line_that_is_used_again_holds_the_new_points_only()
    {
        QPolygonF line;
        traceLine::layOut(QVector<float>(5000, -50.0F), Area, Levels, line);
        traceLine::layOut({-120.0F, 10.0F}, Area, Levels, line);
        QCOMPARE(line, QPolygonF({QPointF(10, 150), QPointF(60, 20)}));
    }

    void any_size_of_area_can_be_laid_out()
    {
        for (const int width : {1, 2, 3, 616}) {
            for (const int count : {1, 2, 3, 512, 9999}) {
                const QRect area(0, 0, width, 100);
                const QPolygonF line = layOut(QVector<float>(count, -50.0F), area);
                QVERIFY(line.size() <= std::max(2, 2 * width));
                QVERIFY(area.left() <= line.first().x() && line.last().x() <= area.right());
            }
        }
    }
};

QN740_TEST_MAIN(tst_TraceLine)
#include "tst_TraceLine.moc"
