#include "scopes/RangeKeeper.h"

#include <algorithm>

namespace {

// Room at the edge of a fitted range, so that the outermost points are seen whole.
constexpr double Room = 1.05;

// The smallest range of the series 1, 0.5, 0.2, 0.1, ... that holds `peak`.
double fitting(double peak)
{
    double limit = 1.0;
    for (int step = 0;; ++step) {
        const double smaller = step % 3 == 1 ? limit * 0.4 : limit * 0.5;
        if (peak * Room > smaller || smaller < 0.99 * RangeKeeper::Smallest) {
            break;
        }
        limit = smaller;
    }
    return limit;
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
    if (wanted >= m_limit) {
        m_limit = wanted;
        m_smaller = 0;
        m_largestSince = 0.0;
        return;
    }
    m_largestSince = std::max(m_largestSince, peak);
    if (++m_smaller >= ShrinkAfter) {
        m_limit = fitting(m_largestSince);
        m_smaller = 0;
        m_largestSince = 0.0;
    }
}
