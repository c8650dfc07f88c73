#include "scopes/RangeKeeper.h"

#include <algorithm>

namespace {

// Room at the edge of a range that is chosen: by so much the peaks of noise differ from block to
// block.
constexpr double Room = 1.15;

// The ranges of one decade, from which the others follow.
constexpr double Decade[] = {1.0, 0.8, 0.6, 0.4, 0.3, 0.2, 0.15};

// The smallest range of the series that holds `peak` with room to spare, between MinLimit and 1.
double fitting(double peak)
{
    double limit = 1.0;
    for (int divisor = 1;; divisor *= 10) {
        for (const double range : Decade) {
            if (peak * Room > range / divisor || range / divisor < RangeKeeper::MinLimit) {
                return limit;
            }
            limit = range / divisor;
        }
    }
}

} // namespace

void RangeKeeper::setFixed(bool fixed)
{
    m_fixed = fixed;
    m_smaller = 0;
    m_largestSince = 0.0;
}

void RangeKeeper::addPeak(double peak)
{
    if (!(peak > 0.0)) {
        return;
    }
    const double wanted = fitting(peak);
    if (m_fitAnew) {
        m_fitAnew = false;
        m_limit = wanted;
        m_smaller = 0;
        m_largestSince = 0.0;
        return;
    }
    if (wanted >= m_limit) {
        m_limit = peak > m_limit ? wanted : m_limit;
        m_smaller = 0;
        m_largestSince = 0.0;
        return;
    }
    if (!m_mayShrink) {
        return;
    }
    m_largestSince = std::max(m_largestSince, peak);
    if (++m_smaller >= ShrinkAfter) {
        m_limit = fitting(m_largestSince);
        m_smaller = 0;
        m_largestSince = 0.0;
    }
}
