#include "scopes/ConstellationSums.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double Sqrt10 = 3.16227766016837933;

// The level -3, -1, 1 or 3 (as 0 to 3) that is nearest to a coordinate of 16QAM.
size_t level(double value)
{
    const double steps = value * (Sqrt10 / 2.0) + 2.0;
    return static_cast<size_t>(std::clamp(steps, 0.0, 3.0));
}

// Which sector of a turn that begins at the positive x axis, out of four.
size_t quadrant(double x, double y)
{
    if (y >= 0.0) {
        return x >= 0.0 ? 0 : 1;
    }
    return x < 0.0 ? 2 : 3;
}

// The same, out of eight: within a quadrant, the diagonal divides.
size_t octant(double x, double y)
{
    const size_t quarter = quadrant(x, y);
    const bool steep = std::abs(y) > std::abs(x);
    const bool second = quarter % 2 == 0 ? steep : !steep;
    return 2 * quarter + (second ? 1 : 0);
}

template <ModulationOrder Order>
size_t nearest(double x, double y)
{
    if constexpr (Order == ModulationOrder::Bpsk) {
        return x >= 0.0 ? 0 : 1;
    } else if constexpr (Order == ModulationOrder::Qpsk) {
        return quadrant(x, y);
    } else if constexpr (Order == ModulationOrder::Psk8) {
        return octant(x, y);
    } else {
        return 4 * level(x) + level(y);
    }
}

// Calls visit(index of the nearest ideal point, index of the received one, its mapped place).
template <ModulationOrder Order, typename Visit>
void forEachAs(const ReceivedPoints& received, const PlaneMap& map, Visit visit)
{
    for (size_t n = 0; n < received.size(); ++n) {
        const double x = map.xx * received.x[n] + map.xy * received.y[n] + map.x0;
        const double y = map.yx * received.x[n] + map.yy * received.y[n] + map.y0;
        visit(nearest<Order>(x, y), n, x, y);
    }
}

template <typename Visit>
void forEach(
    const ReceivedPoints& received, ModulationOrder order, const PlaneMap& map, Visit visit)
{
    switch (order) {
    case ModulationOrder::Bpsk:
        return forEachAs<ModulationOrder::Bpsk>(received, map, visit);
    case ModulationOrder::Qpsk:
        return forEachAs<ModulationOrder::Qpsk>(received, map, visit);
    case ModulationOrder::Psk8:
        return forEachAs<ModulationOrder::Psk8>(received, map, visit);
    case ModulationOrder::Qam16:
        return forEachAs<ModulationOrder::Qam16>(received, map, visit);
    case ModulationOrder::Unknown:
        return;
    }
}

} // namespace

ConstellationSums ConstellationSums::of(
    const ReceivedPoints& received, ModulationOrder order, const PlaneMap& toIdeal)
{
    ConstellationSums sums;
    forEach(received, order, toIdeal, [&](size_t point, size_t n, double /*x*/, double /*y*/) {
        Cluster& cluster = sums.clusters[point];
        const double x = received.x[n];
        const double y = received.y[n];
        cluster.count += 1.0;
        cluster.x += x;
        cluster.y += y;
        cluster.power += x * x + y * y;
    });
    return sums;
}

size_t nearestPoint(ModulationOrder order, double x, double y)
{
    ReceivedPoints one{{x}, {y}};
    size_t found = 0;
    forEach(one, order, PlaneMap(),
        [&found](size_t point, size_t /*n*/, double /*x*/, double /*y*/) { found = point; });
    return found;
}

DecisionCheck DecisionCheck::of(
    const ReceivedPoints& received, ModulationOrder order, const PlaneMap& toIdeal)
{
    DecisionCheck check;
    const auto& ideal = modulationOrder::points(order);
    const size_t turn = std::min<size_t>(ideal.size(), check.steps.size());
    size_t before = 0;
    forEach(received, order, toIdeal, [&](size_t point, size_t n, double x, double y) {
        const double dx = x - ideal[point].real();
        const double dy = y - ideal[point].imag();
        check.squareX += dx * dx;
        check.squareY += dy * dy;
        check.fourthX += dx * dx * dx * dx;
        check.fourthY += dy * dy * dy * dy;
        if (n > 0 && order != ModulationOrder::Qam16) {
            ++check.steps[(point + turn - before) % turn];
            ++check.stepCount;
        }
        before = point;
    });
    const auto count = static_cast<double>(std::max<size_t>(1, received.size()));
    for (double* sum : {&check.squareX, &check.squareY, &check.fourthX, &check.fourthY}) {
        *sum /= count;
    }
    return check;
}
