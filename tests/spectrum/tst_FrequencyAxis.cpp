#include "spectrum/FrequencyAxis.h"
#include "support/TestMain.h"

class tst_FrequencyAxis : public QObject
{
    Q_OBJECT

private slots:
    void starts_with_the_narrowest_span_around_the_intermediate_frequency()
    {
        const FrequencyAxis axis;
        QCOMPARE(axis.centre(), 70.0);
        QCOMPARE(axis.width(), spanTable().first().spanMHz);
        QCOMPARE(axis.ticks(), spanTable().first().ticks);
    }

    void the_ticks_move_with_the_centre()
    {
        FrequencyAxis axis;
        axis.setSpan(spanTable().at(6));
        QVERIFY(axis.setCentre(2250.5));
        QCOMPARE(axis.ticks(), QVector<double>({2240.5, 2245.5, 2250.5, 2255.5, 2260.5}));
    }

    void a_centre_that_is_no_frequency_is_ignored_data()
    {
        QTest::addColumn<double>("centre");
        QTest::newRow("zero") << 0.0;
        QTest::newRow("negative") << -70.0;
        QTest::newRow("not a number") << qQNaN();
        QTest::newRow("infinite") << qInf();
        QTest::newRow("above the highest") << 1.0000001e6;
        QTest::newRow("the same as before") << 70.0;
    }

    void a_centre_that_is_no_frequency_is_ignored()
    {
        QFETCH(double, centre);
        FrequencyAxis axis;
        QVERIFY(!axis.setCentre(centre));
        QCOMPARE(axis.centre(), 70.0);
    }

    void the_highest_centre_is_taken()
    {
        FrequencyAxis axis;
        QVERIFY(axis.setCentre(FrequencyAxis::MaxMHz));
        QCOMPARE(axis.centre(), 1e6);
    }

    void an_offset_up_to_half_the_width_lies_on_the_axis()
    {
        FrequencyAxis axis;
        axis.setSpan(spanTable().at(9));
        const double half = axis.width() / 2;
        QVERIFY(axis.covers(0.0));
        QVERIFY(axis.covers(half));
        QVERIFY(axis.covers(-half));
        QVERIFY(!axis.covers(half + 0.001));
        QVERIFY(!axis.covers(-half - 0.001));
        QVERIFY(!axis.covers(qQNaN()));
    }

    void the_points_are_bins_that_share_the_width_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("size");
        QTest::addColumn<double>("part"); // of the width, from the left
        QTest::newRow("first") << 0 << 512 << 0.0;
        QTest::newRow("last") << 511 << 512 << 511.0 / 512.0;
        QTest::newRow("a quarter") << 100 << 400 << 0.25;
        QTest::newRow("middle") << 53 << 106 << 0.5;
        QTest::newRow("middle of an odd number") << 50 << 101 << 50.0 / 101.0;
        QTest::newRow("one point") << 0 << 1 << 0.0;
    }

    void the_points_are_bins_that_share_the_width()
    {
        QFETCH(int, index);
        QFETCH(int, size);
        QFETCH(double, part);
        FrequencyAxis axis;
        axis.setSpan(spanTable().at(9));
        const double frequency = 70.0 + (part - 0.5) * axis.width();
        QCOMPARE(axis.frequencyAt(index, size), frequency);
        QCOMPARE(axis.indexAt(frequency, size), qsizetype(index));
    }

    void places_between_two_points_have_frequencies_too()
    {
        FrequencyAxis axis;
        axis.setSpan(spanTable().at(9));
        QVERIFY(axis.frequencyBetween(100.0, 400) == axis.frequencyAt(100, 400));
        const double between = axis.frequencyBetween(100.25, 400);
        QVERIFY(std::abs(between - axis.frequencyAt(100, 400) - axis.width() / 1600.0) < 1e-9);
        QCOMPARE(axis.frequencyBetween(3.0, 0), 70.0);
    }

    void a_bin_is_a_part_of_the_width()
    {
        FrequencyAxis axis;
        axis.setSpan(spanTable().at(9));
        QCOMPARE(axis.binWidth(958), axis.width() / 958.0);
        QCOMPARE(axis.binWidth(0), 0.0);
    }

    void a_frequency_has_decimals_to_a_tenth_of_a_bin_data()
    {
        QTest::addColumn<int>("span");
        QTest::addColumn<int>("points");
        QTest::addColumn<int>("decimals");
        QTest::newRow("1 MHz of a K7150, 11.3 kHz") << 0 << 106 << 3;
        QTest::newRow("40 MHz of a K7150, 45.2 kHz") << 9 << 958 << 3;
        QTest::newRow("1 MHz in 1024 points, 1.17 kHz") << 0 << 1024 << 4;
        QTest::newRow("1 MHz in 9999 points, 0.12 kHz") << 0 << 9999 << 5;
        QTest::newRow("40 MHz in 100 points, 433 kHz") << 9 << 100 << 2;
        QTest::newRow("40 MHz in one point") << 9 << 1 << 0;
        QTest::newRow("no points") << 9 << 0 << 3;
    }

    void a_frequency_has_decimals_to_a_tenth_of_a_bin()
    {
        QFETCH(int, span);
        QFETCH(int, points);
        FrequencyAxis axis;
        axis.setSpan(spanTable().at(span));
        QTEST(axis.decimals(points), "decimals");
    }

    void the_nominal_width_is_what_the_label_says_data()
    {
        QTest::addColumn<int>("span");
        for (int span = 0; span < spanTable().size(); ++span) {
            QTest::newRow(spanTable().at(span).label) << span;
        }
    }

    void the_nominal_width_is_what_the_label_says()
    {
        QFETCH(int, span);
        FrequencyAxis axis;
        axis.setSpan(spanTable().at(span));
        const QString label = QString::fromLatin1(spanTable().at(span).label);
        QCOMPARE(axis.nominalWidth(), label.section(QLatin1Char(' '), 0, 0).toDouble());
        axis.setSpan(SpanInfo());
        QCOMPARE(axis.nominalWidth(), 0.0);
    }

    void a_frequency_between_two_points_belongs_to_the_nearer_one()
    {
        FrequencyAxis axis;
        const double step = axis.width() / 100;
        QCOMPARE(axis.indexAt(70.0 + 0.4 * step, 100), qsizetype(50));
        QCOMPARE(axis.indexAt(70.0 + 0.6 * step, 100), qsizetype(51));
    }

    // 2^fftParam - code is the number of bins that a K7150 keeps of each span.
    void the_bins_of_a_k7150_are_a_sampling_rate_over_a_power_of_two_data()
    {
        QTest::addColumn<int>("span");
        QTest::addColumn<int>("bins");
        const QVector<int> kept{106, 284, 474, 354, 474, 710, 474, 592, 710, 958};
        for (int span = 0; span < kept.size(); ++span) {
            QTest::newRow(spanTable().at(span).label) << span << kept.at(span);
        }
    }

    void the_bins_of_a_k7150_are_a_sampling_rate_over_a_power_of_two()
    {
        QFETCH(int, span);
        QFETCH(int, bins);
        const SpanInfo& info = spanTable().at(span);
        const int points = 1 << QByteArray(info.fftParam).toInt();
        QCOMPARE(points - QByteArray(info.code).toInt(), bins);
        FrequencyAxis axis;
        axis.setSpan(info);
        const double bin = axis.frequencyAt(1, bins) - axis.frequencyAt(0, bins);
        const double rate = bin * points;
        QVERIFY2(std::abs(rate - 46.33) < 0.01 || std::abs(rate - 46.67) < 0.01,
            qPrintable(QString::number(rate)));
        QCOMPARE(axis.frequencyAt(bins / 2, bins), 70.0);
    }

    void a_frequency_outside_belongs_to_the_outermost_point()
    {
        const FrequencyAxis axis;
        QCOMPARE(axis.indexAt(1.0, 101), qsizetype(0));
        QCOMPARE(axis.indexAt(1000.0, 101), qsizetype(100));
        QCOMPARE(axis.indexAt(70.0, 0), qsizetype(0));
    }

    void an_axis_without_width_has_all_points_at_its_centre()
    {
        FrequencyAxis axis;
        axis.setSpan(SpanInfo());
        QCOMPARE(axis.indexAt(70.0, 101), qsizetype(50));
        QCOMPARE(axis.indexAt(70.0, 0), qsizetype(0));
        QCOMPARE(axis.indexAt(71.0, 101), qsizetype(100));
        QCOMPARE(axis.frequencyAt(3, 101), 70.0);
    }

    void the_scale_spans_the_columns_and_is_exact_in_the_middle()
    {
        FrequencyAxis axis;
        axis.setCentre(2250.3);
        const Scale scale = axis.scale(45, 604);
        QVERIFY(std::abs(scale.pixel(2250.3 - axis.width() / 2) - 45.0) < 1e-6);
        QVERIFY(std::abs(scale.pixel(2250.3 + axis.width() / 2) - 604.0) < 1e-6);
        QVERIFY(scale.pixel(2250.3) == 324.5);
    }
};

QN740_TEST_MAIN(tst_FrequencyAxis)
#include "tst_FrequencyAxis.moc"
