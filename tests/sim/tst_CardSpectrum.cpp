#include "sim/card/CardSpectrum.h"
#include "support/TestMain.h"
#include "wire/SpanTable.h"

using namespace Qt::StringLiterals;

namespace {
constexpr int Points = 1024;

double level(char byte)
{
    return static_cast<quint8>(byte) * 0.5 - 120.0;
}

// Returns how many points are above this level.
int above(const QByteArray& points, double dB)
{
    return static_cast<int>(std::count_if(
        points.begin(), points.end(), [dB](char point) { return level(point) > dB; }));
}
} // namespace

class tst_CardSpectrum : public QObject
{
    Q_OBJECT

private slots:
    void the_same_seed_gives_the_same_spectra()
    {
        CardSpectrum one(7);
        CardSpectrum same(7);
        CardSpectrum other(8);
        const QByteArray points = one.points(0, Points, 1.0);
        QCOMPARE(points, same.points(0, Points, 1.0));
        QVERIFY(points != other.points(0, Points, 1.0));
        QVERIFY(points != one.points(0, Points, 1.0)); // no two spectra are alike
    }

    void carriers_rise_above_a_noise_floor()
    {
        CardSpectrum spectrum;
        spectrum.setSpan(1, 9);
        const QByteArray points = spectrum.points(1, Points, 0.0);
        QCOMPARE(points.size(), Points);
        const auto peak = std::max_element(points.begin(), points.end(),
            [](char a, char b) { return static_cast<quint8>(a) < static_cast<quint8>(b); });
        QVERIFY(level(*peak) > -40.0);
        QVERIFY(std::abs(peak - points.begin() - Points / 2) < Points / 20);
        QVERIFY(above(points, -70.0) < Points / 3);
    }

    void a_wider_span_shows_the_carrier_narrower()
    {
        CardSpectrum spectrum;
        int widest = Points + 1;
        for (const int span : {1, 4, 9}) {
            QVERIFY(spectrum.setSpan(0, span));
            const int carrier = above(spectrum.points(0, Points, 0.0), -45.0);
            QVERIFY(carrier < widest && carrier > 0);
            widest = carrier;
        }
    }

    void a_higher_symbol_rate_makes_the_carrier_wider()
    {
        CardSpectrum spectrum;
        spectrum.setSpan(1, 9);
        spectrum.setSymbolRate(1, 0.5e6);
        const int narrow = above(spectrum.points(1, Points, 0.0), -45.0);
        spectrum.setSymbolRate(1, 5e6);
        const int wide = above(spectrum.points(1, Points, 0.0), -45.0);
        QVERIFY2(wide > 4 * narrow, qPrintable(u"%1 %2"_s.arg(narrow).arg(wide)));
    }

    void a_shift_moves_all_carriers()
    {
        CardSpectrum spectrum;
        spectrum.setSpan(0, 9); // 40 MHz
        const auto middleOf = [&spectrum] {
            const QByteArray points = spectrum.points(0, Points, 0.0);
            double sum = 0.0;
            int count = 0;
            for (int i = 0; i < Points; ++i) {
                if (level(points.at(i)) > -45.0) {
                    sum += i;
                    ++count;
                }
            }
            const double width = spanTable().at(9).spanMHz; // a little more than the label says
            return count == 0 ? -1.0 : width * (sum / count / Points - 0.5);
        };
        const double before = middleOf();
        spectrum.setShift(0, -8.0);
        QVERIFY2(std::abs(before - middleOf() - 8.0) < 0.2, QByteArray::number(middleOf()));
        spectrum.setShift(0, 500.0);
        QCOMPARE(above(spectrum.points(0, Points, 0.0), -80.0), 0); // only noise
    }

    void what_is_no_rate_or_shift_changes_nothing()
    {
        CardSpectrum spectrum;
        const CardSpectrum before;
        for (const double value : {qQNaN(), qInf(), -qInf()}) {
            spectrum.setSymbolRate(0, value);
            spectrum.setShift(0, value);
        }
        spectrum.setSymbolRate(0, 0.0);
        spectrum.setSymbolRate(3, 1e6);
        spectrum.setSymbolRate(-1, 1e6);
        spectrum.setShift(3, 1.0);
        spectrum.setShift(-1, 1.0);
        for (int channel = 0; channel < 3; ++channel) {
            QCOMPARE(
                spectrum.level(channel, 0.2, 0.01, 1.0), before.level(channel, 0.2, 0.01, 1.0));
        }
    }

    void the_modulated_carrier_drifts()
    {
        CardSpectrum spectrum;
        spectrum.setSymbolRate(0, 500.0);
        const double bin = spanTable().first().spanMHz / Points;
        QCOMPARE(spectrum.carrierOffset(0, 0.0), 0.0);
        QVERIFY(
            std::abs(spectrum.level(0, 0.0, bin, 0.0) - spectrum.level(0, 0.0, bin, 5.0)) > 3.0);
    }

    void unmodulated_carriers_stay_on_their_frequency_data()
    {
        QTest::addColumn<int>("span");
        QTest::addColumn<double>("seconds");
        QTest::newRow("20 MHz") << 6 << 0.0;
        QTest::newRow("25 MHz") << 7 << 0.0;
        QTest::newRow("40 MHz") << 9 << 0.0;
        QTest::newRow("40 MHz, later") << 9 << 5.0;
        QTest::newRow("40 MHz, even later") << 9 << 15.0;
    }

    void unmodulated_carriers_stay_on_their_frequency()
    {
        QFETCH(int, span);
        QFETCH(double, seconds);
        CardSpectrum spectrum;
        spectrum.setSpan(1, span);
        const int bins = CardSpectrum::bins(span);
        const double bin = spanTable().at(span).spanMHz / bins;
        const QByteArray points = spectrum.points(1, bins, seconds);
        for (const auto& [offset, dB] : {std::pair(-6.2, -62.0), std::pair(4.6, -75.0)}) {
            const int near = static_cast<int>(std::lround(offset / bin + bins / 2.0));
            double highest = -120.0;
            for (int i = near - 3; i <= near + 3; ++i) {
                highest = std::max(highest, level(points.at(i)));
            }
            // Between two points it is 0.75 dB lower.
            QVERIFY2(highest < dB + 1.0 && highest > dB - 1.8, QByteArray::number(highest));
            QVERIFY(std::abs(spectrum.level(1, offset, bin, seconds) - dB) < 0.1);
        }
    }

    // Chi-square with two degrees of freedom: as many points are below ln 2 of the mean power as
    // above it, and the powers deviate from the mean by as much as it is.
    void noise_has_the_statistics_of_a_power_spectrum()
    {
        CardSpectrum spectrum;
        spectrum.setLevel(-CardSpectrum::MaxLevel);
        spectrum.setSpan(0, 9);
        const double bin = spanTable().at(9).spanMHz / Points;
        const double mean = std::pow(10.0, (spectrum.noisePerMHz() / 10.0)) * bin;
        double sum = 0.0;
        double squares = 0.0;
        int count = 0;
        int belowMedian = 0;
        for (int i = 0; i < 40; ++i) {
            const QByteArray points = spectrum.points(0, Points, 0.0);
            for (const char point : points.right(Points / 4)) {
                const double power = std::pow(10.0, level(point) / 10.0) / mean;
                sum += power;
                squares += power * power;
                ++count;
                belowMedian += power < std::log(2.0) ? 1 : 0;
            }
        }
        const double variance = squares / count - (sum / count) * (sum / count);
        QVERIFY2(std::abs(sum / count - 1.0) < 0.03, QByteArray::number(sum / count));
        QVERIFY2(std::abs(variance - 1.0) < 0.1, QByteArray::number(variance));
        QVERIFY2(std::abs(double(belowMedian) / count - 0.5) < 0.03,
            QByteArray::number(double(belowMedian) / count));
    }

    void a_power_per_hertz_does_not_depend_on_the_span()
    {
        CardSpectrum spectrum;
        for (const double offset : {0.1, 0.9}) { // in the carrier and beside it
            spectrum.setSpan(1, 2);
            const double narrow = spectrum.level(1, offset, 0.01, 0.0);
            spectrum.setSpan(1, 9);
            const double wide = spectrum.level(1, offset, 0.04, 0.0);
            QVERIFY2(std::abs(wide - narrow - 10.0 * std::log10(4.0)) < 0.01,
                qPrintable(u"%1 %2"_s.arg(narrow).arg(wide)));
        }
    }

    void the_carrier_keeps_its_power_whatever_its_rate_data()
    {
        QTest::addColumn<double>("rate");
        QTest::newRow("0.5 MHz") << 0.5e6;
        QTest::newRow("5 MHz") << 5e6;
        QTest::newRow("20 MHz") << 20e6;
    }

    void the_carrier_keeps_its_power_whatever_its_rate()
    {
        QFETCH(double, rate);
        CardSpectrum spectrum;
        spectrum.setSpan(2, 9);
        spectrum.setSymbolRate(2, rate);
        const double bin = spanTable().at(9).spanMHz / Points;
        double sum = 0.0;
        for (int i = 0; i < Points; ++i) {
            const double offset = (i - Points / 2.0) * bin;
            sum += std::pow(10.0, spectrum.level(2, offset, bin, 0.0) / 10.0);
        }
        QVERIFY2(std::abs(10.0 * std::log10(sum) - spectrum.carrierPower(2)) < 0.05,
            QByteArray::number(10.0 * std::log10(sum)));
    }

    void a_high_level_overloads_the_card()
    {
        CardSpectrum spectrum;
        QVERIFY(!spectrum.points(0, Points, 0.0).contains('\xff'));
        spectrum.setLevel(40.0);
        QVERIFY(spectrum.points(0, Points, 0.0).contains('\xff'));
        spectrum.setLevel(0.0);
        QVERIFY(!spectrum.points(0, Points, 0.0).contains('\xff'));
    }

    void a_level_raises_the_carriers_but_not_the_noise()
    {
        CardSpectrum spectrum;
        spectrum.setSpan(1, 9);
        const QVector<double> carriers{0.0, -6.2, 4.6};
        constexpr double Bin = 0.04;
        QVector<double> before;
        for (const double offset : carriers) {
            before += spectrum.level(1, offset, Bin, 0.0);
        }
        const double noise = spectrum.level(1, 12.0, Bin, 0.0);
        for (const double level : {qQNaN(), qInf(), 80.5, -80.5}) {
            spectrum.setLevel(level); // changes nothing
        }
        QCOMPARE(spectrum.level(1, carriers.first(), Bin, 0.0), before.first());
        spectrum.setLevel(10.0);
        for (qsizetype i = 0; i < carriers.size(); ++i) {
            const double gain = spectrum.level(1, carriers.at(i), Bin, 0.0) - before.at(i);
            QVERIFY2(std::abs(gain - 10.0) < 0.05, QByteArray::number(gain));
        }
        QCOMPARE(spectrum.level(1, 12.0, Bin, 0.0), noise);
    }

    void a_span_has_the_bins_that_a_k7150_keeps()
    {
        const QVector<int> kept{106, 284, 474, 354, 474, 710, 474, 592, 710, 958};
        for (int span = 0; span < kept.size(); ++span) {
            QCOMPARE(CardSpectrum::bins(span), kept.at(span));
        }
        QCOMPARE(CardSpectrum::bins(-1), 0);
        QCOMPARE(CardSpectrum::bins(10), 0);
    }

    void demodulators_are_told_their_span_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QVector<int>>("spans");
        QTest::newRow("one") << "D2:NFFT:11" << QVector<int>{0, 3, 0};
        QTest::newRow("all") << "D1 D2 D3:NFFT:10" << QVector<int>{6, 6, 6};
        QTest::newRow("unknown parameter") << "D1:NFFT:99" << QVector<int>{0, 0, 0};
        QTest::newRow("no demodulator") << "D4:NFFT:10" << QVector<int>{0, 0, 0};
        QTest::newRow("another command") << "D1:MODE:10" << QVector<int>{0, 0, 0};
        QTest::newRow("empty") << "" << QVector<int>{0, 0, 0};
    }

    void demodulators_are_told_their_span()
    {
        QFETCH(QString, command);
        QFETCH(QVector<int>, spans);
        CardSpectrum spectrum;
        spectrum.takeCommand(command);
        for (int channel = 0; channel < 3; ++channel) {
            QCOMPARE(spectrum.span(channel), spans.at(channel));
        }
    }

    void a_parameter_that_the_span_has_already_changes_nothing()
    {
        CardSpectrum spectrum;
        const QList<std::pair<QString, int>> steps{
            {u"11"_s, 3}, {u"11"_s, 3}, {u"10"_s, 6}, {u"10"_s, 6}, {u"12"_s, 0}};
        for (const auto& [parameter, span] : steps) {
            spectrum.takeCommand(u"D2:NFFT:"_s + parameter);
            QCOMPARE(spectrum.span(1), span);
        }
    }

    void a_span_set_on_the_card_overrides_a_demodulator_s_parameter()
    {
        CardSpectrum spectrum;
        for (int span = 0; span < spanTable().size(); ++span) {
            spectrum.setSpan(1, span);
            for (const char* parameter : {"10", "11", "12"}) {
                spectrum.takeCommand(QLatin1String("D2:NFFT:") + QLatin1String(parameter));
                QCOMPARE(spectrum.span(1), span);
            }
        }
        // No span was set on the card for the other channels, so they follow the parameter.
        spectrum.takeCommand(u"D1 D2 D3:NFFT:11"_s);
        QCOMPARE(spectrum.span(0), 3);
        QCOMPARE(spectrum.span(1), 9);
        QCOMPARE(spectrum.span(2), 3);
    }

    void spans_and_trims_that_do_not_exist_are_refused()
    {
        CardSpectrum spectrum;
        QVERIFY(!spectrum.setSpan(3, 0) && !spectrum.setSpan(-1, 0));
        QVERIFY(!spectrum.setSpan(0, 10) && !spectrum.setSpan(0, -1));
        QVERIFY(!spectrum.setTrim(3, 0) && !spectrum.setTrim(0, 10) && !spectrum.setTrim(0, -1));
        QVERIFY(spectrum.setTrim(2, 9));
        QCOMPARE(spectrum.trim(2), 9);
    }
};

QN740_TEST_MAIN(tst_CardSpectrum)
#include "tst_CardSpectrum.moc"
