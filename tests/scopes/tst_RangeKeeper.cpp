#include "scopes/RangeKeeper.h"
#include "support/TestMain.h"

#include <limits>

class tst_RangeKeeper : public QObject
{
    Q_OBJECT

private slots:
    void starts_at_full_scale() { QCOMPARE(RangeKeeper().limit(), 1.0); }

    void fits_the_signal_in_steps_data()
    {
        QTest::addColumn<double>("peak");
        QTest::addColumn<double>("limit");
        QTest::newRow("full scale") << 1.0 << 1.0;
        QTest::newRow("0.8 has no room in 0.8") << 0.8 << 1.0;
        QTest::newRow("0.69") << 0.69 << 0.8;
        QTest::newRow("0.5") << 0.5 << 0.6;
        QTest::newRow("0.34") << 0.34 << 0.4;
        QTest::newRow("0.25") << 0.25 << 0.3;
        QTest::newRow("0.16") << 0.16 << 0.2;
        QTest::newRow("0.11") << 0.11 << 0.15;
        QTest::newRow("0.085") << 0.085 << 0.1;
        QTest::newRow("0.05") << 0.05 << 0.06;
        QTest::newRow("0.0000001") << 1e-7 << 0.002;
    }

    void fits_the_signal_in_steps()
    {
        QFETCH(double, peak);
        QFETCH(double, limit);
        RangeKeeper range;
        for (int k = 0; k < RangeKeeper::ShrinkAfter; ++k) {
            range.addPeak(peak);
        }
        QCOMPARE(range.limit(), limit);
    }

    void grows_immediately()
    {
        RangeKeeper range;
        for (int k = 0; k < RangeKeeper::ShrinkAfter; ++k) {
            range.addPeak(0.05);
        }
        QCOMPARE(range.limit(), 0.06);
        range.addPeak(0.9);
        QCOMPARE(range.limit(), 1.0);
    }

    void shrinks_only_if_it_may()
    {
        RangeKeeper range;
        range.setMayShrink(false);
        for (int k = 0; k < 10 * RangeKeeper::ShrinkAfter; ++k) {
            range.addPeak(0.05);
            QCOMPARE(range.limit(), 1.0);
        }
        range.fitAnew();
        range.addPeak(0.05);
        QCOMPARE(range.limit(), 0.06);
        range.addPeak(0.5); // it may grow
        QCOMPARE(range.limit(), 0.6);
        range.addPeak(0.05);
        QCOMPARE(range.limit(), 0.6);
    }

    void does_not_jump_with_an_intermittent_signal()
    {
        RangeKeeper range;
        for (int k = 0; k < 200; ++k) {
            range.addPeak(k % 10 == 0 ? 0.9 : 0.01);
            QCOMPARE(range.limit(), 1.0);
        }
    }

    void does_not_grow_while_the_signal_fits()
    {
        RangeKeeper range;
        for (int k = 0; k < RangeKeeper::ShrinkAfter; ++k) {
            range.addPeak(0.5);
        }
        QCOMPARE(range.limit(), 0.6);
        range.addPeak(0.6); // without any room
        QCOMPARE(range.limit(), 0.6);
        range.addPeak(0.599); // with hardly any room
        QCOMPARE(range.limit(), 0.6);
        range.addPeak(0.601);
        QCOMPARE(range.limit(), 0.8);
    }

    void peaks_that_differ_a_little_do_not_make_it_jump()
    {
        RangeKeeper range;
        for (int k = 0; k < RangeKeeper::ShrinkAfter; ++k) {
            range.addPeak(0.52);
        }
        const double limit = range.limit();
        for (int k = 0; k < 1000; ++k) {
            range.addPeak(k % 40 == 0 ? 0.57 : 0.5);
            QCOMPARE(range.limit(), limit);
        }
    }

    void shrinks_to_the_range_that_held_all_blocks_since()
    {
        RangeKeeper range;
        for (int k = 0; k < RangeKeeper::ShrinkAfter; ++k) {
            QCOMPARE(range.limit(), 1.0);
            range.addPeak(k == 3 ? 0.34 : 0.01);
        }
        QCOMPARE(range.limit(), 0.4);
    }

    void having_shrunk_it_counts_the_blocks_anew()
    {
        RangeKeeper range;
        for (int k = 0; k < RangeKeeper::ShrinkAfter; ++k) {
            range.addPeak(k == 3 ? 0.34 : 0.01);
        }
        for (int k = 0; k < RangeKeeper::ShrinkAfter; ++k) {
            QCOMPARE(range.limit(), 0.4);
            range.addPeak(k == 3 ? 0.16 : 0.01);
        }
        QCOMPARE(range.limit(), 0.2);
    }

    void having_fitted_anew_it_counts_the_blocks_anew()
    {
        RangeKeeper range;
        for (int k = 0; k < RangeKeeper::ShrinkAfter - 1; ++k) {
            range.addPeak(0.7);
        }
        range.fitAnew();
        range.addPeak(0.5);
        for (int k = 0; k < RangeKeeper::ShrinkAfter; ++k) {
            QCOMPARE(range.limit(), 0.6);
            range.addPeak(0.01);
        }
        QCOMPARE(range.limit(), 0.015);
    }

    void a_block_that_needs_the_range_lets_it_count_anew()
    {
        RangeKeeper range;
        for (int k = 0; k < 2 * RangeKeeper::ShrinkAfter; ++k) {
            range.addPeak(k % (RangeKeeper::ShrinkAfter - 1) == 0 ? 0.9 : 0.1);
            QCOMPARE(range.limit(), 1.0);
        }
        for (int k = 0; k < RangeKeeper::ShrinkAfter; ++k) {
            range.addPeak(0.1);
        }
        QCOMPARE(range.limit(), 0.15);
    }

    void silence_and_invalid_peaks_change_nothing()
    {
        RangeKeeper range;
        for (int k = 0; k < 100; ++k) {
            range.addPeak(0.0);
            range.addPeak(std::numeric_limits<double>::quiet_NaN());
        }
        QCOMPARE(range.limit(), 1.0);
        range.addPeak(std::numeric_limits<double>::infinity());
        QCOMPARE(range.limit(), 1.0);
    }

    void setting_it_counts_the_blocks_that_fit_a_smaller_range_anew()
    {
        RangeKeeper range;
        for (int k = 0; k < RangeKeeper::ShrinkAfter - 1; ++k) {
            range.addPeak(k == 0 ? 0.5 : 0.05);
        }
        range.setFixed(false);
        for (int k = 0; k < RangeKeeper::ShrinkAfter - 1; ++k) {
            range.addPeak(0.05);
            QCOMPARE(range.limit(), 1.0);
        }
        range.addPeak(0.05);
        QCOMPARE(range.limit(), 0.06);
    }

    void a_fixed_range_is_full_scale_for_any_signal()
    {
        RangeKeeper range;
        range.setFixed(true);
        for (int k = 0; k < 100; ++k) {
            range.addPeak(0.01);
            QCOMPARE(range.limit(), 1.0);
        }
        range.setFixed(false);
        QCOMPARE(range.limit(), 0.015);
    }
};

QN740_TEST_MAIN(tst_RangeKeeper)
#include "tst_RangeKeeper.moc"
