#include "plot/TickTexts.h"

#include <algorithm>
#include <cmath>

int tickTexts::decimals(const QVector<double>& positions)
{
    for (int count = 0; count < MaxDecimals; ++count) {
        const double scale = std::pow(10.0, count);
        const bool exact =
            std::all_of(positions.begin(), positions.end(), [scale](double position) {
                return std::abs(position * scale - std::round(position * scale)) < 1e-6 * scale;
            });
        if (exact) {
            return count;
        }
    }
    return MaxDecimals;
}

QStringList tickTexts::texts(const QVector<double>& positions)
{
    const int count = decimals(positions);
    QStringList texts;
    texts.reserve(positions.size());
    for (const double position : positions) {
        texts += QString::number(position, 'f', count);
    }
    return texts;
}
