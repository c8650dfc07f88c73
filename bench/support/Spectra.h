#pragma once

#include <QByteArray>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace bench {

/// Points of a spectrum: those of the 20 MHz span.
constexpr int SpectrumPoints = 550;
/// How many spectra there are, so that nothing is cached.
constexpr int DifferentSpectra = 32;

/// \return the bytes of a spectrum: a carrier of 4 MHz over noise, as in the statistics of one FFT.
/// \param seed of the noise.
inline QByteArray spectrumOf(unsigned seed)
{
    std::mt19937 random(seed);
    std::exponential_distribution<double> power(1.0);
    QByteArray bytes(SpectrumPoints, '\0');
    for (int i = 0; i < SpectrumPoints; ++i) {
        const bool isCarrier = std::abs(i - SpectrumPoints / 2) < SpectrumPoints / 10;
        const double level = (isCarrier ? -25.0 : -100.0) + 10.0 * std::log10(power(random));
        bytes[i] = static_cast<char>(std::lround(std::clamp((level + 120.0) * 2.0, 0.0, 255.0)));
    }
    return bytes;
}

/// \return the spectra, each with noise of its own.
inline const std::vector<QByteArray>& spectra()
{
    static const std::vector<QByteArray> list = [] {
        std::vector<QByteArray> made;
        for (unsigned seed = 0; seed < DifferentSpectra; ++seed) {
            made.push_back(spectrumOf(seed));
        }
        return made;
    }();
    return list;
}

} // namespace bench
