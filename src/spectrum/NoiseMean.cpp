#include "spectrum/NoiseMean.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr double MaxShape = 1e6;
constexpr double Quartile = 0.6745; // of the normal distribution, in standard deviations
} // namespace

double noise::medianOverMean(double k)
{
    return 1.0 - 1.0 / (3.0 * k) + 8.0 / (405.0 * k * k) + 184.0 / (25515.0 * k * k * k);
}

double noise::quantile(QVector<float>& values, double part)
{
    if (values.isEmpty()) {
        return 0.0;
    }
    const double rank = part * static_cast<double>(values.size());
    const auto at = std::min(static_cast<qsizetype>(rank), values.size() - 1);
    const auto middle = values.begin() + at;
    std::nth_element(values.begin(), middle, values.end());
    const float value = *middle;
    float below = -1.0F;
    float above = std::numeric_limits<float>::infinity();
    qsizetype lower = 0;
    qsizetype higher = 0;
    // Nothing in front of the middle is higher than it, nothing behind it lower. Without branches,
    // which noise makes a processor mispredict half of the time.
    for (auto one = values.cbegin(); one != middle; ++one) {
        lower += *one < value ? 1 : 0;
        below = std::max(below, *one < value ? *one : -1.0F);
    }
    for (auto one = values.cbegin() + at; one != values.cend(); ++one) {
        higher += *one > value ? 1 : 0;
        above = std::min(above, *one > value ? *one : std::numeric_limits<float>::infinity());
    }
    const qsizetype equal = values.size() - lower - higher;
    // Halfway in decibels, because it is levels that are rounded.
    const double low = below < 0.0F ? value : std::sqrt(static_cast<double>(below) * value);
    const double high = std::isinf(above) ? value : std::sqrt(static_cast<double>(above) * value);
    const double inside =
        (rank - static_cast<double>(lower)) / static_cast<double>(std::max(equal, qsizetype{1}));
    return low + (high - low) * std::clamp(inside, 0.0, 1.0);
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
    const double spread = shapeOf(quantile(bins, 0.25), quantile(bins, 0.75));
    const double shape = std::max({spread, spectra, 1.0});
    return {quantile(bins, 0.5) / medianOverMean(shape), shape};
}
