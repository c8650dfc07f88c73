#include "scopes/OrderFinder.h"

#include "scopes/OrderLimits.h"

#include <algorithm>

namespace {

using Complex = std::complex<double>;

constexpr int FitRounds = 3;
constexpr double MinRms = 4.0 / 32768.0; // full scale: below, the steps of the samples show
constexpr double MaxAxisRatio = 8.0;     // of a constellation that is no line

ConstellationFit refined(const ReceivedPoints& received, ModulationOrder order, PlaneMap toIdeal)
{
    ConstellationFit fit;
    for (int round = 0; round < FitRounds; ++round) {
        fit = ConstellationFit::of(ConstellationSums::of(received, order, toIdeal), order);
        if (!fit.valid) {
            return fit;
        }
        toIdeal = fit.toReceived.inverse();
    }
    return fit;
}

double toDb(double ratio)
{
    return 10.0 * std::log10(ratio);
}

DecisionCheck checkOf(const ReceivedPoints& received, const ConstellationFit& fit)
{
    return DecisionCheck::of(received, fit.order, fit.toReceived.inverse());
}

} // namespace

// The power of the signal in whitened points, from the fourth moment (the estimator M2M4; Pauluzzi
// and Beaulieu, IEEE Transactions on Communications, vol. 48, no. 10, 2000), and the turn that the
// constellation's own fourth or eighth power gives it. Candidates have a kurtosis below 2.
PlaneMap orderFinder::firstGuess(const PointMoments& moments, ModulationOrder order)
{
    if (order == ModulationOrder::Bpsk) {
        const double amplitude = std::sqrt(moments.axisExcess);
        return PlaneMap::complexGain(std::polar(amplitude, moments.axisAngle), moments.mean)
            .inverse();
    }
    const double kurtosis = order == ModulationOrder::Qam16 ? 1.32 : 1.0;
    const double signal = std::sqrt((2.0 - moments.kurtosis) / (2.0 - kurtosis));
    const double turn =
        order == ModulationOrder::Psk8 ? std::arg(-moments.z8) / 8.0 : std::arg(-moments.z4) / 4.0;
    const PlaneMap gain = PlaneMap::complexGain(std::polar(std::sqrt(signal), turn));
    return gain.inverse().after(moments.toWhite);
}

ConstellationFit orderFinder::find(const ReceivedPoints& received)
{
    PointMoments moments = PointMoments::secondOrder(received);
    if (moments.power < MinRms * MinRms || orderLimits::isOverdriven(received)) {
        return {};
    }
    ModulationOrder order = ModulationOrder::Bpsk;
    if (moments.axisRatio < MaxAxisRatio) {
        moments.addHigherOrders(received);
        order = orderLimits::candidateOf(moments);
    }
    if (order == ModulationOrder::Unknown) {
        return {};
    }
    const ConstellationFit fit = refined(received, order, firstGuess(moments, order));
    const double db = toDb(fit.signalToResidual());
    if (!orderLimits::shapeIsPlausible(fit) || db < orderLimits::minDbToFind(order)) {
        return {};
    }
    const double limited =
        std::max(orderLimits::limitedShare(received.x), orderLimits::limitedShare(received.y));
    return orderLimits::isFound(checkOf(received, fit), order, db, limited) ? fit
                                                                            : ConstellationFit();
}

ConstellationFit orderFinder::keep(const ReceivedPoints& received, const ConstellationFit& before)
{
    PointMoments moments = PointMoments::secondOrder(received);
    if (before.order != ModulationOrder::Bpsk) {
        moments.addHigherOrders(received);
    }
    if (!orderLimits::momentsMayBeOf(moments, before.order) ||
        orderLimits::isOverdriven(received)) {
        return {};
    }
    const ConstellationFit fit = ConstellationFit::of(
        ConstellationSums::of(received, before.order, before.toReceived.inverse()), before.order);
    const double db = toDb(fit.signalToResidual());
    if (!orderLimits::shapeIsPlausible(fit) || db < orderLimits::minDbToKeep(fit.order)) {
        return {};
    }
    return orderLimits::isKept(checkOf(received, fit), fit.order, db) ? fit : ConstellationFit();
}
