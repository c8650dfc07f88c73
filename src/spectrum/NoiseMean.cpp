#include "spectrum/NoiseMean.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr double MaxShape = 1e6;
constexpr double Quartile = 0.6745; // of the normal distribution, in standard deviations
constexpr float Infinite = std::numeric_limits<float>::infinity();

// The place of a quantile in sorted values, of which there is at least one.
qsizetype placeOf(double part, qsizetype count)
{
    return std::min(
        static_cast<qsizetype>(part * static_cast<double>(count)), count - qsizetype{1});
}

// The same as noise::quantile() where no value in front of \a from is higher than those behind it,
// none from \a to on is lower than those in front of it, and the quantile's place is between them.
double quantileWithin(QVector<float>& values, double part, qsizetype from, qsizetype to)
{
    if (values.isEmpty()) {
        return 0.0;
    }
    const qsizetype at = placeOf(part, values.size());
    float* const first = values.data();
    float* const last = first + values.size();
    float* const middle = first + at;
    std::nth_element(first + from, middle, first + to);
    const float value = *middle;
    float below = -1.0F;
    float above = Infinite;
    int lower = 0;
    int higher = 0;
    // Nothing in front of the middle is higher than it, nothing behind it lower. Without branches,
    // which noise makes a processor mispredict half of the time, and several at a time.
    for (const float* one = first; one != middle; ++one) {
        lower += *one < value ? 1 : 0;
        below = std::max(below, *one < value ? *one : -1.0F);
    }
    for (const float* one = middle; one != last; ++one) {
        higher += *one > value ? 1 : 0;
        above = std::min(above, *one > value ? *one : Infinite);
    }
    const auto equal = static_cast<int>(values.size()) - lower - higher;
    // Halfway in decibels, because it is levels that are rounded.
    const double low = below < 0.0F ? value : std::sqrt(static_cast<double>(below) * value);
    const double high = std::isinf(above) ? value : std::sqrt(static_cast<double>(above) * value);
    const double rank = part * static_cast<double>(values.size());
    const double inside = (rank - lower) / std::max(equal, 1);
    return low + (high - low) * std::clamp(inside, 0.0, 1.0);
}

} // namespace

double noise::medianOverMean(double k)
{
    return 1.0 - 1.0 / (3.0 * k) + 8.0 / (405.0 * k * k) + 184.0 / (25515.0 * k * k * k);
}

double noise::quantile(QVector<float>& values, double part)
{
    return quantileWithin(values, part, 0, values.size());
}

double noise::shapeOf(double lowerQuartile, double upperQuartile)
{
    if (lowerQuartile <= 0.0 || upperQuartile <= lowerQuartile) {
        return upperQuartile > lowerQuartile ? 1.0 : MaxShape;
    }
    // With s the root of the shape, the quartiles' cube roots are 1 − 1/(9s²) ± Quartile/(3s) of
    // that of the mean; this is solved for s.
    const double ratio = std::cbrt(upperQuartile / lowerQuartile);
    const double spread = (ratio - 1.0) / (ratio + 1.0);
    constexpr double B = Quartile / 3.0;
    const double root = (B + std::sqrt(B * B + 4.0 * spread * spread / 9.0)) / (2.0 * spread);
    return std::min(root * root, MaxShape);
}

noise::Estimate noise::estimate(QVector<float>& bins, double spectra)
{
    constexpr double Lower = 0.25;
    constexpr double Upper = 0.75;
    // The median first: then each quartile is sought among half of the bins.
    const double median = quantile(bins, 0.5);
    const qsizetype count = bins.size();
    const qsizetype middle = count > 0 ? placeOf(0.5, count) : 0;
    const bool isInFront = count > 0 && placeOf(Lower, count) < middle;
    const double lower =
        quantileWithin(bins, Lower, isInFront ? 0 : middle, isInFront ? middle : count);
    const double spread = shapeOf(lower, quantileWithin(bins, Upper, middle, count));
    const double shape = std::max({spread, spectra, 1.0});
    return {median / medianOverMean(shape), shape};
}
