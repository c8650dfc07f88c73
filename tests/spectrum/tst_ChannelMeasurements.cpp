#include "spectrum/ChannelMeasurements.h"
#include "spectrum/PlainMeasurements.h"
#include "spectrum/SpectrumTrace.h"
#include "support/TestMain.h"

using namespace channelMeasurements;

Q_DECLARE_METATYPE(MeasuredSpectrum)

namespace {

constexpr int Points = 200;
constexpr double Centre = 2250.0;
constexpr double Width = 20.0; // A bin has 0.1 MHz.
constexpr double Floor = 1e-10;
constexpr double Bin = Width / Points;

// A floor without any deviation, and a carrier of this power in each bin from first to last.
MeasuredSpectrum rectangle(int first, int last, double power)
{
    MeasuredSpectrum spectrum{QVector<float>(Points, float(Floor)), Centre, Width, 1.0};
    for (int i = first; i <= last; ++i) {
        spectrum.powers[i] = static_cast<float>(power + Floor);
    }
    return spectrum;
}

// A floor and a carrier that falls by 3 dB times the square of the distance from its middle, given
// in units of half its width at -3 dB.
MeasuredSpectrum hill(double index, double halfWidth, double power)
{
    MeasuredSpectrum spectrum = rectangle(0, -1, 0.0);
    for (int i = 0; i < Points; ++i) {
        const double distance = (i - index) / halfWidth;
        spectrum.powers[i] +=
            static_cast<float>(power * std::pow(10.0, -0.3 * distance * distance));
    }
    return spectrum;
}

double decibels(double power)
{
    return 10.0 * std::log10(power);
}

bool near(double one, double other, double tolerance = 0.01)
{
    return std::abs(one - other) <= tolerance;
}

} // namespace

class tst_ChannelMeasurements : public QObject
{
    Q_OBJECT

private slots:
    void bins_at_the_edges_of_a_channel_count_in_part_data()
    {
        QTest::addColumn<double>("centre"); // from that of the chart, in bins
        QTest::addColumn<double>("width");  // in bins
        QTest::addColumn<double>("sum");
        // Points 99, 100 and 101 have the powers 1, 2 and 4; point 100 is at the centre.
        QTest::newRow("one bin") << 0.0 << 1.0 << 2.0;
        QTest::newRow("three bins") << 0.0 << 3.0 << 7.0;
        QTest::newRow("half of one bin") << 0.0 << 0.5 << 1.0;
        QTest::newRow("a part of one bin beside its middle") << 0.2 << 0.5 << 1.0;
        QTest::newRow("two halves") << 0.5 << 1.0 << 3.0;
        QTest::newRow("a half, a whole and a half") << 0.0 << 2.0 << 4.5;
        QTest::newRow("a quarter and three quarters") << 0.25 << 1.0 << 0.75 * 2 + 0.25 * 4;
        QTest::newRow("everything") << -0.5 << 200.0 << 7.0;
    }

    void bins_at_the_edges_of_a_channel_count_in_part()
    {
        QFETCH(double, centre);
        QFETCH(double, width);
        QFETCH(double, sum);
        MeasuredSpectrum spectrum{QVector<float>(Points, 0.0F), Centre, Width, 1.0};
        spectrum.powers[99] = 1.0F;
        spectrum.powers[100] = 2.0F;
        spectrum.powers[101] = 4.0F;
        const ChannelPower power = channelPower(spectrum, Centre + centre * Bin, width * Bin);
        QCOMPARE(power.state, State::Valid);
        QCOMPARE(power.centre, Centre + centre * Bin);
        QCOMPARE(power.bandwidth, width * Bin);
        QVERIFY2(near(power.level, decibels(sum), 1e-6), QByteArray::number(power.level));
    }

    void a_channel_beyond_the_span_has_no_power_data()
    {
        QTest::addColumn<double>("centre");
        QTest::addColumn<double>("width");
        QTest::newRow("too wide") << Centre << 20.3;
        QTest::newRow("too far left") << Centre - 9.5 << 2.0;
        QTest::newRow("too far right") << Centre + 9.5 << 2.0;
        QTest::newRow("far away") << 70.0 << 1.0;
        QTest::newRow("no width") << Centre << 0.0;
        QTest::newRow("negative width") << Centre << -1.0;
        QTest::newRow("width not a number") << Centre << qQNaN();
        QTest::newRow("centre not a number") << qQNaN() << 1.0;
        QTest::newRow("infinite width") << Centre << qInf();
    }

    void a_channel_beyond_the_span_has_no_power()
    {
        QFETCH(double, centre);
        QFETCH(double, width);
        QCOMPARE(channelPower(rectangle(90, 110, 1e-3), centre, width).state, State::BeyondSpan);
    }

    void spectra_without_a_carrier_have_no_results_data()
    {
        QTest::addColumn<QVector<float>>("powers");
        QTest::addColumn<double>("width");
        QTest::addColumn<State>("state");
        QTest::newRow("none") << QVector<float>() << Width << State::NoSpectrum;
        QTest::newRow("one point") << QVector<float>(1, 1.0F) << Width << State::NoSpectrum;
        QTest::newRow("two points") << QVector<float>(2, 1.0F) << Width << State::NoSpectrum;
        QTest::newRow("no width") << QVector<float>(200, 1.0F) << 0.0 << State::NoSpectrum;
        QTest::newRow("width not a number")
            << QVector<float>(200, 1.0F) << qQNaN() << State::NoSpectrum;
        QTest::newRow("all equal") << QVector<float>(200, 1.0F) << Width << State::NoCarrier;
        QTest::newRow("all at the lowest level")
            << QVector<float>(200, 1e-12F) << Width << State::NoCarrier;
        QTest::newRow("all zero") << QVector<float>(200, 0.0F) << Width << State::NoCarrier;
        QTest::newRow("overloaded") << QVector<float>(200, 5.6F) << Width << State::NoCarrier;
    }

    void spectra_without_a_carrier_have_no_results()
    {
        QFETCH(QVector<float>, powers);
        QFETCH(double, width);
        QFETCH(State, state);
        const MeasuredSpectrum spectrum{powers, Centre, width, 1.0};
        QCOMPARE(occupiedBandwidth(spectrum).state, state);
        QCOMPARE(bandwidthBelow(spectrum, 3.0).state, state);
        QCOMPARE(carrierToNoise(spectrum).state, state);
        QCOMPARE(frequencyError(spectrum).state, state);
        for (const Bandwidth& band : {occupiedBandwidth(spectrum), bandwidthBelow(spectrum, 3.0)}) {
            QCOMPARE(band.low, 0.0);
            QCOMPARE(band.high, 0.0);
        }
        QVERIFY(!stateText(state).isEmpty());
    }

    void one_point_has_a_channel_power()
    {
        const MeasuredSpectrum spectrum{{0.5F}, Centre, Width, 1.0};
        QVERIFY(near(channelPower(spectrum, Centre - Width / 2, Width).level, decibels(0.5), 1e-6));
        QCOMPARE(channelPower({{}, Centre, Width, 1.0}, Centre, 1.0).state, State::NoSpectrum);
        QCOMPARE(channelPower({{1.0F, 1.0F}, Centre, 0.5, 1.0}, Centre, 0.1).state, State::Valid);
        QCOMPARE(
            channelPower({{1.0F}, Centre, qQNaN(), 1.0}, Centre, 1.0).state, State::NoSpectrum);
    }

    void a_channel_without_power_has_a_finite_level()
    {
        const MeasuredSpectrum spectrum{QVector<float>(Points, 0.0F), Centre, Width, 1.0};
        QVERIFY(near(channelPower(spectrum, Centre, 1.0).level, -300.0, 1e-6));
    }

    void the_outermost_bins_count_in_part()
    {
        MeasuredSpectrum spectrum{QVector<float>(Points, 16.0F), Centre, Width, 1.0};
        spectrum.powers.first() = 2.0F;
        spectrum.powers.last() = 4.0F;
        const double left = Centre - Width / 2.0; // the middle of the first bin
        const double right = Centre + Width / 2.0 - Bin;
        QVERIFY(near(channelPower(spectrum, left, 0.5 * Bin).level, decibels(1.0), 1e-5));
        QVERIFY(near(channelPower(spectrum, right, 0.5 * Bin).level, decibels(2.0), 1e-5));
    }

    void ninety_nine_per_cent_of_a_rectangle_are_occupied_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<double>("power");
        QTest::newRow("strong") << 80 << 119 << 1e-3;
        QTest::newRow("10 dB above the noise") << 80 << 119 << 1e-9;
        QTest::newRow("5 dB above the noise") << 80 << 119 << 3.16e-10;
        QTest::newRow("beside the centre") << 120 << 169 << 1e-3;
        QTest::newRow("one bin") << 42 << 42 << 1e-3;
        QTest::newRow("near the end") << 1 << 20 << 1e-3;
    }

    void ninety_nine_per_cent_of_a_rectangle_are_occupied()
    {
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(double, power);
        const MeasuredSpectrum spectrum = rectangle(first, last, power);
        const int bins = last - first + 1;
        const double middle = Centre + ((first + last) / 2.0 - Points / 2.0) * Bin;
        const Bandwidth band = occupiedBandwidth(spectrum);
        QCOMPARE(band.state, State::Valid);
        QVERIFY2(near(band.width(), 0.99 * bins * Bin, 1e-4), QByteArray::number(band.width()));
        QVERIFY(near(band.middle(), middle, 1e-4));

        const FrequencyError error = frequencyError(spectrum);
        QCOMPARE(error.state, State::Valid);
        QVERIFY(near(error.frequency, middle, 1e-4));
        QVERIFY(near(error.error, middle - Centre, 1e-4));

        const CarrierToNoise ratio = carrierToNoise(spectrum);
        QCOMPARE(ratio.state, State::Valid);
        QVERIFY(near(ratio.carrier, decibels(power * bins)));
        QVERIFY(near(ratio.density, decibels(power * bins / (Floor / (Bin * 1e6)))));
        QVERIFY(near(ratio.ratio, decibels(power / Floor / 0.99)));
        QVERIFY(near(ratio.bandwidth, 0.99 * bins * Bin, 1e-4));
    }

    void a_bandwidth_below_the_peak_is_interpolated_data()
    {
        QTest::addColumn<double>("index");
        QTest::addColumn<double>("halfWidth");
        for (const double index : {100.0, 100.3, 60.5}) {
            for (const double halfWidth : {1.0, 2.0, 3.3}) {
                QTest::addRow("at %g, %g bins", index, 2 * halfWidth) << index << halfWidth;
            }
        }
    }

    void a_bandwidth_below_the_peak_is_interpolated()
    {
        QFETCH(double, index);
        QFETCH(double, halfWidth);
        const MeasuredSpectrum spectrum = hill(index, halfWidth, 1e-2);
        // The level falls by 3 dB times the square of the distance; the peak may lie between
        // points.
        for (const auto& [down, half] :
            {std::pair(3.0, 1.0), std::pair(26.0, std::sqrt(26.0 / 3.0))}) {
            const Bandwidth band = bandwidthBelow(spectrum, down);
            QCOMPARE(band.state, State::Valid);
            QVERIFY2(near(band.width(), 2.0 * half * halfWidth * Bin, 0.35 * Bin),
                qPrintable(QStringLiteral("%1").arg(band.width() / Bin)));
            QVERIFY(near(band.middle(), Centre + (index - Points / 2.0) * Bin, 0.2 * Bin));
        }
    }

    // The logarithm of the power is interpolated from the bin outside, which counts as 30 dB below
    // the wanted level, to the first bin of the carrier.
    void a_steep_edge_is_found_between_two_bins()
    {
        constexpr double Down = 26.0;
        const Bandwidth band = bandwidthBelow(rectangle(50, 149, 1e-2), Down);
        QCOMPARE(band.state, State::Valid);
        const double outside = 1.0 - 30.0 / (30.0 + Down); // in bins, of the first and the last one
        const double low = Centre + (50.0 - outside - Points / 2.0) * Bin;
        const double high = Centre + (149.0 + outside - Points / 2.0) * Bin;
        QVERIFY2(near(band.low, low, 0.001 * Bin), QByteArray::number((band.low - low) / Bin));
        QVERIFY2(near(band.high, high, 0.001 * Bin), QByteArray::number((band.high - high) / Bin));
    }

    void the_highest_bin_may_be_the_last_one()
    {
        MeasuredSpectrum spectrum = rectangle(100, 104, 1e-3);
        spectrum.powers[104] = 4e-3F;
        const Bandwidth band = bandwidthBelow(spectrum, decibels(2.0));
        QCOMPARE(band.state, State::Valid);
        // Half of 4 lies halfway between 1 and 4.
        QVERIFY2(near(band.low, Centre + (103.5 - Points / 2.0) * Bin, 0.001 * Bin),
            QByteArray::number(band.low));
    }

    void a_level_in_the_noise_has_no_bandwidth()
    {
        const MeasuredSpectrum spectrum = rectangle(80, 119, 1e-8); // 20 dB
        QCOMPARE(bandwidthBelow(spectrum, 3.0).state, State::Valid);
        QCOMPARE(bandwidthBelow(spectrum, 26.0).state, State::InNoise);
    }

    void a_carrier_that_is_cut_is_beyond_the_span_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::newRow("left") << 0 << 30;
        QTest::newRow("right") << 170 << 199;
    }

    void a_carrier_that_is_cut_is_beyond_the_span()
    {
        QFETCH(int, first);
        QFETCH(int, last);
        const MeasuredSpectrum spectrum = rectangle(first, last, 1e-3);
        QCOMPARE(occupiedBandwidth(spectrum).state, State::BeyondSpan);
        QCOMPARE(bandwidthBelow(spectrum, 3.0).state, State::BeyondSpan);
        QCOMPARE(carrierToNoise(spectrum).state, State::BeyondSpan);
        QCOMPARE(frequencyError(spectrum).state, State::BeyondSpan);
        QCOMPARE(noiseFloor(spectrum).state, State::Valid); // The noise is beside it.
    }

    void noise_is_measured_with_and_without_a_carrier()
    {
        const double density = decibels(Floor / (Bin * 1e6));
        for (const MeasuredSpectrum& spectrum : {rectangle(0, -1, 0.0), rectangle(80, 119, 1.0)}) {
            const NoiseFloor noise = noiseFloor(spectrum);
            QCOMPARE(noise.state, State::Valid);
            QVERIFY(near(noise.level, decibels(Floor)));
            QVERIFY(near(noise.density, density));
        }
        QCOMPARE(noiseFloor({}).state, State::NoSpectrum);
    }

    void without_noise_there_is_no_ratio_to_it_data()
    {
        QTest::addColumn<MeasuredSpectrum>("spectrum");
        MeasuredSpectrum lowest = rectangle(80, 119, 1e-3);
        for (float& power : lowest.powers) {
            power = power > 1e-6F ? power : 1e-12F;
        }
        QTest::newRow("below the card's scale") << lowest;
        QTest::newRow("no bins left") << rectangle(8, 191, 1e-3);
    }

    void without_noise_there_is_no_ratio_to_it()
    {
        QFETCH(MeasuredSpectrum, spectrum);
        QCOMPARE(noiseFloor(spectrum).state, State::NoNoise);
        QVERIFY(carrierToNoise(spectrum).state != State::Valid);
    }

    void a_carrier_above_noise_below_the_scale_has_a_bandwidth()
    {
        MeasuredSpectrum spectrum = rectangle(80, 119, 1e-3);
        for (float& power : spectrum.powers) {
            power = power > 1e-6F ? power : 1e-12F;
        }
        QVERIFY(near(occupiedBandwidth(spectrum).width(), 0.99 * 40 * Bin, 1e-4));
        QCOMPARE(carrierToNoise(spectrum).state, State::NoNoise);
    }

    void an_overloaded_carrier_is_measured_as_it_is_seen()
    {
        QByteArray bytes(Points, '\x28'); // -100 dB
        bytes.replace(90, 20, QByteArray(20, '\xff'));
        SpectrumTrace trace;
        trace.add(bytes);
        QVERIFY(trace.over());
        const MeasuredSpectrum spectrum{trace.powers(), Centre, Width, trace.independentSpectra()};
        QVERIFY(near(occupiedBandwidth(spectrum).width(), 0.99 * 20 * Bin, 1e-3));
        QVERIFY(near(channelPower(spectrum, Centre - 0.05, 2.0).level, 7.5 + decibels(20.0)));
    }

    void every_state_but_valid_has_a_text_data()
    {
        QTest::addColumn<State>("state");
        QTest::addColumn<QString>("text");
        QTest::newRow("valid") << State::Valid << QString();
        QTest::newRow("no spectrum") << State::NoSpectrum << QStringLiteral("No spectrum");
        QTest::newRow("no carrier") << State::NoCarrier << QStringLiteral("No carrier");
        QTest::newRow("beyond") << State::BeyondSpan << QStringLiteral("Beyond the span");
        QTest::newRow("no noise") << State::NoNoise << QStringLiteral("No noise to see");
        QTest::newRow("in noise") << State::InNoise << QStringLiteral("Lost in noise");
    }

    void every_state_but_valid_has_a_text()
    {
        QFETCH(State, state);
        QTEST(stateText(state), "text");
    }

    void any_spectrum_has_the_bandwidths_of_the_plain_measurement_data()
    {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed = 1; seed <= 4; ++seed) {
            QTest::addRow("%u", seed) << seed;
        }
    }

    void any_spectrum_has_the_bandwidths_of_the_plain_measurement()
    {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        int valid = 0;
        for (int n = 0; n < 250; ++n) {
            const MeasuredSpectrum spectrum = plainMeasurements::anySpectrum(random);
            const plainMeasurements::Carrier carrier(spectrum);
            const bool isWhole = carrier.first > 0 && carrier.last < spectrum.powers.size() - 1;
            if (!isWhole) {
                const State state = carrier.first < 0 ? State::NoCarrier : State::BeyondSpan;
                QCOMPARE(bandwidthBelow(spectrum, 3.0).state, state);
                continue;
            }
            const plainMeasurements::Below plain(spectrum, carrier);
            const double tolerance = 1e-4 * spectrum.bin();
            QVERIFY(near(
                occupiedBandwidth(spectrum).width(), plain.occupied() * spectrum.bin(), tolerance));
            for (const double down : {3.0, 10.0, 26.0}) {
                const Bandwidth band = bandwidthBelow(spectrum, down);
                const Bandwidth expected = plain.band(down);
                QCOMPARE(band.state, expected.state);
                const QByteArray text = QByteArray::number(n) + ", bins too wide: " +
                    QByteArray::number((band.width() - expected.width()) / spectrum.bin());
                QVERIFY2(near(band.low, expected.low, tolerance), text);
                QVERIFY2(near(band.high, expected.high, tolerance), text);
                valid += band.state == State::Valid ? 1 : 0;
            }
        }
        QVERIFY2(valid > 100, QByteArray::number(valid));
    }
};

QN740_TEST_MAIN(tst_ChannelMeasurements)
#include "tst_ChannelMeasurements.moc"
