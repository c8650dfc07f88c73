#include "scopes/OrderLimits.h"

#include <algorithm>

namespace {

constexpr double MinLineRatio = 5.0;          // of a line, which has 2 · Es/N0 + 1
constexpr double MaxOrigin = 0.6;             // of the rms amplitude
constexpr double MaxLimited = 0.03;           // share of samples that stand at a limit
constexpr double HiddenPointsDb = 11.8;       // 64QAM reaches 13.2 dB as 16QAM, 12.2 of 20 dB
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
    return {5.0, 4.0, 0.0, 0.0, 0.0, 0.0}; // a line is not found by moments
}

bool within(double value, double least, double most)
{
    return value >= least && value <= most;
}

bool residualIsLikeNoise(const DecisionCheck& check, double minKurtosis, double maxAxes)
{
    const double x = check.squareX;
    const double y = check.squareY;
    return check.fourthX >= minKurtosis * x * x && check.fourthY >= minKurtosis * y * y &&
        x <= maxAxes * y && y <= maxAxes * x;
}

} // namespace

double orderLimits::minDbToFind(ModulationOrder order)
{
    return limitsOf(order).findDb;
}

double orderLimits::minDbToKeep(ModulationOrder order)
{
    return limitsOf(order).keepDb;
}

ModulationOrder orderLimits::candidateOf(const PointMoments& moments)
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

bool orderLimits::momentsMayBeOf(const PointMoments& moments, ModulationOrder order)
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

bool orderLimits::shapeIsPlausible(const ConstellationFit& fit)
{
    constexpr double MinShare = 0.4;
    constexpr double MaxShare = 2.2;
    return fit.valid && fit.minShare >= MinShare && fit.maxShare <= MaxShare &&
        std::abs(fit.origin()) <= MaxOrigin * std::abs(fit.gain());
}

double orderLimits::limitedShare(const std::vector<double>& samples)
{
    double limit = 0.0;
    for (const double sample : samples) {
        limit = std::max(limit, std::min(std::abs(sample), FullScale));
    }
    const auto at = std::count_if(samples.begin(), samples.end(),
        [limit](double sample) { return std::abs(sample) >= limit; });
    return static_cast<double>(at) / static_cast<double>(std::max<size_t>(1, samples.size()));
}

bool orderLimits::isOverdriven(const ReceivedPoints& received)
{
    const auto cutOff = [](const std::vector<double>& samples) {
        const auto at = std::count_if(samples.begin(), samples.end(),
            [](double sample) { return std::abs(sample) >= FullScale; });
        return static_cast<double>(at) > MaxLimited * static_cast<double>(samples.size());
    };
    return cutOff(received.x) || cutOff(received.y);
}

bool orderLimits::stepsAreOfData(const DecisionCheck& check, ModulationOrder order)
{
    constexpr double MinStep = 0.5; // of the mean number
    const size_t kinds = modulationOrder::points(order).size();
    if (order == ModulationOrder::Qam16) {
        return true; // its steps are not counted
    }
    const auto fewest = *std::min_element(
        check.steps.begin(), check.steps.begin() + static_cast<std::ptrdiff_t>(kinds));
    return static_cast<double>(fewest) * static_cast<double>(kinds) >= MinStep * check.stepCount;
}

bool orderLimits::residualIsNoise(const DecisionCheck& check)
{
    constexpr double MinKurtosis = 2.2;
    constexpr double MaxAxes = 3.0;
    return residualIsLikeNoise(check, MinKurtosis, MaxAxes);
}

bool orderLimits::residualMayBeNoise(const DecisionCheck& check)
{
    constexpr double MinKurtosis = 1.8;
    constexpr double MaxAxes = 4.0;
    return residualIsLikeNoise(check, MinKurtosis, MaxAxes);
}

bool orderLimits::isFound(
    const DecisionCheck& check, ModulationOrder order, double db, double limited)
{
    return stepsAreOfData(check, order) &&
        (db >= CleanDb || (residualIsNoise(check) && limited <= MaxLimited));
}

bool orderLimits::isKept(const DecisionCheck& check, ModulationOrder order, double db)
{
    const double tellsDb =
        order == ModulationOrder::Qam16 ? HiddenPointsDb : limitsOf(order).findDb;
    const bool tells = db > tellsDb && db < CleanDb;
    return stepsAreOfData(check, order) && (!tells || residualMayBeNoise(check));
}
