#include "scopes/ConstellationMeter.h"
#include "scopes/NoiseEstimate.h"
#include "scopes/OrderFinder.h"
#include "support/TestMain.h"

#include <algorithm>
#include <cmath>
#include <numeric>

// The single steps from received points to the figures, each against its definition.

namespace {

constexpr double Pi = 3.14159265358979323846;
using Complex = std::complex<double>;
using Order = ModulationOrder;

// Numbers that look random and are the same with every compiler and library.
class Sequence
{
public:
    explicit Sequence(quint32 seed)
        : m_state(seed)
    {
    }

    // Evenly between -0.5 and 0.5 (a linear congruential generator; Numerical Recipes, 7.1).
    double next()
    {
        m_state = m_state * 1664525U + 1013904223U;
        return m_state / 4294967296.0 - 0.5;
    }

    // Like noise: a standard deviation of 1 and a kurtosis of 2.7.
    double noise() { return std::sqrt(3.0) * (next() + next() + next() + next()); }

    size_t below(size_t count) { return static_cast<size_t>((next() + 0.5) * double(count)); }

private:
    quint32 m_state;
};

void append(ReceivedPoints& points, Complex point)
{
    points.x.push_back(point.real());
    points.y.push_back(point.imag());
}

// Random points of a constellation through a map, with noise of these deviations on either axis.
ReceivedPoints noisy(
    Order order, const PlaneMap& map, size_t count, double deviationX, double deviationY)
{
    ReceivedPoints points;
    Sequence sequence(7);
    const auto& ideal = modulationOrder::points(order);
    for (size_t n = 0; n < count; ++n) {
        const Complex at = map(ideal[sequence.below(ideal.size())]);
        const double x = deviationX * sequence.noise();
        append(points, at + Complex(x, deviationY * sequence.noise()));
    }
    return points;
}

// The index of the ideal point with the least distance.
size_t decided(Order order, Complex at)
{
    const auto& ideal = modulationOrder::points(order);
    const auto nearest = std::min_element(ideal.begin(), ideal.end(),
        [at](Complex a, Complex b) { return std::norm(at - a) < std::norm(at - b); });
    return static_cast<size_t>(nearest - ideal.begin());
}

bool near(Complex one, Complex other, double tolerance = 1e-9)
{
    return std::abs(one - other) <= tolerance;
}

template <class Value>
double meanOf(const ReceivedPoints& points, Value value)
{
    double sum = 0.0;
    for (size_t n = 0; n < points.size(); ++n) {
        sum += value(Complex(points.x[n], points.y[n]));
    }
    return sum / double(points.size());
}

void addOrders()
{
    QTest::addColumn<int>("order");
    for (int n = 1; n <= 4; ++n) {
        QTest::newRow(qPrintable(modulationOrder::name(static_cast<Order>(n)))) << n;
    }
}

// QPSK of which 18 points of 48 are turned by this angle, half of them one way.
ReceivedPoints turnedQpsk(double radians)
{
    ReceivedPoints points;
    Sequence sequence(9);
    const auto& ideal = modulationOrder::points(Order::Qpsk);
    for (size_t n = 0; n < 4800; ++n) {
        const size_t place = n % 48;
        const double turn = place < 9 ? radians : place < 18 ? -radians : 0.0;
        // No two of them exactly alike, as if they stood at a limit.
        const double amplitude = 0.4 + 1e-6 * sequence.next();
        append(points, amplitude * ideal[sequence.below(4)] * std::polar(1.0, turn));
    }
    return points;
}

} // namespace

Q_DECLARE_METATYPE(Complex)

class tst_ConstellationFit : public QObject
{
    Q_OBJECT

private slots:
    void every_point_counts_for_the_nearest_ideal_point_data() { addOrders(); }

    void every_point_counts_for_the_nearest_ideal_point()
    {
        QFETCH(int, order);
        const auto kind = static_cast<Order>(order);
        const PlaneMap map{1.9, -0.4, 0.3, 2.2, 0.05, -0.08};
        const ReceivedPoints points = noisy(kind, map.inverse(), 500, 0.1, 0.12);
        const ConstellationSums sums = ConstellationSums::of(points, kind, map);
        std::array<ConstellationSums::Cluster, 16> expected{};
        for (size_t n = 0; n < points.size(); ++n) {
            auto& cluster = expected.at(decided(kind, map({points.x[n], points.y[n]})));
            cluster.count += 1.0;
            cluster.x += points.x[n];
            cluster.y += points.y[n];
            cluster.power += std::pow(points.x[n], 2) + std::pow(points.y[n], 2);
        }
        for (size_t k = 0; k < expected.size(); ++k) {
            QCOMPARE(sums.clusters.at(k).count, expected.at(k).count);
            QVERIFY(near(sums.clusters.at(k).x, expected.at(k).x));
            QVERIFY(near(sums.clusters.at(k).y, expected.at(k).y));
            QVERIFY(near(sums.clusters.at(k).power, expected.at(k).power));
        }
    }

    void a_check_has_the_moments_of_what_is_left_and_counts_the_steps_data() { addOrders(); }

    void a_check_has_the_moments_of_what_is_left_and_counts_the_steps()
    {
        QFETCH(int, order);
        const auto kind = static_cast<Order>(order);
        const PlaneMap map{1.9, -0.4, 0.3, 2.2, 0.05, -0.08};
        const ReceivedPoints points = noisy(kind, map.inverse(), 500, 0.1, 0.07);
        const DecisionCheck check = DecisionCheck::of(points, kind, map);
        const auto left = [&map, kind](Complex point) {
            return map(point) - modulationOrder::points(kind)[decided(kind, map(point))];
        };
        const auto moment = [&points, &left](int power, bool alongY) {
            return meanOf(points, [&](Complex point) {
                return std::pow(alongY ? left(point).imag() : left(point).real(), power);
            });
        };
        QVERIFY(near(check.squareX, moment(2, false)));
        QVERIFY(near(check.squareY, moment(2, true)));
        QVERIFY(near(check.fourthX, moment(4, false)));
        QVERIFY(near(check.fourthY, moment(4, true)));
        std::array<int, 8> steps{};
        const size_t kinds = modulationOrder::points(kind).size();
        for (size_t n = 1; n < points.size() && kind != Order::Qam16; ++n) {
            const size_t before = decided(kind, map({points.x[n - 1], points.y[n - 1]}));
            const size_t now = decided(kind, map({points.x[n], points.y[n]}));
            ++steps.at((now + kinds - before) % kinds);
        }
        QCOMPARE(check.steps, steps);
        QCOMPARE(check.stepCount, std::accumulate(steps.begin(), steps.end(), 0));
    }

    // With the least squares, what is left is orthogonal to each of the regressors.
    void a_fit_has_the_least_squares_data() { addOrders(); }

    void a_fit_has_the_least_squares()
    {
        QFETCH(int, order);
        const auto kind = static_cast<Order>(order);
        const bool line = kind == Order::Bpsk; // is only turned, scaled and moved
        const PlaneMap map{0.41, 0.07, -0.05, 0.33, 0.02, -0.03};
        Sequence sequence(3);
        const auto& ideal = modulationOrder::points(kind);
        std::vector<std::pair<Complex, Complex>> pairs; // the ideal point and the received one
        ConstellationSums sums;
        for (size_t k = 0; k < ideal.size(); ++k) {
            const size_t count = 5 + 3 * (k % 3); // not all of them equally often
            for (size_t n = 0; n < count; ++n) {
                const Complex error(0.1 * sequence.next() + 0.01, 0.2 * sequence.next());
                const Complex at = map(ideal[k]) + error;
                pairs.emplace_back(ideal[k], at);
                auto& cluster = sums.clusters.at(k);
                cluster.count += 1.0;
                cluster.x += at.real();
                cluster.y += at.imag();
                cluster.power += std::norm(at);
            }
        }
        const ConstellationFit fit = ConstellationFit::of(sums, kind);
        Complex one;
        Complex alongI;
        Complex alongQ;
        double left = 0.0;
        for (const auto& [point, at] : pairs) {
            const Complex error = at - fit.toReceived(point);
            one += error;
            alongI += error * point.real();
            alongQ += error * point.imag();
            left += std::norm(error);
        }
        QVERIFY(near(one, 0.0));
        QVERIFY(near(alongI, 0.0));
        QVERIFY(line || near(alongQ, 0.0));
        QVERIFY(!line || (fit.toReceived.xx == fit.toReceived.yy && near(fit.image(), 0.0)));
        // For each of x and y, two or three parameters were free.
        QVERIFY(near(fit.residual, left / (double(pairs.size()) - (line ? 2.0 : 3.0)), 1e-12));
        QVERIFY(fit.valid);
        QCOMPARE(fit.order, kind);
        QCOMPARE(fit.count, double(pairs.size()));
        const double mean = double(pairs.size()) / double(ideal.size());
        QVERIFY(near(fit.minShare, 5.0 / mean));
        QVERIFY(near(fit.maxShare, (line ? 8.0 : 11.0) / mean));
        const Complex point(0.3, -0.8);
        QVERIFY(near(fit.toReceived(point),
            fit.gain() * point + fit.image() * std::conj(point) + fit.origin()));
    }

    void four_times_as_many_points_as_ideal_ones_are_enough()
    {
        ConstellationSums sums;
        const auto& ideal = modulationOrder::points(Order::Qpsk);
        for (size_t k = 0; k < 4; ++k) {
            sums.clusters.at(k) = {4.0, 4.0 * ideal[k].real(), 4.0 * ideal[k].imag(), 4.0};
        }
        QVERIFY(ConstellationFit::of(sums, Order::Qpsk).valid);
        sums.clusters[0].count = 3.0;
        QVERIFY(!ConstellationFit::of(sums, Order::Qpsk).valid);
    }

    void signal_to_residual_is_limited_to_120_db()
    {
        ConstellationFit fit;
        fit.toReceived = {0.5, 0.1, -0.2, 0.3, 0.0, 0.0};
        const double signal = std::norm(fit.gain()) + std::norm(fit.image());
        fit.residual = 0.01;
        QCOMPARE(fit.signalToResidual(), signal / 0.01);
        fit.residual = 0.0;
        QCOMPARE(fit.signalToResidual(), 1e12);
    }

    void moments_of_the_second_order_are_those_along_the_axes_of_the_points()
    {
        const ReceivedPoints points =
            noisy(Order::Qam16, {0.5, 0.2, -0.1, 0.3, 0.11, -0.07}, 300, 0.03, 0.05);
        const PointMoments moments = PointMoments::secondOrder(points);
        const Complex mean(meanOf(points, [](Complex point) { return point.real(); }),
            meanOf(points, [](Complex point) { return point.imag(); }));
        QVERIFY(near(moments.mean, mean));
        const auto powerAlong = [&](double angle) {
            return meanOf(points, [&](Complex point) {
                return std::pow(((point - mean) * std::polar(1.0, -angle)).real(), 2);
            });
        };
        const double strong = powerAlong(moments.axisAngle);
        const double weak = powerAlong(moments.axisAngle + Pi / 2.0);
        QVERIFY(strong > powerAlong(moments.axisAngle + 0.01));
        QVERIFY(strong > powerAlong(moments.axisAngle - 0.01));
        QVERIFY(near(moments.power, strong + weak));
        QVERIFY(near(moments.axisExcess, strong - weak));
        QVERIFY(near(moments.axisRatio, strong / weak));
    }

    void higher_moments_are_those_of_the_white_points()
    {
        const ReceivedPoints points =
            noisy(Order::Qam16, {0.5, 0.2, -0.1, 0.3, 0.11, -0.07}, 300, 0.03, 0.05);
        PointMoments moments = PointMoments::secondOrder(points);
        moments.addHigherOrders(points);
        ReceivedPoints white;
        for (size_t n = 0; n < points.size(); ++n) {
            append(white, moments.toWhite({points.x[n], points.y[n]}));
        }
        const auto mean = [&white](auto value) { return meanOf(white, value); };
        QVERIFY(near(mean([](Complex z) { return z.real(); }), 0.0));
        QVERIFY(near(mean([](Complex z) { return z.imag(); }), 0.0));
        QVERIFY(near(mean([](Complex z) { return z.real() * z.real(); }), 0.5));
        QVERIFY(near(mean([](Complex z) { return z.imag() * z.imag(); }), 0.5));
        QVERIFY(near(mean([](Complex z) { return z.real() * z.imag(); }), 0.0));
        QVERIFY(
            near(moments.kurtosis, mean([](Complex z) { return std::norm(z) * std::norm(z); })));
        QVERIFY(near(moments.z4,
            {mean([](Complex z) { return std::pow(z, 4).real(); }),
                mean([](Complex z) { return std::pow(z, 4).imag(); })}));
        QVERIFY(near(moments.z8,
            {mean([](Complex z) { return std::pow(z, 8).real(); }),
                mean([](Complex z) { return std::pow(z, 8).imag(); })}));
    }

    void a_weak_signal_has_no_ratios()
    {
        PointMoments moments;
        moments.z4 = {0.3, 0.4};
        moments.z8 = {0.0, -0.5};
        moments.kurtosis = 1.75;
        QCOMPARE(moments.fourth(), 0.0);
        QCOMPARE(moments.eighth(), 0.0);
        moments.kurtosis = 1.5;
        QCOMPARE(moments.fourth(), 1.0);
        QCOMPARE(moments.eighth(), 2.0);
        moments.kurtosis = 1.74;
        QVERIFY(near(moments.fourth(), 0.5 / 0.26, 1e-6));
        QVERIFY(near(moments.eighth(), 0.5 / (0.26 * 0.26), 1e-6));
    }

    // Neither of them is nearer, but the decision is always the same.
    void a_point_on_a_border_counts_for_one_of_its_neighbours_data()
    {
        QTest::addColumn<int>("order");
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<Complex>("decision");
        const auto row = [](const char* name, Order order, Complex at, Complex decision) {
            QTest::newRow(name) << int(order) << at.real() << at.imag() << decision;
        };
        const double sixteenth = Pi / 8.0;
        row("BPSK", Order::Bpsk, {0.0, 1.0}, {1.0, 0.0});
        row("QPSK, I axis", Order::Qpsk, {1.0, 0.0}, std::polar(1.0, Pi / 4.0));
        row("QPSK, Q axis", Order::Qpsk, {0.0, 1.0}, std::polar(1.0, Pi / 4.0));
        row("QPSK, -Q axis", Order::Qpsk, {0.0, -1.0}, std::polar(1.0, -Pi / 4.0));
        row("8PSK, first diagonal", Order::Psk8, {1.0, 1.0}, std::polar(1.0, sixteenth));
        row("8PSK, second diagonal", Order::Psk8, {-1.0, 1.0}, std::polar(1.0, 7 * sixteenth));
        row("8PSK, third diagonal", Order::Psk8, {-1.0, -1.0}, std::polar(1.0, 9 * sixteenth));
        row("8PSK, fourth diagonal", Order::Psk8, {1.0, -1.0}, std::polar(1.0, 15 * sixteenth));
    }

    void a_point_on_a_border_counts_for_one_of_its_neighbours()
    {
        QFETCH(int, order);
        QFETCH(double, x);
        QFETCH(double, y);
        QFETCH(Complex, decision);
        const auto kind = static_cast<Order>(order);
        const Complex found = modulationOrder::points(kind)[nearestPoint(kind, x, y)];
        QVERIFY2(near(found, decision), QByteArray::number(std::arg(found) / Pi * 8.0));
    }

    // A good signal is left as it is: wrong decisions are too rare to count.
    void a_good_signal_is_not_corrected_data()
    {
        QTest::addColumn<int>("order");
        QTest::addColumn<double>("db");
        QTest::addColumn<bool>("corrected");
        for (const Order order : {Order::Bpsk, Order::Qpsk, Order::Psk8}) {
            const QByteArray name = modulationOrder::name(order).toLatin1();
            QTest::addRow("%s at 8.5 dB", name.constData()) << int(order) << 8.5 << true;
            QTest::addRow("%s at 15.1 dB", name.constData()) << int(order) << 15.1 << false;
        }
        QTest::newRow("8PSK at 14.9 dB") << int(Order::Psk8) << 14.9 << true;
        QTest::newRow("16QAM at 18.9 dB") << int(Order::Qam16) << 18.9 << true;
        QTest::newRow("16QAM at 19.1 dB") << int(Order::Qam16) << 19.1 << false;
    }

    void a_good_signal_is_not_corrected()
    {
        QFETCH(int, order);
        QFETCH(double, db);
        QFETCH(bool, corrected);
        ConstellationFit fit;
        fit.order = static_cast<Order>(order);
        fit.toReceived = PlaneMap::complexGain({0.3, 0.4});
        fit.residual = 0.25 * std::pow(10.0, -db / 10.0);
        const ReceivedPoints points = noisy(fit.order, fit.toReceived, 400, 0.05, 0.05);
        const NoiseEstimate estimate = NoiseEstimate::of(points, fit);
        QCOMPARE(estimate.scale == 1.0 && estimate.noise == fit.residual, !corrected);
    }

    // Signal and noise have the power that was received, in the true ratio.
    void the_power_of_psk_is_divided_in_the_true_ratio_data()
    {
        QTest::addColumn<int>("order");
        QTest::addColumn<double>("found");
        QTest::addColumn<double>("actual");
        QTest::newRow("BPSK") << int(Order::Bpsk) << 6.022 << 6.0;
        QTest::newRow("QPSK") << int(Order::Qpsk) << 7.208 << 7.0;
        QTest::newRow("8PSK") << int(Order::Psk8) << 9.231 << 8.0;
        QTest::newRow("QPSK, weak") << int(Order::Qpsk) << 3.586 << 1.0;
    }

    void the_power_of_psk_is_divided_in_the_true_ratio()
    {
        QFETCH(int, order);
        QFETCH(double, found);
        QFETCH(double, actual);
        ConstellationFit fit;
        fit.order = static_cast<Order>(order);
        fit.toReceived = {0.3, -0.4, 0.42, 0.28, 0.0, 0.0}; // with an image
        const double fitted = std::norm(fit.gain()) + std::norm(fit.image());
        fit.residual = fitted / std::pow(10.0, found / 10.0);
        const NoiseEstimate estimate = NoiseEstimate::of({}, fit);
        const double signal = fitted * estimate.scale * estimate.scale;
        QVERIFY(near(signal + estimate.noise, fitted + fit.residual));
        QVERIFY(near(10.0 * std::log10(signal / estimate.noise), actual, 1e-6));
    }

    // 16QAM with little noise, and a fit whose size and residual are wrong: the estimate does not
    // depend on where it begins. One point far outside counts as at the edge of the histogram.
    void the_size_of_16qam_is_found_from_a_wrong_one_data()
    {
        QTest::addColumn<double>("size");
        QTest::addColumn<double>("db");
        QTest::newRow("too large") << 1.15 << 15.0;
        QTest::newRow("too small") << 0.9 << 15.0;
        QTest::newRow("much noise") << 1.05 << 8.0;
    }

    void the_size_of_16qam_is_found_from_a_wrong_one()
    {
        QFETCH(double, size);
        QFETCH(double, db);
        ReceivedPoints points = noisy(Order::Qam16, {}, 4000, 0.06, 0.06);
        append(points, {0.3, 5.0});
        ConstellationFit fit;
        fit.order = Order::Qam16;
        fit.toReceived = PlaneMap::complexGain(size);
        fit.residual = size * size * std::pow(10.0, -db / 10.0);
        const NoiseEstimate estimate = NoiseEstimate::of(points, fit);
        QVERIFY2(
            near(estimate.scale * size, 1.0, 0.005), QByteArray::number(estimate.scale * size));
        // The noise along both axes, and what the far point adds at most: (2.4 - 0.95)² of 4001.
        const double noise = estimate.noise - 0.0072;
        QVERIFY2(noise > -0.0006 && noise < 0.0012, QByteArray::number(noise));
    }

    void without_noise_16qam_has_that_of_the_histogram()
    {
        const PlaneMap map = PlaneMap::complexGain({0.3, 0.1});
        const ReceivedPoints points = noisy(Order::Qam16, map, 80, 0.0, 0.0);
        ConstellationFit fit;
        fit.order = Order::Qam16;
        fit.toReceived = map;
        fit.residual = 0.003;
        const NoiseEstimate estimate = NoiseEstimate::of(points, fit);
        // A ten thousandth of the power along each axis.
        QVERIFY(near(estimate.noise, 1e-4 * 2.0 * 0.1, 1e-9));
        // The levels 0.3162 and 0.9487 count as the middles of their bins, equally often.
        double product = 0.0;
        double power = 0.0;
        for (size_t n = 0; n < points.size(); ++n) {
            const Complex point = map.inverse()({points.x[n], points.y[n]});
            for (const double level : {std::abs(point.real()), std::abs(point.imag())}) {
                product += level * (level < 0.5 ? 0.31 : 0.95);
                power += level * level;
            }
        }
        QVERIFY2(near(estimate.scale, product / power, 1e-5), QByteArray::number(estimate.scale));
    }

    // However the constellation is turned, skewed and moved.
    void the_noise_of_a_distorted_16qam_is_found_behind_wrong_decisions_data()
    {
        QTest::addColumn<double>("turn"); // in degrees
        QTest::addColumn<double>("db");
        for (const double turn : {5.0, 20.0, 40.0}) {
            for (const double db : {11.0, 15.0}) {
                QTest::addRow("%g degrees, %g dB", turn, db) << turn << db;
            }
        }
    }

    void the_noise_of_a_distorted_16qam_is_found_behind_wrong_decisions()
    {
        QFETCH(double, turn);
        QFETCH(double, db);
        const Complex gain = std::polar(0.35, turn * Pi / 180.0);
        PlaneMap map = PlaneMap::complexGain(gain, {0.05, -0.04});
        map.xx *= 1.1;
        map.xy *= 1.1; // I is larger
        const double power =
            (map.xx * map.xx + map.xy * map.xy + map.yx * map.yx + map.yy * map.yy) / 2.0;
        const double noise = power * std::pow(10.0, -db / 10.0);
        ReceivedPoints points;
        Sequence sequence(5);
        for (const Complex& point : modulationOrder::points(Order::Qam16)) {
            for (int n = 0; n < 400; ++n) {
                const double radius =
                    std::sqrt(-noise * std::log(sequence.next() + 0.5 + 1e-10)); // Box and Muller
                append(points, map(point) + std::polar(radius, 2.0 * Pi * sequence.next()));
            }
        }
        const ConstellationFit fit = ConstellationFit::of(
            ConstellationSums::of(points, Order::Qam16, map.inverse()), Order::Qam16);
        const NoiseEstimate estimate = NoiseEstimate::of(points, fit);
        const double size = std::sqrt(fit.toReceived.determinant() / map.determinant());
        QVERIFY2(near(size * estimate.scale, 1.0, 0.01), QByteArray::number(size * estimate.scale));
        QVERIFY2(
            near(estimate.noise / noise, 1.0, 0.06), QByteArray::number(estimate.noise / noise));
    }

    // Among many points at an ideal one, a single one far away decides what the noise is.
    void a_point_far_outside_16qam_counts_up_to_the_edge_of_the_histogram()
    {
        ConstellationFit fit;
        fit.order = Order::Qam16;
        fit.residual = 0.1;
        const auto noiseWith = [&fit](double far) {
            ReceivedPoints points;
            for (int n = 0; n < 160; ++n) {
                const auto& ideal = modulationOrder::points(Order::Qam16);
                append(points, ideal[static_cast<size_t>(n) % ideal.size()]);
            }
            append(points, {far, 0.95});
            return NoiseEstimate::of(points, fit).noise;
        };
        QVERIFY(noiseWith(2.37) < noiseWith(2.39));
        QCOMPARE(noiseWith(2.39), noiseWith(100.0));
    }

    // Gaussian noise (Box and Muller), whose power is known, at a ratio where every sixth decision
    // is wrong.
    void the_noise_of_16qam_is_found_behind_wrong_decisions()
    {
        ReceivedPoints points;
        Sequence sequence(11);
        const double deviation = 0.4 * std::pow(10.0, -11.0 / 20.0) / std::sqrt(2.0);
        for (const Complex& point : modulationOrder::points(Order::Qam16)) {
            for (int n = 0; n < 500; ++n) {
                const double radius = std::sqrt(-2.0 * std::log(sequence.next() + 0.5 + 1e-10));
                append(points,
                    0.4 * point + std::polar(deviation * radius, 2.0 * Pi * sequence.next()));
            }
        }
        const PlaneMap map = PlaneMap::complexGain(0.4);
        const ConstellationFit fit = ConstellationFit::of(
            ConstellationSums::of(points, Order::Qam16, map.inverse()), Order::Qam16);
        const NoiseEstimate estimate = NoiseEstimate::of(points, fit);
        const double size = std::abs(fit.gain()) * estimate.scale;
        QVERIFY2(std::abs(size - 0.4) < 0.004, QByteArray::number(size));
        const double ratio = estimate.noise / (2.0 * deviation * deviation);
        QVERIFY2(std::abs(ratio - 1.0) < 0.05, QByteArray::number(ratio));
        // Without the correction there seems to be less.
        QVERIFY(fit.residual < 0.95 * 2.0 * deviation * deviation);
    }

    void the_ratio_of_psk_is_interpolated_between_whole_decibels()
    {
        QCOMPARE(trueSignalToNoise(Order::Bpsk, 0.898), 0.0);
        QVERIFY(near(trueSignalToNoise(Order::Bpsk, (0.898 + 1.608) / 2.0), 0.5));
        QVERIFY(near(trueSignalToNoise(Order::Qpsk, (7.208 * 3.0 + 8.099) / 4.0), 7.25));
        QVERIFY(near(trueSignalToNoise(Order::Psk8, 15.0179999), 15.0, 1e-6));
        QCOMPARE(trueSignalToNoise(Order::Psk8, 15.018), 15.018);
    }

    void the_imbalance_is_that_of_the_rows_of_the_map()
    {
        // I is 1.25 times Q, and their axes are 3 degrees too near to each other.
        const double skew = 3.0 * Pi / 180.0;
        const PlaneMap map{0.5, 0.0, 0.4 * std::sin(skew), 0.4 * std::cos(skew), 0.0, 0.0};
        const ReceivedPoints points = noisy(Order::Qpsk, map, 4000, 0.001, 0.001);
        const ConstellationFit fit = ConstellationFit::of(
            ConstellationSums::of(points, Order::Qpsk, map.inverse()), Order::Qpsk);
        const ConstellationFigures figures = constellationFigures(points, fit);
        QVERIFY(figures.imbalanceValid);
        QVERIFY(near(figures.imbalanceDb, 20.0 * std::log10(1.25), 0.001));
        QVERIFY(near(figures.quadratureDegrees, 3.0, 0.01));
    }

    // Ideal points have the fourth moment of their constellation, so the guess is exact.
    void the_first_guess_maps_ideal_points_to_themselves_data() { addOrders(); }

    void the_first_guess_maps_ideal_points_to_themselves()
    {
        QFETCH(int, order);
        const auto kind = static_cast<Order>(order);
        const double turn = kind == Order::Bpsk ? 0.9 : 0.3;
        const PlaneMap map = PlaneMap::complexGain(std::polar(0.4, turn), {0.05, -0.03});
        ReceivedPoints points;
        for (const Complex& point : modulationOrder::points(kind)) {
            append(points, map(point));
        }
        PointMoments moments = PointMoments::secondOrder(points);
        moments.addHigherOrders(points);
        const PlaneMap guess = orderFinder::firstGuess(moments, kind);
        // A square or a ring looks the same when it is turned by one place.
        for (size_t n = 0; n < points.size(); ++n) {
            const Complex at = guess({points.x[n], points.y[n]});
            const auto& ideal = modulationOrder::points(kind);
            QVERIFY2(near(at, ideal[decided(kind, at)]), QByteArray::number(std::abs(at)));
        }
    }

    void points_as_weak_as_the_steps_of_the_samples_are_no_signal()
    {
        ReceivedPoints points;
        Sequence sequence(3);
        for (int n = 0; n < 400; ++n) {
            append(points, sequence.below(2) == 0 ? 1.0 : -1.0);
        }
        points.x[0] = -points.x[1]; // as many of either
        const auto sum = [&points] {
            return std::accumulate(points.x.begin(), points.x.end(), 0.0);
        };
        while (std::abs(sum()) > 0.5) {
            *std::find(points.x.begin(), points.x.end(), sum() > 0.0 ? 1.0 : -1.0) *= -1.0;
        }
        const auto scaled = [points](double amplitude) {
            ReceivedPoints result = points;
            for (double& x : result.x) {
                x *= amplitude;
            }
            return result;
        };
        QVERIFY(orderFinder::find(scaled(4.0 / 32768.0)).valid);
        QVERIFY(!orderFinder::find(scaled(3.99 / 32768.0)).valid);
    }

    void points_on_a_line_have_a_limited_ratio_of_axes()
    {
        ReceivedPoints points;
        append(points, {0.3, 0.4});
        append(points, {-0.3, -0.4});
        QVERIFY(near(PointMoments::secondOrder(points).axisRatio / 1e9, 1.0, 1e-6));
    }

    void one_point_has_moments()
    {
        ReceivedPoints points;
        append(points, {1.0, 1.0});
        PointMoments moments; // which leave the point where it is
        moments.addHigherOrders(points);
        QVERIFY(near(moments.kurtosis, 4.0));
        QVERIFY(near(moments.z4, -4.0));
        QVERIFY(near(moments.z8, 16.0));
    }

    // The search is the first guess of the moments, and three fits.
    void the_search_fits_three_times_from_the_angle_of_the_points_own_power_data()
    {
        QTest::addColumn<int>("order");
        QTest::addColumn<double>("noise");
        QTest::newRow("QPSK") << int(Order::Qpsk) << 0.27;
        QTest::newRow("8PSK") << int(Order::Psk8) << 0.16;
        QTest::newRow("8PSK, where a fourth fit would differ") << int(Order::Psk8) << 0.195;
        QTest::newRow("16QAM") << int(Order::Qam16) << 0.11;
    }

    void the_search_fits_three_times_from_the_angle_of_the_points_own_power()
    {
        QFETCH(int, order);
        QFETCH(double, noise);
        const auto kind = static_cast<Order>(order);
        const double turn = kind == Order::Psk8 ? 20.0 : 38.0;
        const PlaneMap map = PlaneMap::complexGain(std::polar(0.3, turn * Pi / 180.0));
        const ReceivedPoints points = noisy(kind, map, 3000, 0.3 * noise, 0.3 * noise);
        PointMoments moments = PointMoments::secondOrder(points);
        moments.addHigherOrders(points);
        const double kurtosis = kind == Order::Qam16 ? 1.32 : 1.0; // of the ideal points
        const double signal = std::sqrt((2.0 - moments.kurtosis) / (2.0 - kurtosis));
        const double angle =
            kind == Order::Psk8 ? std::arg(-moments.z8) / 8.0 : std::arg(-moments.z4) / 4.0;
        PlaneMap toIdeal = PlaneMap::complexGain(std::polar(std::sqrt(signal), angle))
                               .inverse()
                               .after(moments.toWhite);
        ConstellationFit expected;
        for (int round = 0; round < 3; ++round) {
            expected = ConstellationFit::of(ConstellationSums::of(points, kind, toIdeal), kind);
            toIdeal = expected.toReceived.inverse();
        }
        const ConstellationFit found = orderFinder::find(points);
        QVERIFY(found.valid);
        QCOMPARE(int(found.order), order);
        QVERIFY(near(found.gain(), expected.gain(), 1e-13));
        QVERIFY(near(found.image(), expected.image(), 1e-13));
        QVERIFY(near(found.residual, expected.residual, 1e-13));
    }

    // The eighth moment of points of which 18 of 48 are turned by ±a is (5 + 3 cos 8a) / 8.
    void a_signal_is_kept_as_qpsk_while_its_eighth_moment_allows_data()
    {
        QTest::addColumn<double>("eighth");
        QTest::addColumn<bool>("found");
        QTest::addColumn<bool>("kept");
        QTest::newRow("0.52") << 0.52 << true << true;
        QTest::newRow("0.48") << 0.48 << false << true;
        QTest::newRow("0.32") << 0.32 << false << true;
        QTest::newRow("0.28") << 0.28 << false << false;
    }

    void a_signal_is_kept_as_qpsk_while_its_eighth_moment_allows()
    {
        QFETCH(double, eighth);
        const ReceivedPoints points = turnedQpsk(std::acos((8.0 * eighth - 5.0) / 3.0) / 8.0);
        PointMoments moments = PointMoments::secondOrder(points);
        moments.addHigherOrders(points);
        QVERIFY2(near(moments.eighth(), eighth, 0.015), QByteArray::number(moments.eighth()));
        QTEST(orderFinder::find(points).valid, "found");
        const ConstellationFit before = orderFinder::find(turnedQpsk(0.0));
        QVERIFY(before.valid);
        QTEST(orderFinder::keep(points, before).valid, "kept");
    }

    void what_is_left_may_be_unequal_along_the_axes_up_to_a_limit_data()
    {
        QTest::addColumn<double>("deviationX");
        QTest::addColumn<double>("deviationY");
        QTest::addColumn<bool>("found");
        QTest::addColumn<bool>("kept");
        const auto row = [](double powers, bool found, bool kept) {
            const double other = 0.02 * std::sqrt(powers);
            QTest::addRow("%g along I", powers) << other << 0.02 << found << kept;
            QTest::addRow("%g along Q", powers) << 0.02 << other << found << kept;
        };
        row(2.7, true, true);
        row(3.3, false, true);
        row(3.7, false, true);
        row(4.4, false, false);
    }

    void what_is_left_may_be_unequal_along_the_axes_up_to_a_limit()
    {
        QFETCH(double, deviationX);
        QFETCH(double, deviationY);
        const PlaneMap map = PlaneMap::complexGain(0.3);
        const ReceivedPoints points = noisy(Order::Qpsk, map, 4000, deviationX, deviationY);
        QTEST(orderFinder::find(points).valid, "found");
        const ConstellationFit before =
            orderFinder::find(noisy(Order::Qpsk, map, 4000, 0.02, 0.02));
        QVERIFY(before.valid);
        QTEST(orderFinder::keep(points, before).valid, "kept");
    }

    void three_samples_of_a_hundred_may_stand_at_a_limit_data()
    {
        QTest::addColumn<bool>("inQ");
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("found");
        for (const bool inQ : {false, true}) {
            QTest::addRow("12 of 400 in %s", inQ ? "Q" : "I") << inQ << 12 << true;
            QTest::addRow("13 of 400 in %s", inQ ? "Q" : "I") << inQ << 13 << false;
        }
    }

    void three_samples_of_a_hundred_may_stand_at_a_limit()
    {
        QFETCH(bool, inQ);
        QFETCH(int, count);
        ReceivedPoints points = noisy(Order::Qpsk, PlaneMap::complexGain(0.3), 400, 0.02, 0.02);
        std::vector<double>& samples = inQ ? points.y : points.x;
        // The outermost samples are moved inwards, except so many that stand at one magnitude.
        for (double& sample : samples) {
            sample = std::clamp(sample, -0.25, 0.25);
        }
        for (int n = 0; n < count; ++n) {
            double& sample = samples.at(static_cast<size_t>(n) * 30);
            sample = std::copysign(0.27, sample);
        }
        QTEST(orderFinder::find(points).valid, "found");
    }
};

QN740_TEST_MAIN(tst_ConstellationFit)
#include "tst_ConstellationFit.moc"
