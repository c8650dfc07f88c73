#include "spectrum/SpectrumTrace.h"

#include <algorithm>
#include <array>

namespace {
constexpr int MaxDepth = 1000;

const std::array<float, 256>& levelTable()
{
    static const std::array<float, 256> table = [] {
        std::array<float, 256> levels{};
        for (size_t byte = 0; byte < levels.size(); ++byte) {
            levels[byte] = static_cast<float>(SpectrumTrace::level(static_cast<quint8>(byte)));
        }
        return levels;
    }();
    return table;
}
} // namespace

void SpectrumTrace::setAveraging(int depth)
{
    m_depth = qBound(1, depth, MaxDepth);
    m_averaged = 0;
}

void SpectrumTrace::setMaxHold(bool on)
{
    m_holding = on;
    m_held.clear();
}

void SpectrumTrace::restart()
{
    m_averaged = 0;
    m_held.clear();
}

void SpectrumTrace::clear()
{
    restart();
    m_levels.clear();
    m_peak = -1;
}

void SpectrumTrace::add(const QByteArray& points)
{
    if (points.isEmpty()) {
        return;
    }
    if (points.size() != m_levels.size()) {
        restart();
        m_levels.resize(points.size());
    }
    average(points);
    if (m_holding) {
        hold(points);
    }
    m_peak = std::max_element(m_levels.cbegin(), m_levels.cend()) - m_levels.cbegin();
}

void SpectrumTrace::average(const QByteArray& points)
{
    m_averaged = qMin(m_averaged + 1, m_depth);
    const float weight = 1.0F / static_cast<float>(m_averaged);
    const auto& table = levelTable();
    float* level = m_levels.data();
    for (const char point : points) {
        const float now = table[static_cast<quint8>(point)];
        *level = m_averaged == 1 ? now : *level + (now - *level) * weight;
        ++level;
    }
}

void SpectrumTrace::hold(const QByteArray& points)
{
    if (m_held.size() != points.size()) {
        m_held.fill(levelTable()[0], points.size());
    }
    const auto& table = levelTable();
    float* held = m_held.data();
    for (const char point : points) {
        *held = std::max(*held, table[static_cast<quint8>(point)]);
        ++held;
    }
}
