#include "scopes/OrderLimits.h"
#include "support/TestMain.h"

// Each bound from both sides, nearer than a tenth of it where the figure allows that.

namespace {

using Order = ModulationOrder;

constexpr double Top = 32767.0 / 32768; // the outermost sample of the line

// Moments with these ratios: with a kurtosis of 1, |C42| is 1.
PointMoments momentsOf(double fourth, double eighth)
{
    PointMoments moments;
    moments.kurtosis = 1.0;
    moments.z4 = std::polar(fourth, 0.7);
    moments.z8 = std::polar(eighth, -1.9);
    return moments;
}

ConstellationFit goodFit()
{
    ConstellationFit fit;
    fit.order = Order::Qpsk;
    fit.valid = true;
    fit.toReceived = PlaneMap::complexGain({0.3, 0.4}); // of an amplitude of 0.5
    fit.minShare = 0.9;
    fit.maxShare = 1.1;
    return fit;
}

// What is left, with these kurtoses and powers; every step of 8PSK was counted 100 times.
DecisionCheck noiseWith(
    double kurtosisX, double kurtosisY, double powerX = 4.0, double powerY = 4.0)
{
    DecisionCheck check;
    check.squareX = powerX;
    check.squareY = powerY;
    check.fourthX = kurtosisX * powerX * powerX;
    check.fourthY = kurtosisY * powerY * powerY;
    check.steps.fill(100);
    check.stepCount = 800;
    return check;
}

std::vector<double> samplesWith(int atLimit, int all, double limit)
{
    std::vector<double> samples(static_cast<size_t>(all), 0.1);
    for (int n = 0; n < atLimit; ++n) {
        samples.at(static_cast<size_t>(n)) = n % 2 == 0 ? limit : -limit;
    }
    return samples;
}

} // namespace

class tst_OrderLimits : public QObject
{
    Q_OBJECT

private slots:
    void moments_name_one_candidate_data()
    {
        QTest::addColumn<double>("fourth");
        QTest::addColumn<double>("eighth");
        QTest::addColumn<int>("order");
        const auto row = [](double fourth, double eighth, Order order) {
            QTest::addRow("%g, %g", fourth, eighth) << fourth << eighth << int(order);
        };
        row(1.0, 1.0, Order::Qpsk);
        row(0.76, 1.0, Order::Qpsk);
        row(0.74, 1.0, Order::Unknown);
        row(1.29, 1.0, Order::Qpsk);
        row(1.31, 1.0, Order::Unknown);
        row(1.0, 0.51, Order::Qpsk);
        row(1.0, 0.49, Order::Unknown);
        row(1.0, 2.29, Order::Qpsk);
        row(1.0, 2.31, Order::Unknown);
        row(0.0, 1.0, Order::Psk8);
        row(0.24, 1.0, Order::Psk8);
        row(0.26, 1.0, Order::Unknown);
        row(0.1, 0.46, Order::Psk8);
        row(0.1, 0.44, Order::Unknown);
        row(0.1, 1.69, Order::Psk8);
        row(0.1, 1.71, Order::Unknown);
        row(1.0, 4.76, Order::Qam16);
        row(0.76, 4.76, Order::Qam16);
        row(0.74, 4.76, Order::Unknown);
        row(1.29, 4.76, Order::Qam16);
        row(1.31, 4.76, Order::Unknown);
        row(1.0, 3.01, Order::Qam16);
        row(1.0, 2.99, Order::Unknown);
        row(1.0, 7.49, Order::Qam16);
        row(1.0, 7.51, Order::Unknown);
        row(0.0, 0.0, Order::Unknown);
        row(0.5, 1.0, Order::Unknown);
    }

    void moments_name_one_candidate()
    {
        QFETCH(double, fourth);
        QFETCH(double, eighth);
        QTEST(int(orderLimits::candidateOf(momentsOf(fourth, eighth))), "order");
    }

    void moments_may_leave_the_range_of_the_search_by_a_little_data()
    {
        QTest::addColumn<int>("order");
        QTest::addColumn<double>("fourth");
        QTest::addColumn<double>("eighth");
        QTest::addColumn<bool>("expected");
        const auto row = [](Order order, double fourth, double eighth, bool expected) {
            QTest::addRow("%d: %g, %g", int(order), fourth, eighth)
                << int(order) << fourth << eighth << expected;
        };
        row(Order::Qpsk, 0.61, 1.0, true);
        row(Order::Qpsk, 0.59, 1.0, false);
        row(Order::Qpsk, 1.49, 1.0, true);
        row(Order::Qpsk, 1.51, 1.0, false);
        row(Order::Qpsk, 1.0, 0.31, true);
        row(Order::Qpsk, 1.0, 0.29, false);
        row(Order::Qpsk, 1.0, 2.59, true);
        row(Order::Qpsk, 1.0, 2.61, false);
        row(Order::Psk8, 0.0, 1.0, true);
        row(Order::Psk8, 0.39, 1.0, true);
        row(Order::Psk8, 0.41, 1.0, false);
        row(Order::Psk8, 0.1, 0.31, true);
        row(Order::Psk8, 0.1, 0.29, false);
        row(Order::Psk8, 0.1, 1.99, true);
        row(Order::Psk8, 0.1, 2.01, false);
        row(Order::Qam16, 0.41, 0.0, true);
        row(Order::Qam16, 0.39, 0.0, false);
        row(Order::Qam16, 1.79, 100.0, true);
        row(Order::Qam16, 1.81, 100.0, false);
        row(Order::Unknown, 1.0, 1.0, false);
    }

    void moments_may_leave_the_range_of_the_search_by_a_little()
    {
        QFETCH(int, order);
        QFETCH(double, fourth);
        QFETCH(double, eighth);
        QTEST(orderLimits::momentsMayBeOf(momentsOf(fourth, eighth), static_cast<Order>(order)),
            "expected");
    }

    void the_bounds_of_moments_are_within_them_data()
    {
        QTest::addColumn<double>("fourth");
        QTest::addColumn<double>("eighth");
        QTest::addColumn<int>("found");
        QTest::addColumn<int>("kept"); // the same order, within the wider bounds
        const auto row = [](double fourth, double eighth, Order found, Order kept) {
            QTest::addRow("%g, %g", fourth, eighth) << fourth << eighth << int(found) << int(kept);
        };
        row(0.75, 1.0, Order::Qpsk, Order::Qpsk);
        row(1.3, 1.0, Order::Qpsk, Order::Qpsk);
        row(1.0, 0.5, Order::Qpsk, Order::Qpsk);
        row(1.0, 2.3, Order::Qpsk, Order::Qpsk);
        row(0.25, 1.0, Order::Psk8, Order::Psk8);
        row(0.6, 1.0, Order::Unknown, Order::Qpsk);
        row(1.5, 1.0, Order::Unknown, Order::Qpsk);
        row(0.4, 1.0, Order::Unknown, Order::Psk8);
        row(0.4, 9.0, Order::Unknown, Order::Qam16);
        row(1.8, 9.0, Order::Unknown, Order::Qam16);
    }

    void the_bounds_of_moments_are_within_them()
    {
        QFETCH(double, fourth);
        QFETCH(double, eighth);
        QFETCH(int, kept);
        PointMoments moments;
        moments.kurtosis = 1.0;
        moments.z4 = fourth;
        moments.z8 = eighth;
        QTEST(int(orderLimits::candidateOf(moments)), "found");
        QVERIFY(orderLimits::momentsMayBeOf(moments, static_cast<Order>(kept)));
    }

    void a_line_has_five_times_the_power_along_it()
    {
        PointMoments moments;
        moments.axisRatio = 5.0;
        QVERIFY(orderLimits::momentsMayBeOf(moments, Order::Bpsk));
        moments.axisRatio = 4.9;
        QVERIFY(!orderLimits::momentsMayBeOf(moments, Order::Bpsk));
    }

    void a_fit_has_to_reach_a_ratio_data()
    {
        QTest::addColumn<int>("order");
        QTest::addColumn<double>("find");
        QTest::addColumn<double>("keep");
        QTest::newRow("BPSK") << int(Order::Bpsk) << 5.0 << 4.0;
        QTest::newRow("QPSK") << int(Order::Qpsk) << 7.5 << 6.5;
        QTest::newRow("8PSK") << int(Order::Psk8) << 11.3 << 8.4;
        QTest::newRow("16QAM") << int(Order::Qam16) << 15.0 << 10.0;
    }

    void a_fit_has_to_reach_a_ratio()
    {
        QFETCH(int, order);
        QTEST(orderLimits::minDbToFind(static_cast<Order>(order)), "find");
        QTEST(orderLimits::minDbToKeep(static_cast<Order>(order)), "keep");
    }

    void a_shape_is_plausible_with_all_points_about_equally_frequent()
    {
        ConstellationFit fit = goodFit();
        QVERIFY(orderLimits::shapeIsPlausible(fit));
        fit.valid = false;
        QVERIFY(!orderLimits::shapeIsPlausible(fit));
        fit = goodFit();
        fit.minShare = 0.4;
        fit.maxShare = 2.2;
        QVERIFY(orderLimits::shapeIsPlausible(fit));
        fit.minShare = 0.39;
        QVERIFY(!orderLimits::shapeIsPlausible(fit));
        fit.minShare = 0.4;
        fit.maxShare = 2.21;
        QVERIFY(!orderLimits::shapeIsPlausible(fit));
    }

    void the_origin_lies_within_0_6_of_the_amplitude()
    {
        ConstellationFit fit = goodFit();
        for (const double inside : {0.29, 0.3}) {
            fit.toReceived.x0 = inside;
            QVERIFY(orderLimits::shapeIsPlausible(fit));
        }
        fit.toReceived.x0 = 0.31;
        QVERIFY(!orderLimits::shapeIsPlausible(fit));
        fit.toReceived.x0 = 0.0;
        fit.toReceived.y0 = -0.31;
        QVERIFY(!orderLimits::shapeIsPlausible(fit));
    }

    void samples_at_the_largest_magnitude_are_counted()
    {
        QCOMPARE(orderLimits::limitedShare({}), 0.0);
        QCOMPARE(orderLimits::limitedShare({0.5}), 1.0);
        QCOMPARE(orderLimits::limitedShare({0.1, -0.5, 0.5, 0.4}), 0.5);
        // The lowest sample of the line has a magnitude of its own, and is limited as well.
        QCOMPARE(orderLimits::limitedShare({-1.0, Top, 0.5, 0.4}), 0.5);
    }

    void three_of_a_hundred_samples_may_be_outermost_ones_data()
    {
        QTest::addColumn<double>("limit");
        QTest::addColumn<int>("inI");
        QTest::addColumn<int>("inQ");
        QTest::addColumn<bool>("overdriven");
        QTest::newRow("3 in each") << Top << 3 << 3 << false;
        QTest::newRow("4 in I") << Top << 4 << 0 << true;
        QTest::newRow("4 in Q") << Top << 0 << 4 << true;
        QTest::newRow("4 in both") << 1.0 << 4 << 4 << true;
        QTest::newRow("below the outermost") << 32766.0 / 32768 << 100 << 100 << false;
    }

    void three_of_a_hundred_samples_may_be_outermost_ones()
    {
        QFETCH(double, limit);
        QFETCH(int, inI);
        QFETCH(int, inQ);
        QTEST(
            orderLimits::isOverdriven({samplesWith(inI, 100, limit), samplesWith(inQ, 100, limit)}),
            "overdriven");
        QVERIFY(!orderLimits::isOverdriven({}));
    }

    // The mean number of each step is the count over the points: a half of it is enough.
    void each_step_is_half_as_frequent_as_the_mean_at_least_data()
    {
        QTest::addColumn<int>("order");
        QTest::addColumn<int>("kinds");
        QTest::newRow("BPSK") << int(Order::Bpsk) << 2;
        QTest::newRow("QPSK") << int(Order::Qpsk) << 4;
        QTest::newRow("8PSK") << int(Order::Psk8) << 8;
    }

    void each_step_is_half_as_frequent_as_the_mean_at_least()
    {
        QFETCH(int, order);
        QFETCH(int, kinds);
        for (int rare = 0; rare < kinds; ++rare) {
            DecisionCheck check;
            for (int step = 0; step < kinds; ++step) {
                check.steps.at(static_cast<size_t>(step)) = 1000;
            }
            int& fewest = check.steps.at(static_cast<size_t>(rare));
            check.stepCount = 1000 * kinds;
            fewest = 500;
            QVERIFY(orderLimits::stepsAreOfData(check, static_cast<Order>(order)));
            fewest = 499;
            QVERIFY(!orderLimits::stepsAreOfData(check, static_cast<Order>(order)));
        }
        QVERIFY(orderLimits::stepsAreOfData(DecisionCheck(), Order::Qam16));
    }

    void what_is_left_has_the_kurtosis_of_noise_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<bool>("isNoise");
        QTest::addColumn<bool>("mayBeNoise");
        QTest::newRow("noise") << 3.0 << 3.0 << true << true;
        QTest::newRow("2.25 along I") << 2.25 << 3.0 << true << true;
        QTest::newRow("2.15 along I") << 2.15 << 3.0 << false << true;
        QTest::newRow("1.85 along I") << 1.85 << 3.0 << false << true;
        QTest::newRow("1.75 along I") << 1.75 << 3.0 << false << false;
        QTest::newRow("2.2 along I") << 2.2 << 3.0 << true << true;
        QTest::newRow("1.8 along I") << 1.8 << 3.0 << false << true;
        QTest::newRow("2.2 along Q") << 3.0 << 2.2 << true << true;
        QTest::newRow("1.8 along Q") << 3.0 << 1.8 << false << true;
        QTest::newRow("2.25 along Q") << 3.0 << 2.25 << true << true;
        QTest::newRow("2.15 along Q") << 3.0 << 2.15 << false << true;
        QTest::newRow("1.85 along Q") << 3.0 << 1.85 << false << true;
        QTest::newRow("1.75 along Q") << 3.0 << 1.75 << false << false;
    }

    void what_is_left_has_the_kurtosis_of_noise()
    {
        QFETCH(double, x);
        QFETCH(double, y);
        QTEST(orderLimits::residualIsNoise(noiseWith(x, y)), "isNoise");
        QTEST(orderLimits::residualMayBeNoise(noiseWith(x, y)), "mayBeNoise");
    }

    void what_is_left_has_about_the_same_power_along_both_axes()
    {
        const auto isNoise = [](double x, double y) {
            return orderLimits::residualIsNoise(noiseWith(3.0, 3.0, x, y));
        };
        const auto mayBe = [](double x, double y) {
            return orderLimits::residualMayBeNoise(noiseWith(3.0, 3.0, x, y));
        };
        QVERIFY(isNoise(3.0, 1.0) && isNoise(1.0, 3.0));
        QVERIFY(!isNoise(3.1, 1.0) && !isNoise(1.0, 3.1));
        QVERIFY(mayBe(4.0, 1.0) && mayBe(1.0, 4.0));
        QVERIFY(!mayBe(4.1, 1.0) && !mayBe(1.0, 4.1));
    }

    void a_constellation_is_found_with_noise_or_without_any()
    {
        const auto found = [](const DecisionCheck& check, double db, double limited) {
            return orderLimits::isFound(check, Order::Psk8, db, limited);
        };
        const DecisionCheck noise = noiseWith(3.0, 3.0);
        const DecisionCheck other = noiseWith(2.0, 3.0);
        DecisionCheck turning = noise;
        turning.steps = {800, 0, 0, 0, 0, 0, 0, 0};
        QVERIFY(found(noise, 20.0, 0.03));
        QVERIFY(!found(noise, 20.0, 0.031));
        QVERIFY(!found(other, 20.0, 0.0));
        QVERIFY(!found(other, 44.9, 0.0));
        QVERIFY(found(other, 45.0, 0.0));
        QVERIFY(found(noise, 45.0, 1.0));
        QVERIFY(!found(turning, 20.0, 0.0));
        QVERIFY(!found(turning, 50.0, 0.0));
    }

    void what_is_left_of_a_kept_one_is_looked_at_where_it_says_something_data()
    {
        QTest::addColumn<int>("order");
        QTest::addColumn<double>("lowest");
        QTest::newRow("BPSK") << int(Order::Bpsk) << 5.0;
        QTest::newRow("QPSK") << int(Order::Qpsk) << 7.5;
        QTest::newRow("8PSK") << int(Order::Psk8) << 11.3;
        QTest::newRow("16QAM") << int(Order::Qam16) << 11.8;
    }

    void what_is_left_of_a_kept_one_is_looked_at_where_it_says_something()
    {
        QFETCH(int, order);
        QFETCH(double, lowest);
        const auto kept = [order](const DecisionCheck& check, double db) {
            return orderLimits::isKept(check, static_cast<Order>(order), db);
        };
        const auto withSteps = [order](DecisionCheck check) {
            const size_t kinds = modulationOrder::points(static_cast<Order>(order)).size();
            check.stepCount = 100 * static_cast<int>(std::min<size_t>(kinds, 8));
            return check;
        };
        const DecisionCheck noise = withSteps(noiseWith(3.0, 3.0));
        const DecisionCheck other = withSteps(noiseWith(1.0, 3.0));
        for (const double db : {lowest - 0.01, lowest + 0.01, 44.9, 45.0}) {
            QVERIFY(kept(noise, db));
        }
        QVERIFY(kept(other, lowest));
        QVERIFY(!kept(other, lowest + 0.01));
        QVERIFY(!kept(other, 44.9));
        QVERIFY(kept(other, 45.0));
        DecisionCheck turning = noise;
        turning.steps[1] = 0;
        QCOMPARE(kept(turning, 50.0), order == int(Order::Qam16));
    }
};

QN740_TEST_MAIN(tst_OrderLimits)
#include "tst_OrderLimits.moc"
