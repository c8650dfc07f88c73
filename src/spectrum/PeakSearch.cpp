#include "spectrum/PeakSearch.h"

#include <algorithm>
#include <cmath>

namespace {

// Finds the points that the levels rise to, and fall from, by the excursion.
class Walk
{
public:
    Walk(const QVector<float>& levels, float excursion)
        : m_levels(levels)
        , m_excursion(excursion)
    {
    }

    // Calls found(index) for each peak from left to right.
    template <class Found>
    void peaks(Found found)
    {
        for (qsizetype i = 0; i < m_levels.size(); ++i) {
            const float level = m_levels.at(i);
            if (m_rising ? level > m_levels.at(m_turn) : level < m_levels.at(m_turn)) {
                m_turn = i;
            } else if (std::abs(m_levels.at(m_turn) - level) >= m_excursion) {
                if (m_rising) {
                    found(m_turn);
                }
                m_rising = !m_rising;
                m_turn = i;
            }
        }
        if (m_rising && !m_levels.isEmpty()) {
            found(m_turn);
        }
    }

private:
    const QVector<float>& m_levels;
    float m_excursion;
    qsizetype m_turn = 0; // the highest point while rising, the lowest while falling
    bool m_rising = true;
};

} // namespace

peakSearch::Peak peakSearch::at(const QVector<float>& levels, qsizetype index)
{
    if (index < 0 || index >= levels.size()) {
        return {};
    }
    const float top = levels.at(index);
    qsizetype first = index;
    while (first > 0 && levels.at(first - 1) == top) {
        --first;
    }
    qsizetype last = index;
    while (last + 1 < levels.size() && levels.at(last + 1) == top) {
        ++last;
    }
    Peak peak{true, static_cast<double>(first + last) / 2.0, static_cast<double>(top)};
    if (first != last || first == 0 || last + 1 == levels.size()) {
        return peak;
    }
    const double left = static_cast<double>(levels.at(index - 1)) - peak.level;
    const double right = static_cast<double>(levels.at(index + 1)) - peak.level;
    if (left < 0.0 && right < 0.0 && std::isfinite(left + right)) {
        const double offset = 0.5 * (left - right) / (left + right);
        peak.index += offset;
        peak.level -= 0.25 * (left - right) * offset;
    }
    return peak;
}

peakSearch::Peak peakSearch::highest(const QVector<float>& levels)
{
    return at(levels, std::max_element(levels.cbegin(), levels.cend()) - levels.cbegin());
}

peakSearch::Peak peakSearch::next(const QVector<float>& levels, qsizetype index, float excursion)
{
    if (index < 0 || index >= levels.size()) {
        return {};
    }
    const float below = levels.at(index);
    qsizetype best = -1;
    Walk(levels, excursion).peaks([&](qsizetype peak) {
        const float level = levels.at(peak);
        const bool lower = level < below || (level == below && peak > index);
        if (lower && (best < 0 || level > levels.at(best))) {
            best = peak;
        }
    });
    return at(levels, best);
}
