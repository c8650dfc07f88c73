#include "spectrum/ChartScale.h"

#include <algorithm>
#include <cmath>

bool ChartScale::set(double reference, int perDivision)
{
    const bool known = std::find(std::begin(PerDivision), std::end(PerDivision), perDivision) !=
        std::end(PerDivision);
    if (!known || !std::isfinite(reference)) {
        return false;
    }
    const ChartScale before = *this;
    m_reference = static_cast<int>(
        std::lround(std::clamp<double>(reference, LowestReference, HighestReference)));
    m_perDivision = perDivision;
    return *this != before;
}

ChartScale ChartScale::fitted(double floor, double peak)
{
    constexpr int Used = Divisions - 3; // The rest is space above the peak and below the floor.
    ChartScale scale;
    for (const int perDivision : PerDivision) {
        // Nothing that a card can send lies above the top of a new chart.
        const double top =
            std::min<double>(std::ceil(peak / perDivision + 0.5) * perDivision, DefaultReference);
        if (scale.set(top, perDivision); peak - floor <= Used * perDivision) {
            break;
        }
    }
    return scale;
}

int ChartScale::tickStep(int height) const
{
    return m_perDivision * (height < 170 ? 4 : height < 330 ? 2 : 1);
}

Scale ChartScale::rows(const QRect& plot) const
{
    return {static_cast<double>(lowest()), static_cast<double>(m_reference),
        static_cast<double>(plot.bottom()), static_cast<double>(plot.top())};
}

QString ChartScale::text() const
{
    return isDefault() ? QString()
                       : QStringLiteral("Ref %1 dB %2 dB/div").arg(m_reference).arg(m_perDivision);
}
