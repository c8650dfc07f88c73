#include "spectrum/SpectrumTrace.h"
#include "support/TestMain.h"

namespace {
QByteArray bytes(std::initializer_list<int> values)
{
    QByteArray list;
    for (const int value : values) {
        list += static_cast<char>(value);
    }
    return list;
}

// The level of the mean of the powers of these levels, in dB.
float meanLevel(std::initializer_list<double> levels)
{
    double sum = 0.0;
    for (const double level : levels) {
        sum += std::pow(10.0, level / 10.0);
    }
    return static_cast<float>(10.0 * std::log10(sum / static_cast<double>(levels.size())));
}
} // namespace

class tst_SpectrumTrace : public QObject
{
    Q_OBJECT

private slots:
    void a_byte_counts_half_decibels_data()
    {
        QTest::addColumn<int>("byte");
        QTest::addColumn<double>("dB");
        QTest::newRow("lowest") << 0 << -120.0;
        QTest::newRow("one step") << 1 << -119.5;
        QTest::newRow("above 127") << 200 << -20.0;
        QTest::newRow("0 dB") << 240 << 0.0;
        QTest::newRow("highest") << 255 << 7.5;
    }

    void a_byte_counts_half_decibels()
    {
        QFETCH(int, byte);
        QFETCH(double, dB);
        QCOMPARE(SpectrumTrace::level(static_cast<quint8>(byte)), dB);
        SpectrumTrace trace;
        trace.add(bytes({byte}));
        QCOMPARE(double(trace.levels().first()), dB);
    }

    void a_new_trace_is_empty()
    {
        const SpectrumTrace trace;
        QCOMPARE(trace.size(), 0);
        QCOMPARE(trace.peak(), -1);
        QVERIFY(trace.held().isEmpty());
    }

    void no_points_change_nothing()
    {
        SpectrumTrace trace;
        trace.add(bytes({10, 20}));
        trace.add(QByteArray());
        QCOMPARE(trace.levels(), QVector<float>({-115.0F, -110.0F}));
    }

    void the_peak_is_the_first_of_the_highest_points()
    {
        SpectrumTrace trace;
        trace.add(bytes({10, 200, 30, 200}));
        QCOMPARE(trace.peak(), 1);
        trace.add(bytes({10, 20, 30, 40}));
        QCOMPARE(trace.peak(), 3);
    }

    void without_averaging_the_last_spectrum_counts()
    {
        SpectrumTrace trace;
        trace.add(bytes({0}));
        trace.add(bytes({40}));
        QCOMPARE(trace.levels().first(), -100.0F);
    }

    void the_first_spectra_weigh_the_same_and_then_fade()
    {
        SpectrumTrace trace;
        trace.setAveraging(2);
        trace.add(bytes({0}));
        trace.add(bytes({40}));
        QCOMPARE(trace.levels().first(), meanLevel({-120.0, -100.0}));
        trace.add(bytes({0}));
        QCOMPARE(trace.levels().first(), meanLevel({-120.0, meanLevel({-120.0, -100.0})}));
    }

    void the_levels_of_a_mean_are_its_decibels()
    {
        for (int byte = 0; byte < 256; ++byte) {
            for (const int other : {0, 1, 7, 40, 128, 200, 255}) {
                SpectrumTrace trace;
                trace.setAveraging(2);
                trace.add(QByteArray(4, static_cast<char>(byte)));
                trace.add(QByteArray(4, static_cast<char>(other)));
                const double power = static_cast<double>(trace.powers().constFirst());
                const double level = 10.0 * std::log10(power);
                const auto shown = static_cast<double>(trace.levels().constFirst());
                QCOMPARE(shown, static_cast<double>(static_cast<float>(level)));
                QVERIFY2(std::abs(shown - level) < 5e-6 * std::max(1.0, std::abs(level) / 64.0),
                    qPrintable(QStringLiteral("%1 and %2: %3").arg(byte).arg(other).arg(shown)));
            }
        }
    }

    void powers_are_averaged_not_decibels()
    {
        SpectrumTrace trace;
        trace.setAveraging(2);
        trace.add(bytes({200, 40}));
        trace.add(bytes({80, 40}));
        // Half the power of -20 dB: 3 dB less. The mean of the decibels would be -50.
        QVERIFY(std::abs(trace.levels().at(0) + 23.0103F) < 0.001F);
        QCOMPARE(trace.levels().at(1), -100.0F);
    }

    void noise_has_its_mean_power()
    {
        SpectrumTrace trace;
        trace.setAveraging(4);
        for (const int byte : {100, 120, 140, 160}) {
            trace.add(bytes({byte}));
        }
        QCOMPARE(trace.levels().first(), meanLevel({-70.0, -60.0, -50.0, -40.0}));
    }

    void one_level_is_the_same_as_in_all_levels()
    {
        SpectrumTrace trace;
        trace.setAveraging(8);
        for (int i = 0; i < 5; ++i) {
            trace.add(bytes({i * 40, 255 - i * 10, 7}));
            const QVector<float> alone{trace.levelAt(0), trace.levelAt(1), trace.levelAt(2)};
            QCOMPARE(alone, trace.levels());
            QCOMPARE(trace.levelAt(trace.peak()),
                *std::max_element(trace.levels().cbegin(), trace.levels().cend()));
        }
    }

    void switching_averaging_off_keeps_what_is_shown_until_the_next_spectrum()
    {
        SpectrumTrace trace;
        trace.setAveraging(2);
        trace.add(bytes({200}));
        trace.add(bytes({80}));
        trace.setAveraging(1);
        QVERIFY(std::abs(trace.levels().first() + 23.0103F) < 0.001F);
        trace.add(bytes({80}));
        QCOMPARE(trace.levels().first(), -80.0F);
    }

    void levels_that_were_read_do_not_stop_the_average()
    {
        SpectrumTrace read;
        SpectrumTrace unread;
        for (SpectrumTrace* trace : {&read, &unread}) {
            trace->setAveraging(16);
            for (int i = 0; i < 40; ++i) {
                trace->add(bytes({(i * 37) % 256, (i * 101) % 256}));
                if (trace == &read) {
                    static_cast<void>(trace->levels());
                }
            }
        }
        QCOMPARE(read.levels(), unread.levels());
        QCOMPARE(read.peak(), unread.peak());
    }

    void averaging_narrows_noise()
    {
        SpectrumTrace plain;
        SpectrumTrace averaged;
        averaged.setAveraging(16);
        quint32 seed = 1;
        for (int i = 0; i < 64; ++i) {
            QByteArray points;
            for (int k = 0; k < 512; ++k) {
                seed = seed * 1664525 + 1013904223;
                points += static_cast<char>(40 + (seed >> 28));
            }
            plain.add(points);
            averaged.add(points);
        }
        const auto spread = [](const QVector<float>& levels) {
            const auto [low, high] = std::minmax_element(levels.begin(), levels.end());
            return *high - *low;
        };
        QVERIFY(spread(averaged.levels()) < spread(plain.levels()) * 0.6F);
    }

    void max_hold_keeps_the_highest_level_of_each_point()
    {
        SpectrumTrace trace;
        trace.setMaxHold(true);
        trace.add(bytes({0, 100}));
        trace.add(bytes({50, 20}));
        QCOMPARE(trace.held(), QVector<float>({-95.0F, -70.0F}));
        QCOMPARE(trace.levels(), QVector<float>({-95.0F, -110.0F}));
    }

    void max_hold_keeps_a_burst_that_the_average_hides()
    {
        SpectrumTrace trace;
        trace.setAveraging(16);
        trace.setMaxHold(true);
        for (int i = 0; i < 16; ++i) {
            trace.add(bytes({i == 7 ? 240 : 0}));
        }
        QCOMPARE(trace.held().first(), 0.0F);
        QVERIFY(trace.levels().first() < -10.0F); // A sixteenth of the burst's power.
    }

    void switching_max_hold_off_forgets_it()
    {
        SpectrumTrace trace;
        trace.setMaxHold(true);
        trace.add(bytes({100}));
        trace.setMaxHold(false);
        QVERIFY(trace.held().isEmpty());
        trace.add(bytes({10}));
        trace.setMaxHold(true);
        trace.add(bytes({10}));
        QCOMPARE(trace.held().first(), -115.0F);
    }

    void another_number_of_points_starts_anew()
    {
        SpectrumTrace trace;
        trace.setAveraging(4);
        trace.setMaxHold(true);
        trace.add(bytes({200, 200}));
        trace.add(bytes({0, 0, 0}));
        QCOMPARE(trace.levels(), QVector<float>(3, -120.0F));
        QCOMPARE(trace.held(), QVector<float>(3, -120.0F));
    }

    void restart_starts_average_and_max_hold_anew()
    {
        SpectrumTrace trace;
        trace.setAveraging(4);
        trace.setMaxHold(true);
        trace.add(bytes({200}));
        trace.restart();
        trace.add(bytes({0}));
        QCOMPARE(trace.levels().first(), -120.0F);
        QCOMPARE(trace.held().first(), -120.0F);
    }

    void clear_removes_the_points()
    {
        SpectrumTrace trace;
        trace.add(bytes({200}));
        trace.clear();
        QCOMPARE(trace.size(), 0);
        QCOMPARE(trace.peak(), -1);
    }

    void averaging_is_off_until_a_depth_or_a_kind_is_set()
    {
        SpectrumTrace trace;
        QCOMPARE(trace.averaging(), 1);
        QCOMPARE(trace.averageKind(), SpectrumTrace::Average::Off);
        trace.setAveraging(4);
        QCOMPARE(trace.averaging(), 4);
        QCOMPARE(trace.averageKind(), SpectrumTrace::Average::Power);
        trace.setAveraging(1);
        QCOMPARE(trace.averageKind(), SpectrumTrace::Average::Off);
    }

    void switching_averaging_on_again_takes_the_last_depth()
    {
        SpectrumTrace trace;
        trace.setAverageKind(SpectrumTrace::Average::Power);
        QCOMPARE(trace.averaging(), 16); // as no depth was set yet
        trace.setAveraging(64);
        trace.setAverageKind(SpectrumTrace::Average::Off);
        QCOMPARE(trace.averaging(), 1);
        trace.setAverageKind(SpectrumTrace::Average::Log);
        QCOMPARE(trace.averaging(), 64);
        QCOMPARE(trace.averageKind(), SpectrumTrace::Average::Log);
    }

    void a_depth_keeps_the_kind_that_was_chosen()
    {
        SpectrumTrace trace;
        trace.setAverageKind(SpectrumTrace::Average::Log);
        trace.setAveraging(4);
        QCOMPARE(trace.averageKind(), SpectrumTrace::Average::Log);
    }

    void an_operator_is_offered_three_depths()
    {
        QCOMPARE(SpectrumTrace::AverageDepths, (std::array<int, 3>{4, 16, 64}));
    }

    void the_log_mean_is_that_of_the_decibels()
    {
        SpectrumTrace trace;
        trace.setAverageKind(SpectrumTrace::Average::Log);
        trace.setAveraging(2);
        trace.add(bytes({200, 40}));
        trace.add(bytes({80, 40}));
        QCOMPARE(trace.levels(), QVector<float>({-50.0F, -100.0F}));
        QCOMPARE(trace.levelAt(0), -50.0F);
        trace.add(bytes({80, 240}));
        QCOMPARE(trace.levels(), QVector<float>({-65.0F, -50.0F}));
        QCOMPARE(trace.peak(), 1);
    }

    void another_kind_starts_anew()
    {
        SpectrumTrace trace;
        trace.setAveraging(4);
        trace.add(bytes({200}));
        trace.add(bytes({200}));
        trace.setAverageKind(SpectrumTrace::Average::Log);
        trace.add(bytes({80}));
        QCOMPARE(trace.levels().first(), -80.0F);
        trace.setAverageKind(SpectrumTrace::Average::Off);
        trace.add(bytes({100}));
        trace.add(bytes({40}));
        QCOMPARE(trace.levels().first(), -100.0F);
    }

    void powers_are_the_mean_powers_whatever_is_shown_data()
    {
        QTest::addColumn<SpectrumTrace::Average>("kind");
        QTest::newRow("power") << SpectrumTrace::Average::Power;
        QTest::newRow("log") << SpectrumTrace::Average::Log;
    }

    void powers_are_the_mean_powers_whatever_is_shown()
    {
        QFETCH(SpectrumTrace::Average, kind);
        for (const bool askedInBetween : {false, true}) {
            SpectrumTrace trace;
            trace.setAveraging(4);
            trace.setAverageKind(kind);
            for (const int byte : {100, 120, 140, 160}) {
                trace.add(bytes({byte, 40}));
                if (askedInBetween) {
                    static_cast<void>(trace.powers());
                    static_cast<void>(trace.levels());
                }
            }
            const double expected = meanLevel({-70.0, -60.0, -50.0, -40.0});
            QVERIFY(std::abs(10.0 * std::log10(double(trace.powers().at(0))) - expected) < 0.001);
            QVERIFY(std::abs(10.0 * std::log10(double(trace.powers().at(1))) + 100.0) < 0.001);
        }
    }

    void without_averaging_the_powers_are_those_of_the_newest_spectrum()
    {
        SpectrumTrace trace;
        QVERIFY(trace.powers().isEmpty());
        trace.add(bytes({40, 240}));
        trace.add(bytes({240, 40}));
        QCOMPARE(trace.powers().size(), 2);
        QVERIFY(std::abs(trace.powers().at(0) - 1.0F) < 1e-6F);
        QVERIFY(std::abs(trace.powers().at(1) - 1e-10F) < 1e-15F);
        trace.add(bytes({240, 240, 240}));
        QCOMPARE(trace.powers().size(), 3);
        trace.clear();
        QVERIFY(trace.powers().isEmpty());
    }

    // An exponential average of depth n has the variance 1 / (2n - 1) in the end.
    void an_average_is_worth_so_many_independent_spectra()
    {
        SpectrumTrace trace;
        QCOMPARE(trace.independentSpectra(), 0.0);
        trace.add(bytes({40}));
        trace.add(bytes({40}));
        QCOMPARE(trace.independentSpectra(), 1.0);
        trace.setAveraging(4);
        for (const double worth : {1.0, 2.0, 3.0, 4.0}) {
            trace.add(bytes({40}));
            QVERIFY(std::abs(trace.independentSpectra() - worth) < 1e-6);
        }
        for (int i = 0; i < 50; ++i) {
            trace.add(bytes({40}));
        }
        QVERIFY(std::abs(trace.independentSpectra() - 7.0) < 1e-3);
        trace.clear();
        QCOMPARE(trace.independentSpectra(), 0.0);
    }

    void min_hold_keeps_the_lowest_level_of_each_point()
    {
        SpectrumTrace trace;
        QVERIFY(!trace.minHold());
        trace.setMinHold(true);
        QVERIFY(trace.minHold());
        trace.add(bytes({0, 100}));
        trace.add(bytes({50, 20}));
        QCOMPARE(trace.heldLow(), QVector<float>({-120.0F, -110.0F}));
        QVERIFY(trace.held().isEmpty()); // max hold is off
        trace.setMinHold(false);
        QVERIFY(trace.heldLow().isEmpty());
    }

    void both_holds_are_kept_beside_each_other()
    {
        SpectrumTrace trace;
        trace.setMaxHold(true);
        trace.setMinHold(true);
        for (const int byte : {100, 40, 200, 80}) {
            trace.add(bytes({byte}));
        }
        QCOMPARE(trace.held().first(), -20.0F);
        QCOMPARE(trace.heldLow().first(), -100.0F);
        QCOMPARE(trace.levels().first(), -80.0F);
    }

    void clearing_the_holds_leaves_the_average()
    {
        SpectrumTrace trace;
        trace.setAveraging(4);
        trace.setMaxHold(true);
        trace.setMinHold(true);
        trace.add(bytes({200}));
        trace.add(bytes({0}));
        trace.clearHolds();
        QVERIFY(trace.held().isEmpty() && trace.heldLow().isEmpty());
        QVERIFY(trace.maxHold() && trace.minHold());
        trace.add(bytes({100}));
        QCOMPARE(trace.held().first(), -70.0F);
        QCOMPARE(trace.heldLow().first(), -70.0F);
        QVERIFY(std::abs(trace.levels().first() - meanLevel({-20.0, -120.0, -70.0})) < 0.001F);
    }

    void another_number_of_points_starts_min_hold_anew()
    {
        SpectrumTrace trace;
        trace.setMinHold(true);
        trace.add(bytes({0, 0}));
        trace.add(bytes({100, 100, 100}));
        QCOMPARE(trace.heldLow(), QVector<float>(3, -70.0F));
        trace.restart();
        trace.add(bytes({200, 200, 200}));
        QCOMPARE(trace.heldLow(), QVector<float>(3, -20.0F));
    }

    void a_byte_of_255_is_over()
    {
        SpectrumTrace trace;
        trace.setAveraging(16);
        QVERIFY(!trace.over());
        trace.add(bytes({254, 0}));
        QVERIFY(!trace.over());
        trace.add(bytes({0, 255}));
        QVERIFY(trace.over());
        trace.add(QByteArray());
        QVERIFY(trace.over());
        trace.add(bytes({0, 254})); // Only the newest spectrum counts.
        QVERIFY(!trace.over());
        trace.add(bytes({255}));
        trace.clear();
        QVERIFY(!trace.over());
    }

    void a_depth_below_one_is_no_averaging()
    {
        SpectrumTrace trace;
        trace.setAveraging(-5);
        QCOMPARE(trace.averaging(), 1);
        trace.setAveraging(std::numeric_limits<int>::max());
        QVERIFY(trace.averaging() <= 1000);
    }
};

QN740_TEST_MAIN(tst_SpectrumTrace)
#include "tst_SpectrumTrace.moc"
