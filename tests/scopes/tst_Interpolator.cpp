#include "scopes/Interpolator.h"
#include "support/TestMain.h"

#include <cmath>

namespace {
constexpr double Pi = 3.14159265358979323846;
} // namespace

class tst_Interpolator : public QObject
{
    Q_OBJECT

private slots:
    void the_samples_are_kept_exactly()
    {
        QVector<double> samples;
        for (int k = 0; k < 50; ++k) {
            samples.append(std::sin(k * 1.7) * 0.8);
        }
        const QVector<double> points = Interpolator(8).interpolate(samples);
        QCOMPARE(points.size(), 400);
        for (int k = 0; k < 50; ++k) {
            QVERIFY(points.at(k * 8) == samples.at(k));
        }
    }

    void a_constant_signal_stays_constant()
    {
        const QVector<double> points = Interpolator(8).interpolate(QVector<double>(20, 0.625));
        for (const double point : points) {
            QVERIFY(std::abs(point - 0.625) < 1e-12);
        }
    }

    // The band of a shaped signal with 4 samples per symbol ends between 0.15 and 0.19 of the rate.
    void a_sine_keeps_its_shape_data()
    {
        QTest::addColumn<double>("frequency");
        QTest::addColumn<double>("tolerance");
        QTest::newRow("0.05") << 0.05 << 0.001;
        QTest::newRow("0.17") << 0.17 << 0.003;
        QTest::newRow("0.25") << 0.25 << 0.01;
        QTest::newRow("0.33") << 0.33 << 0.07;
    }

    void a_sine_keeps_its_shape()
    {
        QFETCH(double, frequency);
        QFETCH(double, tolerance);
        QVector<double> samples;
        for (int k = 0; k < 256; ++k) {
            samples.append(std::sin(2 * Pi * frequency * k + 0.3));
        }
        const QVector<double> points = Interpolator(8).interpolate(samples);
        double worst = 0.0;
        for (int n = 8 * 8; n < 8 * 248; ++n) {
            worst = std::max(
                worst, std::abs(points.at(n) - std::sin(2 * Pi * frequency * n / 8.0 + 0.3)));
        }
        QVERIFY2(worst < tolerance, qPrintable(QString::number(worst)));
    }

    void the_inner_part_equals_the_whole_interpolation()
    {
        QVector<double> samples;
        for (int k = 0; k < 40; ++k) {
            samples.append(std::cos(k * k * 0.1));
        }
        const Interpolator interpolator(8);
        const QVector<double> all = interpolator.interpolate(samples);
        QVector<double> inner(20 * 8);
        interpolator.interpolateInner(samples.constData() + 10, 20, inner.data());
        QCOMPARE(inner, all.mid(80, 160));
    }

    void a_factor_out_of_range_is_limited()
    {
        QCOMPARE(Interpolator(0).factor(), 1);
        QCOMPARE(Interpolator(-3).factor(), 1);
        QCOMPARE(Interpolator(1000).factor(), 64);
        QCOMPARE(Interpolator(1).interpolate({1.0, 2.0}), (QVector<double>{1.0, 2.0}));
    }

    // By the standard library's own Bessel function.
    void the_taps_are_a_sinc_with_a_kaiser_window()
    {
        for (const int factor : {1, 3, 8}) {
            const QVector<double> taps = Interpolator(factor).taps();
            const int centre = 4 * factor;
            QCOMPARE(taps.size(), 2 * centre + 1);
            QVector<double> expected;
            for (int n = 0; n <= 2 * centre; ++n) {
                const double t = double(n - centre) / factor;
                const double x = t / 4.0;
                const double window = std::cyl_bessel_i(0.0, 6.0 * std::sqrt(1.0 - x * x)) /
                    std::cyl_bessel_i(0.0, 6.0);
                const bool whole = (n - centre) % factor == 0;
                expected.append(n == centre ? 1.0
                        : whole             ? 0.0
                                            : std::sin(Pi * t) / (Pi * t) * window);
            }
            for (int n = 0; n <= 2 * centre; ++n) {
                double sum = 0.0; // of the taps for the same place between two samples
                for (int k = n % factor; k <= 2 * centre; k += factor) {
                    sum += expected.at(k);
                }
                QVERIFY2(std::abs(taps.at(n) - expected.at(n) / sum) < 1e-11,
                    qPrintable(QString::number(taps.at(n) - expected.at(n) / sum)));
            }
        }
    }

    void a_filter_may_have_a_single_tap()
    {
        const double taps[] = {0.5, 1e9}; // the second one is none of it
        double delay[2] = {0.0, 1e9};
        int state = 0;
        QCOMPARE(firStep(1.0, 1, taps, delay, state), 0.5);
        QCOMPARE(firStep(-3.0, 1, taps, delay, state), -1.5);
        QCOMPARE(state, 0);
    }

    void no_samples_give_no_points() { QVERIFY(Interpolator(8).interpolate({}).isEmpty()); }

    void a_step_of_the_filter_answers_an_impulse_with_its_taps()
    {
        const double taps[] = {0.5, -0.25, 0.125, 1e9}; // The last one is none of it.
        double delay[3] = {0.0, 0.0, 0.0};
        int state = 0;
        QVector<double> answer;
        for (const double input : {1.0, 0.0, 0.0, 0.0, 0.0}) {
            answer.append(firStep(input, 3, taps, delay, state));
        }
        QCOMPARE(answer, (QVector<double>{0.5, -0.25, 0.125, 0.0, 0.0}));
    }

    void a_step_of_the_filter_is_a_convolution_around_the_line_s_end()
    {
        const QVector<double> taps{0.1, 0.7, -0.3, 0.05};
        QVector<double> input;
        for (int n = 0; n < 23; ++n) {
            input.append(std::sin(n * 0.9));
        }
        double delay[4] = {};
        int state = 0;
        for (int n = 0; n < 23; ++n) {
            double expected = 0.0;
            for (int k = 0; k < 4 && k <= n; ++k) {
                expected += taps.at(k) * input.at(n - k);
            }
            QCOMPARE(firStep(input.at(n), 4, taps.constData(), delay, state), expected);
            QVERIFY(state >= 0 && state < 4);
        }
    }

    void a_filter_without_taps_or_with_a_position_out_of_range_is_tolerated()
    {
        double delay[2] = {};
        const double taps[] = {1.0, 1.0};
        int state = 77;
        QCOMPARE(firStep(1.0, 0, taps, delay, state), 0.0);
        QCOMPARE(firStep(0.5, 2, taps, delay, state), 0.5);
        QVERIFY(state >= 0 && state < 2);
    }
};

QN740_TEST_MAIN(tst_Interpolator)
#include "tst_Interpolator.moc"
