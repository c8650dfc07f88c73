#include "scopes/ConstellationMeter.h"
#include "scopes/NoiseEstimate.h"
#include "scopes/OrderFinder.h"
#include "scopes/SignalFeed.h"
#include "support/TestMain.h"
#include "tools/measure/OrderTrials.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr double Pi = 3.14159265358979323846;
using Complex = std::complex<double>;
using Order = ModulationOrder;

void feed(ConstellationMeter& meter, AnalyticPoints& points, int blocks)
{
    for (int block = 0; block < blocks; ++block) {
        const ReceivedPoints taken = points.take(256);
        meter.addBlock({taken.x.begin(), taken.x.end()}, {taken.y.begin(), taken.y.end()});
    }
}

AnalyticPoints pointsOf(Order order, double snr, quint32 seed = 3)
{
    return AnalyticPoints({{}, AnalyticPoints::randomOf(order), snr}, seed);
}

// Noise of about the signal's amplitude.
AnalyticPoints noiseAlone()
{
    return AnalyticPoints(
        {{}, [](std::mt19937& /*random*/, int /*symbol*/) { return Complex(); }, 3.0}, 3);
}

// Every ideal point equally often, distorted as told; no noise.
ReceivedPoints ideal(Order order, const PlaneMap& map, int repeats = 64)
{
    ReceivedPoints points;
    std::mt19937 random(5);
    const auto& alphabet = modulationOrder::points(order);
    for (int n = 0; n < repeats * static_cast<int>(alphabet.size()); ++n) {
        const Complex at = map(alphabet[random() % alphabet.size()]);
        points.x.push_back(at.real());
        points.y.push_back(at.imag());
    }
    return points;
}

// Symbols at their decisions.
void feed(ConstellationMeter& meter, const QString& text, int blocks)
{
    signalFeed::feed(meter, text, blocks, 1, 11);
}

} // namespace

class tst_ConstellationMeter : public QObject
{
    Q_OBJECT

private slots:
    void orders_have_the_names_that_the_operator_reads()
    {
        QCOMPARE(modulationOrder::name(Order::Bpsk), u"BPSK"_s);
        QCOMPARE(modulationOrder::name(Order::Qpsk), u"QPSK"_s);
        QCOMPARE(modulationOrder::name(Order::Psk8), u"8PSK"_s);
        QCOMPARE(modulationOrder::name(Order::Qam16), u"16QAM"_s);
        QCOMPARE(modulationOrder::name(Order::Unknown), u"unknown"_s);
    }

    void ideal_points_have_an_energy_of_one()
    {
        QVERIFY(modulationOrder::points(Order::Unknown).empty());
        const std::array<size_t, 4> counts{2, 4, 8, 16};
        for (size_t n = 0; n < counts.size(); ++n) {
            const auto& points = modulationOrder::points(static_cast<Order>(n + 1));
            QCOMPARE(points.size(), counts.at(n));
            double energy = 0.0;
            for (const Complex& point : points) {
                energy += std::norm(point) / static_cast<double>(points.size());
            }
            QVERIFY(std::abs(energy - 1.0) < 1e-12);
        }
    }

    void the_nearest_point_is_the_one_with_the_least_distance_data()
    {
        QTest::addColumn<int>("order");
        for (int n = 1; n <= 4; ++n) {
            QTest::newRow(qPrintable(modulationOrder::name(static_cast<Order>(n)))) << n;
        }
    }

    void the_nearest_point_is_the_one_with_the_least_distance()
    {
        QFETCH(int, order);
        const auto& points = modulationOrder::points(static_cast<Order>(order));
        std::mt19937 random(1);
        std::uniform_real_distribution<double> place(-1.6, 1.6);
        for (int trial = 0; trial < 2000; ++trial) {
            const Complex at(place(random), place(random));
            const size_t found = nearestPoint(static_cast<Order>(order), at.real(), at.imag());
            for (const Complex& point : points) {
                QVERIFY(std::norm(at - points.at(found)) <= std::norm(at - point) + 1e-12);
            }
        }
    }

    void without_an_order_no_point_is_near()
    {
        QCOMPARE(nearestPoint(Order::Unknown, 0.5, 0.5), size_t{0});
    }

    void a_map_and_its_inverse_leave_a_point_where_it_is()
    {
        const PlaneMap map{1.5, -0.25, 0.5, 0.75, 0.1, -0.2};
        const Complex point(0.3, -0.7);
        QVERIFY(std::abs(map.inverse()(map(point)) - point) < 1e-12);
        QVERIFY(std::abs(map.inverse().after(map)(point) - point) < 1e-12);
        const PlaneMap turn = PlaneMap::complexGain({0.0, 2.0}, {1.0, 0.0});
        QVERIFY(std::abs(turn({1.0, 0.0}) - Complex(1.0, 2.0)) < 1e-12);
    }

    // Each of them was kept for ever: its points are near those of the order that was there before.
    void an_order_is_given_up_when_another_signal_takes_its_place_data()
    {
        QTest::addColumn<int>("order");
        QTest::addColumn<QString>("next");
        const auto row = [](const char* name, Order order, const QString& next) {
            QTest::newRow(name) << int(order) << next;
        };
        row("BPSK, then 4PAM", Order::Bpsk, u"4PAM"_s);
        row("BPSK, then a carrier", Order::Bpsk, u"carrier, 1/2 turn per symbol"_s);
        row("QPSK, then MSK", Order::Qpsk, u"MSK"_s);
        row("QPSK, then OQPSK", Order::Qpsk, u"OQPSK at the decisions of I"_s);
        row("QPSK, then a carrier", Order::Qpsk, u"carrier, 1/4 turn per symbol"_s);
        row("QPSK, then BPSK that turns", Order::Qpsk, u"BPSK, 1/4 turn per symbol"_s);
        row("8PSK, then pi/4-QPSK", Order::Psk8, u"pi/4-QPSK"_s);
        row("8PSK, then a carrier", Order::Psk8, u"carrier, 1/8 turn per symbol"_s);
        row("8PSK, then QPSK that turns", Order::Psk8, u"QPSK, 1/8 turn per symbol"_s);
    }

    void an_order_is_given_up_when_another_signal_takes_its_place()
    {
        QFETCH(int, order);
        QFETCH(QString, next);
        ConstellationMeter meter;
        AnalyticPoints before = pointsOf(static_cast<Order>(order), 20.0);
        feed(meter, before, ConstellationMeter::MaxBlocks);
        QCOMPARE(int(meter.figures().order), order);
        const auto others = orderTrials::otherSignals(20.0);
        const auto other = std::find_if(others.cbegin(), others.cend(),
            [&next](const AnalyticPoints::Settings& signal) { return signal.name == next; });
        QVERIFY(other != others.cend());
        AnalyticPoints after(*other, 7);
        for (int reading = 0; reading < 6; ++reading) {
            feed(meter, after, 4);
            QVERIFY(meter.figures().order == Order::Unknown || int(meter.figures().order) == order);
        }
        QCOMPARE(int(meter.figures().order), int(Order::Unknown));
    }

    // What leaves the range of the line becomes four clean points in the corners.
    void an_overdriven_signal_has_no_order_data()
    {
        QTest::addColumn<double>("snr");
        QTest::newRow("noise") << -40.0;
        QTest::newRow("noise and QPSK") << -12.0;
    }

    void an_overdriven_signal_has_no_order()
    {
        QFETCH(double, snr);
        AnalyticPoints good = pointsOf(Order::Qpsk, 20.0);
        AnalyticPoints loud = pointsOf(Order::Qpsk, snr);
        QVERIFY(!orderFinder::find(loud.take(4080)).valid);
        const ConstellationFit before = orderFinder::find(good.take(4080));
        QVERIFY(before.valid);
        QVERIFY(!orderFinder::keep(loud.take(4080), before).valid);
    }

    void the_moments_are_those_of_the_constellation_data()
    {
        QTest::addColumn<int>("order");
        QTest::addColumn<double>("fourth");
        QTest::addColumn<double>("eighth");
        // Swami and Sadler, table 1, for C40 and C42; E s⁸ by hand: 2.2032 / 0.68² for 16QAM.
        QTest::newRow("QPSK") << int(Order::Qpsk) << 1.0 << 1.0;
        QTest::newRow("8PSK") << int(Order::Psk8) << 0.0 << 1.0;
        QTest::newRow("16QAM") << int(Order::Qam16) << 1.0 << 4.7647;
    }

    void the_moments_are_those_of_the_constellation()
    {
        QFETCH(int, order);
        AnalyticPoints source = pointsOf(static_cast<Order>(order), 20.0);
        const ReceivedPoints points = source.take(40000);
        PointMoments moments = PointMoments::secondOrder(points);
        moments.addHigherOrders(points);
        QTEST(std::round(moments.fourth() * 10.0) / 10.0, "fourth");
        QFETCH(double, eighth);
        QVERIFY2(std::abs(moments.eighth() - eighth) < 0.05 * eighth,
            qPrintable(QString::number(moments.eighth())));
    }

    void a_fit_finds_the_map_that_distorted_the_points_data()
    {
        QTest::addColumn<int>("order");
        for (int n = 2; n <= 4; ++n) {
            QTest::newRow(qPrintable(modulationOrder::name(static_cast<Order>(n)))) << n;
        }
    }

    void a_fit_finds_the_map_that_distorted_the_points()
    {
        QFETCH(int, order);
        const PlaneMap map{0.41, 0.02, -0.01, 0.38, 0.02, -0.03};
        const ReceivedPoints points = ideal(static_cast<Order>(order), map);
        const auto sums = ConstellationSums::of(points, static_cast<Order>(order), map.inverse());
        const ConstellationFit fit = ConstellationFit::of(sums, static_cast<Order>(order));
        QVERIFY(fit.valid);
        QVERIFY(std::abs(fit.toReceived.xx - map.xx) < 1e-9);
        QVERIFY(std::abs(fit.toReceived.xy - map.xy) < 1e-9);
        QVERIFY(std::abs(fit.toReceived.yx - map.yx) < 1e-9);
        QVERIFY(std::abs(fit.toReceived.yy - map.yy) < 1e-9);
        QVERIFY(std::abs(fit.origin() - Complex(0.02, -0.03)) < 1e-9);
        QVERIFY(fit.residual < 1e-12);
    }

    void too_few_points_have_no_fit()
    {
        const auto sums = ConstellationSums::of(ideal(Order::Qpsk, {}, 3), Order::Qpsk, PlaneMap());
        QVERIFY(!ConstellationFit::of(sums, Order::Qpsk).valid);
        QVERIFY(!ConstellationFit::of({}, Order::Qam16).valid);
    }

    void clean_points_are_found_however_they_are_turned_data()
    {
        QTest::addColumn<int>("order");
        QTest::addColumn<double>("degrees");
        for (int n = 1; n <= 4; ++n) {
            for (const double degrees : {0.0, 17.0, 45.0, 90.0, 133.0}) {
                QTest::addRow("%s, %g degrees",
                    qPrintable(modulationOrder::name(static_cast<Order>(n))), degrees)
                    << n << degrees;
            }
        }
    }

    void clean_points_are_found_however_they_are_turned()
    {
        QFETCH(int, order);
        QFETCH(double, degrees);
        const PlaneMap turn = PlaneMap::complexGain(std::polar(0.4, degrees * Pi / 180.0));
        const ConstellationFit fit =
            orderFinder::find(ideal(static_cast<Order>(order), turn, 2048 / (1 << order)));
        QCOMPARE(int(fit.order), order);
        QVERIFY(std::abs(std::abs(fit.gain()) - 0.4) < 1e-6);
    }

    void nothing_is_found_in_data_without_a_signal_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<int>("count");
        QTest::newRow("no point") << 0.0 << 0.0 << 0;
        QTest::newRow("one point") << 0.1 << 0.2 << 1;
        QTest::newRow("zeros") << 0.0 << 0.0 << 4080;
        QTest::newRow("a constant") << 0.4 << -0.3 << 4080;
        QTest::newRow("full scale") << 32767.0 / 32768.0 << -1.0 << 4080;
    }

    void nothing_is_found_in_data_without_a_signal()
    {
        QFETCH(double, x);
        QFETCH(double, y);
        QFETCH(int, count);
        const std::vector<double> i(static_cast<size_t>(count), x);
        const std::vector<double> q(static_cast<size_t>(count), y);
        QVERIFY(!orderFinder::find({i, q}).valid);
    }

    // The table of NoiseEstimate.cpp, by a second integration: in polar coordinates around the
    // noise's own centre.
    void the_correction_for_wrong_decisions_is_what_integration_gives_data()
    {
        QTest::addColumn<int>("order");
        QTest::addColumn<double>("snr");
        for (int n = 1; n <= 3; ++n) {
            for (const double snr : {2.0, 5.0, 8.0, 12.0}) {
                QTest::addRow(
                    "%s %g dB", qPrintable(modulationOrder::name(static_cast<Order>(n))), snr)
                    << n << snr;
            }
        }
    }

    void the_correction_for_wrong_decisions_is_what_integration_gives()
    {
        QFETCH(int, order);
        QFETCH(double, snr);
        const double ratio = std::pow(10.0, snr / 10.0);
        const double sector = 2.0 * Pi / (1 << order);
        double projected = 0.0;
        double weights = 0.0;
        for (int step = 0; step < 500; ++step) {
            const double r = 0.005 + 0.01 * step;
            for (int degrees = 0; degrees < 360; ++degrees) {
                const double weight = r * std::exp(-r * r / 2.0);
                const Complex noise = std::polar(r / std::sqrt(2.0), degrees * Pi / 180.0);
                const Complex z = std::sqrt(ratio) + noise;
                const double off = std::arg(z) - sector * std::round(std::arg(z) / sector);
                projected += weight * std::abs(z) * std::cos(off);
                weights += weight;
            }
        }
        projected *= projected / (weights * weights);
        const double found = 10.0 * std::log10(projected / (1.0 + ratio - projected));
        const double corrected = trueSignalToNoise(static_cast<Order>(order), found);
        QVERIFY2(std::abs(corrected - snr) < 0.05, qPrintable(QString::number(corrected)));
    }

    void a_poor_ratio_is_limited_and_a_good_one_is_left()
    {
        QCOMPARE(trueSignalToNoise(Order::Psk8, 1.0), 0.0);
        QCOMPARE(trueSignalToNoise(Order::Psk8, 25.0), 25.0);
    }

    void the_figures_come_with_the_fourth_block_and_go_with_clear()
    {
        ConstellationMeter meter;
        AnalyticPoints points = pointsOf(Order::Qpsk, 20.0);
        feed(meter, points, 3);
        QVERIFY(!meter.figures().valid);
        feed(meter, points, 1);
        QCOMPARE(meter.blockCount(), 4);
        QVERIFY(meter.figures().valid);
        QCOMPARE(meter.figures().order, Order::Qpsk);
        meter.clear();
        QCOMPARE(meter.blockCount(), 0);
        QVERIFY(!meter.figures().valid);
        QCOMPARE(meter.figures().order, Order::Unknown);
        QVERIFY(meter.figures().idealPoints.isEmpty());
    }

    void no_more_than_sixteen_blocks_are_kept()
    {
        ConstellationMeter meter;
        AnalyticPoints points = pointsOf(Order::Bpsk, 20.0);
        feed(meter, points, 100);
        QCOMPARE(meter.blockCount(), ConstellationMeter::MaxBlocks);
    }

    void blocks_of_any_length_do_no_harm()
    {
        ConstellationMeter meter;
        AnalyticPoints points = pointsOf(Order::Qam16, 25.0);
        feed(meter, points, 16);
        QCOMPARE(meter.figures().order, Order::Qam16);
        for (int n = 0; n < 20; ++n) {
            meter.addBlock({}, {});
            meter.addBlock({0.1}, {0.1, 0.2});
            meter.figures();
        }
        QVERIFY(!meter.figures().valid);
    }

    void the_ideal_points_lie_where_the_received_ones_do()
    {
        ConstellationMeter meter;
        feed(meter, u"qpsk:snr=30:level=0.4"_s, 16);
        const ConstellationFigures& figures = meter.figures();
        QCOMPARE(figures.idealPoints.size(), 4);
        for (const QPointF& point : figures.idealPoints) {
            QVERIFY(std::abs(std::abs(point.x()) - 0.4 / std::sqrt(2.0)) < 0.003);
            QVERIFY(std::abs(std::abs(point.y()) - 0.4 / std::sqrt(2.0)) < 0.003);
        }
    }

    void an_offset_and_an_imbalance_are_errors_of_the_ratio()
    {
        ConstellationMeter meter;
        feed(meter, u"qpsk:snr=30:level=0.3:dci=6:dcq=8"_s, 16);
        const ConstellationFigures offset = meter.figures();
        // 10 % of the amplitude are 0.01 of the power, and the noise is 0.001.
        QVERIFY(std::abs(offset.merDb + 10.0 * std::log10(0.011)) < 0.2);
        QVERIFY(std::abs(offset.offsetPercent - 10.0) < 0.3);
        QVERIFY(std::abs(offset.offsetDb + 20.0) < 0.3);
        QVERIFY(std::abs(offset.evmPercent - 100.0 * std::sqrt(0.011)) < 0.2);
        meter.clear();
        feed(meter, u"qpsk:snr=40:level=0.3:imbalance=2"_s, 16);
        // Gains of 1.122 and 1 / 1.122 are 1.0066 for all and ±0.1154 for one component.
        const double expected = 20.0 * std::log10(1.0066 / 0.1154);
        QVERIFY2(std::abs(meter.figures().merDb - expected) < 0.3,
            qPrintable(QString::number(meter.figures().merDb)));
    }

    void an_order_that_is_found_again_is_kept_at_one_bad_reading()
    {
        ConstellationMeter meter;
        AnalyticPoints good = pointsOf(Order::Qpsk, 20.0);
        AnalyticPoints noise = noiseAlone();
        for (int time = 0; time < 2; ++time) {
            feed(meter, good, ConstellationMeter::MaxBlocks);
            QCOMPARE(int(meter.figures().order), int(Order::Qpsk));
            feed(meter, noise, ConstellationMeter::MaxBlocks);
            QCOMPARE(int(meter.figures().order), int(Order::Qpsk));
            feed(meter, noise, 1);
            QCOMPARE(int(meter.figures().order), int(Order::Unknown));
        }
    }

    void below_four_blocks_nothing_is_found()
    {
        ConstellationMeter meter;
        AnalyticPoints points = pointsOf(Order::Qpsk, 25.0);
        feed(meter, points, 3);
        QVERIFY(!meter.figures().valid);
        feed(meter, points, 1);
        QVERIFY(meter.figures().valid);
    }

    void perfect_points_have_the_figures_of_the_limits()
    {
        const PlaneMap map = PlaneMap::complexGain({0.3, 0.1});
        const ReceivedPoints points = ideal(Order::Qpsk, map);
        const ConstellationFigures figures =
            constellationFigures(points, orderFinder::find(points));
        QVERIFY(figures.valid && figures.imbalanceValid);
        QVERIFY2(std::abs(figures.merDb - 100.0) < 1e-6, QByteArray::number(figures.merDb));
        QVERIFY(std::abs(figures.evmPercent - 1e-3) < 1e-9);
        QCOMPARE(figures.offsetDb, -100.0);
    }

    // I has 1.2 times the gain of Q, and their axes are 4 degrees too near to each other, however
    // the constellation is turned.
    void an_imbalance_is_that_of_the_axes_data()
    {
        QTest::addColumn<double>("turn");
        for (const double turn : {0.0, 10.0, 25.0, 40.0}) {
            QTest::addRow("turned by %g degrees", turn) << turn;
        }
    }

    void an_imbalance_is_that_of_the_axes()
    {
        QFETCH(double, turn);
        const double skew = 4.0 * Pi / 180.0;
        const PlaneMap axes{1.2, 0.0, std::sin(skew), std::cos(skew), 0.0, 0.0};
        const PlaneMap map = axes.after(PlaneMap::complexGain(std::polar(0.3, turn * Pi / 180.0)));
        ConstellationFit fit;
        fit.order = Order::Qpsk;
        fit.valid = true;
        fit.toReceived = map;
        fit.count = 4000.0;
        fit.residual = 1e-6;
        const ConstellationFigures figures = constellationFigures(ideal(Order::Qpsk, map), fit);
        QVERIFY(figures.imbalanceValid);
        QVERIFY(std::abs(figures.imbalanceDb - 20.0 * std::log10(1.2)) < 1e-9);
        QVERIFY(std::abs(figures.quadratureDegrees - 4.0) < 1e-9);
        // Noise, image and offset together are the error.
        fit.toReceived.x0 = 0.01;
        const double gain = std::norm(fit.gain());
        const double error = 1e-6 + std::norm(fit.image()) + 1e-4;
        const double ratio = constellationFigures(ideal(Order::Qpsk, fit.toReceived), fit).merDb;
        QVERIFY(std::abs(ratio - 10.0 * std::log10(gain / error)) < 1e-6);
    }

    // Three deviations of an angle are 0.5 degrees at most: with 1,000 points at 22.93 dB.
    void an_imbalance_is_shown_once_noise_is_low_enough_data()
    {
        QTest::addColumn<double>("count");
        QTest::addColumn<double>("db");
        QTest::addColumn<bool>("shown");
        const double limit = 10.0 * std::log10(2.0 / 1000.0 * std::pow(3.0 * 360.0 / Pi, 2));
        QTest::newRow("just enough") << 1000.0 << limit + 0.01 << true;
        QTest::newRow("just too little") << 1000.0 << limit - 0.01 << false;
        QTest::newRow("twice the points") << 2000.0 << limit - 3.0 << true;
        QTest::newRow("half the points") << 500.0 << limit + 3.0 << false;
    }

    void an_imbalance_is_shown_once_noise_is_low_enough()
    {
        QFETCH(double, count);
        QFETCH(double, db);
        ConstellationFit fit;
        fit.order = Order::Qpsk;
        fit.valid = true;
        fit.toReceived = PlaneMap::complexGain(0.5);
        fit.count = count;
        fit.residual = 0.25 / std::pow(10.0, db / 10.0);
        QTEST(constellationFigures({}, fit).imbalanceValid, "shown");
    }

    void bpsk_has_no_imbalance()
    {
        ConstellationMeter meter;
        feed(meter, u"bpsk:snr=30"_s, 16);
        QCOMPARE(meter.figures().order, Order::Bpsk);
        QVERIFY(!meter.figures().imbalanceValid);
    }

    void an_imbalance_is_hidden_when_noise_makes_it_uncertain()
    {
        ConstellationMeter meter;
        feed(meter, u"qpsk:snr=14"_s, 16);
        QVERIFY(meter.figures().valid && !meter.figures().imbalanceValid);
        meter.clear();
        feed(meter, u"qpsk:snr=22"_s, 16);
        QVERIFY(meter.figures().imbalanceValid);
    }

    // 8 dB is too little to call 8PSK or 16QAM by name, but enough to go on doing so.
    void an_order_is_kept_longer_than_it_takes_to_find_it_data()
    {
        QTest::addColumn<int>("order");
        QTest::newRow("8PSK") << int(Order::Psk8);
        QTest::newRow("16QAM") << int(Order::Qam16);
    }

    void an_order_is_kept_longer_than_it_takes_to_find_it()
    {
        QFETCH(int, order);
        AnalyticPoints good = pointsOf(static_cast<Order>(order), 25.0);
        AnalyticPoints weak = pointsOf(static_cast<Order>(order), 8.0);
        ConstellationMeter fresh;
        feed(fresh, weak, 16);
        QVERIFY(!fresh.figures().valid);
        ConstellationMeter meter;
        feed(meter, good, 16);
        for (int block = 0; block < 40; ++block) {
            QCOMPARE(int(meter.figures().order), order);
            feed(meter, weak, 1);
        }
    }

    void another_order_is_found_by_way_of_unknown_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        for (int from = 1; from <= 4; ++from) {
            for (int to = 0; to <= 4; ++to) {
                if (from != to) {
                    QTest::addRow("%s to %s",
                        qPrintable(modulationOrder::name(static_cast<Order>(from))),
                        to == 0 ? "noise"
                                : qPrintable(modulationOrder::name(static_cast<Order>(to))))
                        << from << to;
                }
            }
        }
    }

    void another_order_is_found_by_way_of_unknown()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        AnalyticPoints first = pointsOf(static_cast<Order>(from), 25.0);
        AnalyticPoints then = to == 0 ? noiseAlone() : pointsOf(static_cast<Order>(to), 25.0);
        ConstellationMeter meter;
        feed(meter, first, 16);
        QCOMPARE(int(meter.figures().order), from);
        int before = from;
        for (int block = 0; block < 20; ++block) {
            feed(meter, then, 1);
            const int order = int(meter.figures().order);
            QVERIFY(order == before || (order == 0) != (before == 0));
            QVERIFY(order == from || order == to || order == 0);
            before = order;
        }
        QCOMPARE(before, to);
    }

    void one_failure_does_not_end_an_order()
    {
        AnalyticPoints good = pointsOf(Order::Qpsk, 20.0);
        ConstellationMeter meter;
        feed(meter, good, 16);
        QVERIFY(meter.figures().valid);
        AnalyticPoints noise = noiseAlone();
        feed(meter, noise, 16);
        QCOMPARE(meter.figures().order, Order::Qpsk);
        feed(meter, noise, 1);
        QCOMPARE(meter.figures().order, Order::Unknown);
    }

    void figures_without_a_new_block_stay_as_they_are()
    {
        AnalyticPoints good = pointsOf(Order::Qpsk, 20.0);
        ConstellationMeter meter;
        feed(meter, good, 16);
        QVERIFY(meter.figures().valid);
        AnalyticPoints noise = noiseAlone();
        feed(meter, noise, 16);
        for (int n = 0; n < 5; ++n) {
            QVERIFY(meter.figures().valid); // one failure, however often it is asked
        }
    }
};

QN740_TEST_MAIN(tst_ConstellationMeter)
#include "tst_ConstellationMeter.moc"
