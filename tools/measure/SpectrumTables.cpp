#include "tools/measure/SpectrumTables.h"

#include "spectrum/PeakSearch.h"
#include "spectrum/SpectrumTrace.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.14159265358979323846;
constexpr double FloorDB = -110.0;

// The line of an unmodulated carrier in dB, by the window of the FFT; bins from its middle.
double gaussianLine(double bins)
{
    return -3.0 * bins * bins;
}

double hannLine(double bins)
{
    const double x = Pi * bins;
    if (std::abs(bins) < 1e-9) {
        return 0.0;
    }
    if (std::abs(std::abs(bins) - 1.0) < 1e-9) {
        return 20.0 * std::log10(0.5);
    }
    return 20.0 * std::log10(std::max(1e-9, std::abs(std::sin(x) / x / (1.0 - bins * bins))));
}

// The levels of a line as they come from the card, in steps of half a decibel.
QVector<float> levelsOf(double (*line)(double), double index, double level)
{
    constexpr int Points = 64;
    QByteArray bytes;
    for (int i = 0; i < Points; ++i) {
        const double dB = std::max(FloorDB, level + line(i - index));
        bytes += static_cast<char>(std::lround(std::clamp((dB + 120.0) * 2.0, 0.0, 255.0)));
    }
    SpectrumTrace trace;
    trace.add(bytes);
    return trace.levels();
}

MeasurementRows peakRows()
{
    const QString table = QStringLiteral("Peak frequency");
    MeasurementRows rows;
    for (const double level : {-20.0, -60.3, -90.0}) {
        for (const double offset : {0.0, 0.1, 0.2, 0.3, 0.4, 0.5}) {
            const double index = 30.0 + offset;
            const QString at =
                QStringLiteral("%1 bins beside a point, %2 dB").arg(offset).arg(level);
            rows += {table, QStringLiteral("Gaussian window, ") + at, index,
                peakSearch::highest(levelsOf(gaussianLine, index, level)).index, 0.1,
                QStringLiteral("bins")};
            rows += {table, QStringLiteral("Hann window, ") + at, index,
                peakSearch::highest(levelsOf(hannLine, index, level)).index, 0.1,
                QStringLiteral("bins")};
        }
    }
    return rows;
}

} // namespace

MeasurementRows spectrumTables::rows()
{
    return peakRows();
}
