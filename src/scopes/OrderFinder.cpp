#include "scopes/OrderFinder.h"

#include <algorithm>
#include <array>

namespace {

using Complex = std::complex<double>;

constexpr int FitRounds = 3;
constexpr double MinRms = 4.0 / 32768.0;      // full scale: below, the steps of the samples show
constexpr double MaxAxisRatio = 8.0;          // of a constellation that is no line
constexpr double MinLineRatio = 5.0;          // of a line, which has 2 · Es/N0 + 1
constexpr double MaxOrigin = 0.6;             // of the rms amplitude
constexpr double MaxLimited = 0.03;           // share of samples that stand at a limit
constexpr double HiddenPointsDb = 12.0;       // 64QAM reaches 13.2 dB as 16QAM
constexpr double CleanDb = 45.0;              // so clean that the residual may have any shape
constexpr double FullScale = 32767.0 / 32768; // the outermost sample of the line

// What a fit of each order has to reach.
struct Limits
{
    double findDb;    // signal to residual
    double keepDb;    // the same
    double minFourth; // of PointMoments::fourth()
    double maxFourth;
    double minEighth; // of PointMoments::eighth()
    double maxEighth;
};

Limits limitsOf(ModulationOrder order)
{
    switch (order) {
    case ModulationOrder::Qpsk:
        return {7.5, 6.5, 0.75, 1.3, 0.5, 2.3};
    case ModulationOrder::Psk8:
        return {11.3, 8.4, 0.0, 0.25, 0.45, 1.7};
    case ModulationOrder::Qam16:
        return {15.0, 10.0, 0.75, 1.3, 3.0, 7.5};
    case ModulationOrder::Bpsk:
    case ModulationOrder::Unknown:
        break;
    }
    return {5.0, 4.0, 0.0, 100.0, 0.0, 100.0};
}

bool within(double value, double least, double most)
{
    return value >= least && value <= most;
}

// The candidate that the moments name.
ModulationOrder candidateOf(const PointMoments& moments)
{
    for (const ModulationOrder order :
        {ModulationOrder::Qpsk, ModulationOrder::Psk8, ModulationOrder::Qam16}) {
        const Limits limits = limitsOf(order);
        if (within(moments.fourth(), limits.minFourth, limits.maxFourth) &&
            within(moments.eighth(), limits.minEighth, limits.maxEighth)) {
            return order;
        }
    }
    return ModulationOrder::Unknown;
}

// The power of the signal in whitened points, from the fourth moment (the estimator M2M4; Pauluzzi
// and Beaulieu, IEEE Transactions on Communications, vol. 48, no. 10, 2000), and the turn that the
// constellation's own fourth or eighth power gives it.
PlaneMap firstGuess(const PointMoments& moments, ModulationOrder order)
{
    if (order == ModulationOrder::Bpsk) {
        const double amplitude = std::sqrt(moments.axisExcess);
        return PlaneMap::complexGain(std::polar(amplitude, moments.axisAngle), moments.mean)
            .inverse();
    }
    const double kurtosis = order == ModulationOrder::Qam16 ? 1.32 : 1.0;
    const double signal = std::sqrt(std::max(0.01, (2.0 - moments.kurtosis) / (2.0 - kurtosis)));
    const double turn =
        order == ModulationOrder::Psk8 ? std::arg(-moments.z8) / 8.0 : std::arg(-moments.z4) / 4.0;
    const PlaneMap gain = PlaneMap::complexGain(std::polar(std::sqrt(signal), turn));
    return gain.inverse().after(moments.toWhite);
}

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

// How many samples of one component stand exactly at its largest magnitude, as a share of all.
double limitedShare(const std::vector<double>& samples)
{
    double limit = 0.0;
    for (const double sample : samples) {
        limit = std::max(limit, std::min(std::abs(sample), FullScale));
    }
    const auto at = std::count_if(samples.begin(), samples.end(),
        [limit](double sample) { return std::abs(sample) >= limit; });
    return static_cast<double>(at) / static_cast<double>(std::max<size_t>(1, samples.size()));
}

// Whether the line's own range cuts the signal off: what is then left of it may be any four points.
bool isOverdriven(const ReceivedPoints& received)
{
    const auto cutOff = [](const std::vector<double>& samples) {
        const auto at = std::count_if(samples.begin(), samples.end(),
            [](double sample) { return std::abs(sample) >= FullScale; });
        return static_cast<double>(at) > MaxLimited * static_cast<double>(samples.size());
    };
    return cutOff(received.x) || cutOff(received.y);
}

// Noise has a kurtosis of 3; two or four hidden points in place of one, and a smear along an arc or
// a line, have less than 2.
bool residualIsNoise(const DecisionCheck& check)
{
    constexpr double MinKurtosis = 2.2;
    constexpr double MaxAxes = 3.0;
    const double x = check.squareX;
    const double y = check.squareY;
    return check.fourthX >= MinKurtosis * x * x && check.fourthY >= MinKurtosis * y * y &&
        x <= MaxAxes * y && y <= MaxAxes * x;
}

// Random data take every step equally often.
bool stepsAreOfData(const DecisionCheck& check, ModulationOrder order)
{
    constexpr double MinStep = 0.5; // of the mean number
    const size_t kinds = modulationOrder::points(order).size();
    if (order == ModulationOrder::Qam16) {
        return true;
    }
    const auto fewest = *std::min_element(
        check.steps.begin(), check.steps.begin() + static_cast<std::ptrdiff_t>(kinds));
    return static_cast<double>(fewest) * static_cast<double>(kinds) >= MinStep * check.stepCount;
}

bool shapeIsPlausible(const ConstellationFit& fit)
{
    constexpr double MinShare = 0.4;
    constexpr double MaxShare = 2.2;
    return fit.valid && fit.minShare >= MinShare && fit.maxShare <= MaxShare &&
        std::abs(fit.origin()) <= MaxOrigin * std::abs(fit.gain());
}

// A wider range than that of candidateOf(): the moments of a weak signal vary more.
bool momentsMayBeOf(const PointMoments& moments, ModulationOrder order)
{
    switch (order) {
    case ModulationOrder::Qpsk:
        return within(moments.fourth(), 0.6, 1.5) && within(moments.eighth(), 0.3, 2.6);
    case ModulationOrder::Psk8:
        return moments.fourth() <= 0.4 && within(moments.eighth(), 0.3, 2.0);
    case ModulationOrder::Qam16:
        return within(moments.fourth(), 0.4, 1.8);
    case ModulationOrder::Bpsk:
        return moments.axisRatio >= MinLineRatio;
    case ModulationOrder::Unknown:
        break;
    }
    return false;
}

// Whether what is left has less kurtosis than noise that is cut off at the decisions' borders: four
// points of 64QAM in place of one have 1.
bool hidesPoints(const ReceivedPoints& received, const ConstellationFit& fit)
{
    constexpr double MinKurtosis = 1.6;
    const DecisionCheck check = DecisionCheck::of(received, fit.order, fit.toReceived.inverse());
    return check.fourthX < MinKurtosis * check.squareX * check.squareX ||
        check.fourthY < MinKurtosis * check.squareY * check.squareY;
}

bool isCertain(const ReceivedPoints& received, const ConstellationFit& fit)
{
    const double db = toDb(fit.signalToResidual());
    if (!shapeIsPlausible(fit) || db < limitsOf(fit.order).findDb) {
        return false;
    }
    const DecisionCheck check = DecisionCheck::of(received, fit.order, fit.toReceived.inverse());
    if (!stepsAreOfData(check, fit.order)) {
        return false;
    }
    return db >= CleanDb ||
        (residualIsNoise(check) && limitedShare(received.x) <= MaxLimited &&
            limitedShare(received.y) <= MaxLimited);
}

} // namespace

ConstellationFit orderFinder::find(const ReceivedPoints& received)
{
    PointMoments moments = PointMoments::secondOrder(received);
    if (moments.power < MinRms * MinRms || isOverdriven(received)) {
        return {};
    }
    ModulationOrder order = ModulationOrder::Bpsk;
    if (moments.axisRatio < MaxAxisRatio) {
        moments.addHigherOrders(received);
        order = candidateOf(moments);
    }
    if (order == ModulationOrder::Unknown) {
        return {};
    }
    const ConstellationFit fit = refined(received, order, firstGuess(moments, order));
    return isCertain(received, fit) ? fit : ConstellationFit();
}

ConstellationFit orderFinder::keep(const ReceivedPoints& received, const ConstellationFit& before)
{
    PointMoments moments = PointMoments::secondOrder(received);
    if (before.order != ModulationOrder::Bpsk) {
        moments.addHigherOrders(received);
    }
    if (!momentsMayBeOf(moments, before.order) || isOverdriven(received)) {
        return {};
    }
    const ConstellationFit fit = ConstellationFit::of(
        ConstellationSums::of(received, before.order, before.toReceived.inverse()), before.order);
    const double db = toDb(fit.signalToResidual());
    if (!shapeIsPlausible(fit) || db < limitsOf(fit.order).keepDb) {
        return {};
    }
    const bool closer = fit.order == ModulationOrder::Qam16 && db > HiddenPointsDb && db < CleanDb;
    return !closer || !hidesPoints(received, fit) ? fit : ConstellationFit();
}
