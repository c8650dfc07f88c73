#include "scopes/NoiseEstimate.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// From here on wrong decisions change the result by less than 0.02 dB.
constexpr double GoodPskDb = 15.0;
constexpr double GoodQamDb = 19.0;

// The ratio in dB that the decisions find at an Es/N0 of 0, 1, 2 ... 15 dB:
// a² / (1 - a²) with a = E |z| cos(angle to the nearest point) and E |z|² = 1, by numerical
// integration over the Gaussian distribution of z (tst_ConstellationMeter repeats it).
using Found = std::array<double, 16>;
constexpr Found FoundBpsk{0.898, 1.608, 2.385, 3.225, 4.119, 5.055, 6.022, 7.007, 8.002, 9.000,
    10.000, 11.000, 12.000, 13.000, 14.000, 15.000};
constexpr Found FoundQpsk{3.284, 3.586, 3.967, 4.433, 4.991, 5.643, 6.385, 7.208, 8.099, 9.040,
    10.013, 11.003, 12.001, 13.000, 14.000, 15.000};
constexpr Found FoundPsk8{5.505, 5.780, 6.115, 6.511, 6.964, 7.468, 8.017, 8.605, 9.231, 9.900,
    10.619, 11.393, 12.226, 13.115, 14.050, 15.018};

const Found& foundOf(ModulationOrder order)
{
    if (order == ModulationOrder::Bpsk) {
        return FoundBpsk;
    }
    return order == ModulationOrder::Qpsk ? FoundQpsk : FoundPsk8;
}

// The magnitudes of I and Q of points that were mapped to the ideal 16QAM.
struct Histogram
{
    static constexpr int Bins = 120;
    static constexpr double Width = 0.02;
    std::array<double, Bins> counts{};
    double total = 0.0;

    explicit Histogram(const ReceivedPoints& received, const PlaneMap& map)
    {
        for (size_t n = 0; n < received.size(); ++n) {
            add(map.xx * received.x[n] + map.xy * received.y[n] + map.x0);
            add(map.yx * received.x[n] + map.yy * received.y[n] + map.y0);
        }
    }

    void add(double value)
    {
        const double bin = std::min(std::abs(value) / Width, Bins - 1.0);
        counts.at(static_cast<size_t>(bin)) += 1.0;
        total += 1.0;
    }
};

// The four levels -3, -1, 1, 3 of one axis, times `scale` / sqrt(10), with Gaussian noise.
struct Mixture
{
    double scale = 1.0;
    double variance = 0.05;
};

// One round: how likely each bin is of each level, then the best scale and variance for that.
Mixture improved(const Histogram& histogram, const Mixture& mixture)
{
    constexpr std::array<double, 4> Levels{-0.948683, -0.316228, 0.316228, 0.948683};
    double product = 0.0;
    double levelPower = 0.0;
    double power = 0.0;
    for (int bin = 0; bin < Histogram::Bins; ++bin) {
        const double count = histogram.counts.at(static_cast<size_t>(bin));
        if (count == 0.0) {
            continue;
        }
        const double value = (bin + 0.5) * Histogram::Width;
        double weights = 1e-300;
        double mean = 0.0;
        double square = 0.0;
        for (const double level : Levels) {
            const double off = value - level * mixture.scale;
            const double weight = std::exp(-off * off / (2.0 * mixture.variance));
            weights += weight;
            mean += weight * level;
            square += weight * level * level;
        }
        product += count * value * mean / weights;
        levelPower += count * square / weights;
        power += count * value * value;
    }
    Mixture better;
    better.scale = product / std::max(levelPower, 1e-9);
    better.variance = std::max(1e-4, (power - better.scale * product) / histogram.total);
    return better;
}

NoiseEstimate ofQam(const ReceivedPoints& received, const ConstellationFit& fit)
{
    constexpr int MaxRounds = 60;
    constexpr double Settled = 2e-4; // of the variance
    const PlaneMap& map = fit.toReceived;
    const double size = map.xx * map.xx + map.xy * map.xy + map.yx * map.yx + map.yy * map.yy;
    const Histogram histogram(received, map.inverse());
    Mixture mixture{1.0, fit.residual / size};
    for (int round = 0; round < MaxRounds; ++round) {
        const double before = mixture.variance;
        mixture = improved(histogram, mixture);
        if (std::abs(mixture.variance - before) < Settled * before) {
            break;
        }
    }
    return {mixture.scale, mixture.variance * size};
}

} // namespace

double trueSignalToNoise(ModulationOrder order, double foundDb)
{
    const Found& found = foundOf(order);
    if (foundDb <= found.front()) {
        return 0.0;
    }
    if (foundDb >= found.back()) {
        return foundDb;
    }
    const auto above = std::upper_bound(found.begin(), found.end(), foundDb);
    const auto below = above - 1;
    return static_cast<double>(below - found.begin()) + (foundDb - *below) / (*above - *below);
}

NoiseEstimate NoiseEstimate::of(const ReceivedPoints& received, const ConstellationFit& fit)
{
    const double ratio = fit.signalToResidual();
    const double db = 10.0 * std::log10(ratio);
    if (fit.order == ModulationOrder::Qam16) {
        return db >= GoodQamDb ? NoiseEstimate{1.0, fit.residual} : ofQam(received, fit);
    }
    if (db >= GoodPskDb) {
        return {1.0, fit.residual};
    }
    // All of the power is signal and noise in the true ratio.
    const double power = fit.residual * (1.0 + ratio);
    const double corrected = std::pow(10.0, trueSignalToNoise(fit.order, db) / 10.0);
    const double signal = power * corrected / (1.0 + corrected);
    return {std::sqrt(signal / (fit.residual * ratio)), power - signal};
}
