#include "spectrum/CarrierSearch.h"
#include "spectrum/NoiseMean.h"
#include "spectrum/PlainMeasurements.h"
#include "support/TestMain.h"

#include <random>

namespace {

// The power of noise in a bin, averaged over so many spectra. The mean is 1.
double noisePower(std::mt19937& random, int spectra)
{
    double sum = 0.0;
    for (int i = 0; i < spectra; ++i) {
        sum -= std::log((static_cast<double>(random()) + 1.0) / 4294967296.0);
    }
    return sum / spectra;
}

// Noise with a mean of 1 and rectangular carriers.
struct Carrier
{
    int first;
    int last;
    double power; // of a bin
};

MeasuredSpectrum spectrum(
    int size, std::initializer_list<Carrier> carriers, int spectra = 16, unsigned seed = 1)
{
    std::mt19937 random(seed);
    MeasuredSpectrum result{{}, 70.0, 10.0, static_cast<double>(spectra)};
    for (int i = 0; i < size; ++i) {
        double power = 1.0;
        for (const Carrier& carrier : carriers) {
            power += i >= carrier.first && i <= carrier.last ? carrier.power : 0.0;
        }
        result.powers += static_cast<float>(power * noisePower(random, spectra));
    }
    return result;
}

// A floor of 1 without any deviation, and carriers of this power.
MeasuredSpectrum flat(int size, std::initializer_list<Carrier> carriers, double spectra = 16.0)
{
    MeasuredSpectrum result{QVector<float>(size, 1.0F), 70.0, 10.0, spectra};
    for (const Carrier& carrier : carriers) {
        for (int i = carrier.first; i <= carrier.last; ++i) {
            result.powers[i] = static_cast<float>(carrier.power);
        }
    }
    return result;
}

bool isAbout(double value, double expected, double part)
{
    return std::abs(value - expected) <= part * expected;
}

} // namespace

class tst_CarrierSearch : public QObject
{
    Q_OBJECT

private slots:
    void the_median_of_noise_is_below_its_mean_data()
    {
        // The medians of the gamma distribution, from its incomplete integral.
        QTest::addColumn<double>("shape");
        QTest::addColumn<double>("ratio");
        QTest::newRow("1") << 1.0 << 0.693147;
        QTest::newRow("2") << 2.0 << 0.839173;
        QTest::newRow("4") << 4.0 << 0.918015;
        QTest::newRow("16") << 16.0 << 0.979245;
        QTest::newRow("64") << 64.0 << 0.994797;
        QTest::newRow("very many") << 1e6 << 1.0;
    }

    void the_median_of_noise_is_below_its_mean()
    {
        QFETCH(double, shape);
        QFETCH(double, ratio);
        QVERIFY2(std::abs(noise::medianOverMean(shape) - ratio) < 0.0006,
            QByteArray::number(noise::medianOverMean(shape)));
    }

    void a_quantile_is_interpolated_between_rounded_values_data()
    {
        QTest::addColumn<QVector<float>>("values");
        QTest::addColumn<double>("part");
        QTest::addColumn<double>("quantile");
        using Values = QVector<float>;
        QTest::newRow("none") << Values{} << 0.5 << 0.0;
        QTest::newRow("one") << Values{3} << 0.5 << 3.0;
        QTest::newRow("all equal") << Values{3, 3, 3, 3} << 0.25 << 3.0;
        // Half of the values lie below 2 or were rounded to 2: it reaches from sqrt(2) to sqrt(8).
        QTest::newRow("in the middle of a step")
            << Values{1, 2, 2, 4} << 0.5
            << std::sqrt(2.0) + 0.5 * (std::sqrt(8.0) - std::sqrt(2.0));
        QTest::newRow("at the end of a step") << Values{1, 1, 1, 2, 2, 4} << 0.5 << std::sqrt(2.0);
        QTest::newRow("everything") << Values{1, 2, 4} << 1.0 << 4.0;
        QTest::newRow("zeros") << Values{0, 0, 0, 1} << 0.5 << 0.0;
        // Halfway from 0 in decibels is 0.
        QTest::newRow("above zeros") << Values{0, 4} << 0.75 << 2.0;
    }

    void a_quantile_is_interpolated_between_rounded_values()
    {
        QFETCH(QVector<float>, values);
        QFETCH(double, part);
        QFETCH(double, quantile);
        QVERIFY2(std::abs(noise::quantile(values, part) - quantile) < 1e-6,
            QByteArray::number(noise::quantile(values, part)));
    }

    void the_spread_of_noise_tells_how_many_spectra_were_averaged_data()
    {
        QTest::addColumn<int>("spectra");
        for (const int spectra : {1, 4, 16, 64}) {
            QTest::addRow("%d", spectra) << spectra;
        }
    }

    void the_spread_of_noise_tells_how_many_spectra_were_averaged()
    {
        QFETCH(int, spectra);
        QVector<float> bins = spectrum(4000, {}, spectra).powers;
        const noise::Estimate estimate = noise::estimate(bins, 1.0);
        QVERIFY2(isAbout(estimate.shape, spectra, 0.12), QByteArray::number(estimate.shape));
        QVERIFY2(isAbout(estimate.mean, 1.0, 0.03), QByteArray::number(estimate.mean));
    }

    void noise_without_any_spread_is_its_own_mean()
    {
        QVector<float> bins(50, 0.25F);
        QVERIFY(std::abs(noise::estimate(bins, 1.0).mean - 0.25) < 1e-6);
        QCOMPARE(noise::shapeOf(0.0, 0.0), 1e6);
        QCOMPARE(noise::shapeOf(0.0, 1.0), 1.0);
        QCOMPARE(noise::shapeOf(2.0, 1.0), 1e6);
        QCOMPARE(noise::shapeOf(1.0, 1.000001), 1e6);
    }

    void a_few_carriers_hardly_raise_the_noise()
    {
        QVector<float> bins =
            spectrum(500, {{10, 14, 1e6}, {200, 209, 1e4}, {400, 402, 1e9}}, 16).powers;
        QVERIFY(isAbout(noise::estimate(bins, 16.0).mean, 1.0, 0.03));
    }

    void a_carrier_is_found_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<double>("power");
        QTest::addColumn<int>("spectra");
        QTest::newRow("strong") << 474 << 200 << 299 << 1e4 << 16;
        QTest::newRow("weak") << 474 << 200 << 299 << 3.2 << 64;
        QTest::newRow("one spectrum") << 474 << 200 << 299 << 100.0 << 1;
        QTest::newRow("one bin") << 474 << 33 << 33 << 1e4 << 16;
        QTest::newRow("near the left end") << 474 << 3 << 60 << 1e3 << 16;
        QTest::newRow("few points") << 106 << 40 << 80 << 1e3 << 16;
        QTest::newRow("nearly the whole span") << 474 << 30 << 440 << 1e3 << 64;
        QTest::newRow("many points") << 9999 << 4000 << 4100 << 1e3 << 4;
    }

    void a_carrier_is_found()
    {
        QFETCH(int, size);
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(double, power);
        QFETCH(int, spectra);
        const MeasuredSpectrum seen = spectrum(size, {{first, last, power}}, spectra);
        const CarrierSearch carrier(seen);
        QVERIFY(carrier.found() && !carrier.isCut());
        const int play = spectra == 1 || power < 10.0 ? 6 : 1;
        QVERIFY2(std::abs(carrier.first() - first) <= play, QByteArray::number(carrier.first()));
        QVERIFY2(std::abs(carrier.last() - last) <= play, QByteArray::number(carrier.last()));
        QVERIFY(carrier.guardFirst() < carrier.first() && carrier.guardLast() > carrier.last());
        QVERIFY(carrier.guardFirst() >= 0 && carrier.guardLast() < size);
        if (carrier.hasNoise()) {
            QVERIFY2(isAbout(carrier.floor(), 1.0, 0.1), QByteArray::number(carrier.floor()));
        }
    }

    void noise_alone_has_no_carrier()
    {
        int found = 0;
        for (const int spectra : {1, 4, 16}) {
            for (unsigned seed = 1; seed <= 60; ++seed) {
                const MeasuredSpectrum seen = spectrum(474, {}, spectra, seed);
                const CarrierSearch carrier(seen);
                found += carrier.found() ? 1 : 0;
                QVERIFY(carrier.hasNoise());
            }
        }
        QVERIFY2(found <= 6, QByteArray::number(found)); // of 180
    }

    void a_carrier_as_strong_as_the_noise_is_none()
    {
        for (unsigned seed = 1; seed <= 20; ++seed) {
            const MeasuredSpectrum seen = spectrum(474, {{150, 300, 1.0}}, 64, seed);
            QVERIFY(!CarrierSearch(seen).found());
        }
    }

    void a_part_of_a_carrier_that_is_lost_in_the_noise_is_none_data()
    {
        QTest::addColumn<double>("power");
        QTest::addColumn<int>("spectra");
        QTest::newRow("0 dB, 4 spectra") << 1.0 << 4;
        QTest::newRow("-2 dB, 16 spectra") << 0.63 << 16;
        QTest::newRow("0 dB, 16 spectra") << 1.0 << 16;
        QTest::newRow("1 dB, 64 spectra") << 1.26 << 64;
    }

    // A few of its bins rise far enough; their power would be taken for that of the carrier.
    void a_part_of_a_carrier_that_is_lost_in_the_noise_is_none()
    {
        QFETCH(double, power);
        QFETCH(int, spectra);
        int parts = 0;
        for (unsigned seed = 1; seed <= 100; ++seed) {
            const MeasuredSpectrum seen = spectrum(710, {{250, 449, power}}, spectra, seed);
            const CarrierSearch carrier(seen);
            parts += carrier.found() && carrier.last() - carrier.first() < 100 ? 1 : 0;
        }
        QVERIFY2(parts <= 2, QByteArray::number(parts)); // of 100
    }

    void weak_carriers_are_found_whole_beside_stronger_ones()
    {
        int found = 0;
        for (unsigned seed = 1; seed <= 100; ++seed) {
            const MeasuredSpectrum seen =
                spectrum(710, {{250, 449, 3.2}, {50, 51, 90.0}, {520, 521, 60.0}}, 64, seed);
            const CarrierSearch carrier(seen);
            found += carrier.found() && carrier.last() - carrier.first() > 180 ? 1 : 0;
        }
        QVERIFY2(found >= 98, QByteArray::number(found)); // of 100
    }

    void of_several_carriers_the_one_with_the_most_power_is_taken()
    {
        // The narrow one is higher, but has less power.
        const MeasuredSpectrum seen =
            spectrum(474, {{50, 51, 4000.0}, {200, 299, 1000.0}, {400, 410, 2000.0}});
        const CarrierSearch carrier(seen);
        QCOMPARE(carrier.first(), qsizetype(200));
        QCOMPARE(carrier.last(), qsizetype(299));
    }

    void a_strong_carrier_does_not_reach_over_a_gap_to_another()
    {
        const MeasuredSpectrum seen = spectrum(474, {{100, 199, 1e5}, {215, 314, 2e5}});
        const CarrierSearch carrier(seen);
        QCOMPARE(carrier.first(), qsizetype(215));
        QCOMPARE(carrier.last(), qsizetype(314));
    }

    void a_carrier_at_an_end_is_cut_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::newRow("left") << 0 << 50;
        QTest::newRow("right") << 400 << 473;
    }

    void a_carrier_at_an_end_is_cut()
    {
        QFETCH(int, first);
        QFETCH(int, last);
        const MeasuredSpectrum seen = spectrum(474, {{first, last, 1e3}});
        const CarrierSearch carrier(seen);
        QVERIFY(carrier.found() && carrier.isCut());
    }

    void a_carrier_that_leaves_no_bins_leaves_no_noise()
    {
        const MeasuredSpectrum seen = spectrum(474, {{20, 453, 1e3}});
        const CarrierSearch carrier(seen);
        QVERIFY(!carrier.hasNoise());
    }

    // The second lowest of 16 parts, of which noise alone makes the mean so much lower.
    void without_noise_beside_the_carrier_the_floor_is_that_of_the_quietest_parts()
    {
        const MeasuredSpectrum seen = flat(128, {{8, 119, 1000.0}, {120, 127, 1.25}}, 4.0);
        const CarrierSearch carrier(seen);
        QVERIFY(!carrier.hasNoise());
        QCOMPARE(carrier.first(), qsizetype(8));
        QCOMPARE(carrier.last(), qsizetype(119));
        const double shape = 4.0 * 8.0; // spectra times bins
        const double lower = 1.0 - 1.0 / (9.0 * shape) - 1.8 / (3.0 * std::sqrt(shape));
        QVERIFY2(isAbout(carrier.floor(), 1.25 / std::pow(lower, 3), 1e-9),
            QByteArray::number(carrier.floor()));
    }

    void the_guard_is_an_eighth_of_the_carrier_and_two_bins_at_least_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<int>("guardFirst");
        QTest::addColumn<int>("guardLast");
        QTest::newRow("one bin") << 100 << 100 << 98 << 102;
        QTest::newRow("23 bins") << 100 << 122 << 98 << 124;
        QTest::newRow("24 bins") << 100 << 123 << 97 << 126;
        QTest::newRow("64 bins") << 100 << 163 << 92 << 171;
        QTest::newRow("near the left end") << 3 << 66 << 0 << 74;
        QTest::newRow("near the right end") << 333 << 396 << 325 << 399;
    }

    void the_guard_is_an_eighth_of_the_carrier_and_two_bins_at_least()
    {
        QFETCH(int, first);
        QFETCH(int, last);
        const MeasuredSpectrum seen = flat(400, {{first, last, 1000.0}});
        const CarrierSearch carrier(seen);
        QCOMPARE(int(carrier.first()), first);
        QCOMPARE(int(carrier.last()), last);
        QTEST(int(carrier.guardFirst()), "guardFirst");
        QTEST(int(carrier.guardLast()), "guardLast");
        QVERIFY(carrier.hasNoise() && !carrier.isCut());
        QVERIFY2(isAbout(carrier.floor(), 1.0, 1e-6), QByteArray::number(carrier.floor()));
        QCOMPARE(carrier.spectra(), 1e6); // There is no spread.
    }

    void a_carrier_begins_with_the_first_bin_above_three_decibels_data()
    {
        QTest::addColumn<double>("power");
        QTest::addColumn<int>("first");
        QTest::newRow("1.9 times the floor") << 1.9 << 100;
        QTest::newRow("2.1 times the floor") << 2.1 << 99;
        QTest::newRow("2.9 times the floor") << 2.9 << 99;
    }

    void a_carrier_begins_with_the_first_bin_above_three_decibels()
    {
        QFETCH(double, power);
        const MeasuredSpectrum seen = flat(400, {{99, 99, power}, {100, 120, 1000.0}});
        const CarrierSearch carrier(seen);
        QTEST(int(carrier.first()), "first");
        QCOMPARE(int(carrier.last()), 120);
    }

    void a_weak_carrier_is_a_part_when_more_than_noise_lies_beside_its_guard_data()
    {
        QTest::addColumn<double>("power"); // of the outermost bin
        QTest::addColumn<double>("carrier");
        QTest::addColumn<bool>("found");
        QTest::newRow("half of the bins are high") << 1.53 << 6.0 << false;
        QTest::newRow("less than half of them") << 0.9 << 6.0 << true;
        QTest::newRow("a strong carrier") << 1.53 << 12.0 << true;
    }

    // The eight bins in front of the guard are the first of the spectrum.
    void a_weak_carrier_is_a_part_when_more_than_noise_lies_beside_its_guard()
    {
        QFETCH(double, power);
        QFETCH(double, carrier);
        MeasuredSpectrum seen = flat(128, {{8, 9, 0.5}, {10, 25, carrier}, {26, 27, 0.5}});
        const QVector<float> before{
            static_cast<float>(power), 1.5F, 1.51F, 1.52F, 0.9F, 0.91F, 0.92F, 0.93F};
        std::copy(before.cbegin(), before.cend(), seen.powers.begin());
        for (int i = 28; i < 128; ++i) {
            seen.powers[i] = 0.95F + 0.001F * static_cast<float>(i * 37 % 100);
        }
        QTEST(CarrierSearch(seen).found(), "found");
    }

    void spectra_without_anything_to_find_data()
    {
        QTest::addColumn<QVector<float>>("powers");
        QTest::newRow("none") << QVector<float>();
        QTest::newRow("one point") << QVector<float>{1.0F};
        QTest::newRow("too few") << QVector<float>(15, 1.0F);
        QTest::newRow("all equal") << QVector<float>(474, 1.0F);
        QTest::newRow("all at the lowest level") << QVector<float>(474, 1e-12F);
        QTest::newRow("all zero") << QVector<float>(474, 0.0F);
        QTest::newRow("as few as can be") << QVector<float>(16, 1.0F);
    }

    void spectra_without_anything_to_find()
    {
        QFETCH(QVector<float>, powers);
        const MeasuredSpectrum seen{powers, 70.0, 10.0, 1.0};
        const CarrierSearch carrier(seen);
        QVERIFY(!carrier.found());
        QVERIFY(std::isfinite(carrier.floor()));
    }

    void any_spectrum_gives_what_the_plain_search_gives_data()
    {
        QTest::addColumn<unsigned>("seed");
        // The last ones have spectra in which many bins tell what lies beside a carrier.
        for (const unsigned seed : {1U, 2U, 3U, 4U, 6U, 20U}) {
            QTest::addRow("%u", seed) << seed;
        }
    }

    void any_spectrum_gives_what_the_plain_search_gives()
    {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        for (int n = 0; n < 250; ++n) {
            const MeasuredSpectrum spectrum = plainMeasurements::anySpectrum(random);
            const CarrierSearch search(spectrum);
            const plainMeasurements::Carrier plain(spectrum);
            const QString text =
                QStringLiteral("spectrum %1 of %2 points: %3 to %4, %5; expected %6 to %7, %8")
                    .arg(n)
                    .arg(spectrum.powers.size())
                    .arg(search.first())
                    .arg(search.last())
                    .arg(search.floor())
                    .arg(plain.first)
                    .arg(plain.last)
                    .arg(plain.floor);
            QVERIFY2(
                search.first() == plain.first && search.last() == plain.last, qPrintable(text));
            QVERIFY2(isAbout(search.floor(), plain.floor, 1e-6), qPrintable(text));
            QVERIFY2(isAbout(search.spectra(), plain.shape, 1e-5), qPrintable(text));
            QCOMPARE(search.hasNoise(), plain.hasNoise);
            if (search.found()) {
                QCOMPARE(search.guardFirst(), plain.guardFirst());
                QCOMPARE(search.guardLast(), plain.guardLast());
            }
        }
    }
};

QN740_TEST_MAIN(tst_CarrierSearch)
#include "tst_CarrierSearch.moc"
