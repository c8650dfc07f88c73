#include "spectrum/SpectrumTrace.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {
constexpr int MaxDepth = 1000;

using Table = std::array<float, 256>; // one number per byte

Table tableOf(double (*number)(quint8))
{
    Table table{};
    for (size_t byte = 0; byte < table.size(); ++byte) {
        table[byte] = static_cast<float>(number(static_cast<quint8>(byte)));
    }
    return table;
}

const Table& levelTable()
{
    static const Table table = tableOf(&SpectrumTrace::level);
    return table;
}

// In milliwatts where the levels are in dBm.
const Table& powerTable()
{
    static const Table table =
        tableOf([](quint8 byte) { return std::pow(10.0, SpectrumTrace::level(byte) / 10.0); });
    return table;
}

float levelOfPower(float power)
{
    return 10.0F * std::log10(power);
}

void look(const QByteArray& points, const Table& table, QVector<float>& numbers)
{
    numbers.resize(points.size());
    float* number = numbers.data();
    for (const char point : points) {
        *number++ = table[static_cast<quint8>(point)];
    }
}

qsizetype highest(const QVector<float>& numbers)
{
    return std::max_element(numbers.cbegin(), numbers.cend()) - numbers.cbegin();
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
    m_levelsStale = false;
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
    m_peak = highest(m_levelsStale ? m_powers : m_levels);
}

void SpectrumTrace::average(const QByteArray& points)
{
    m_averaged = qMin(m_averaged + 1, m_depth);
    m_levelsStale = m_averaged > 1;
    if (!m_levelsStale) {
        look(points, levelTable(), m_levels);
        if (m_depth > 1) {
            look(points, powerTable(), m_powers);
        }
        return;
    }
    const float weight = 1.0F / static_cast<float>(m_averaged);
    const Table& table = powerTable();
    float* power = m_powers.data();
    for (const char point : points) {
        *power += (table[static_cast<quint8>(point)] - *power) * weight;
        ++power;
    }
}

const QVector<float>& SpectrumTrace::levels() const
{
    if (m_levelsStale) {
        std::transform(m_powers.cbegin(), m_powers.cend(), m_levels.begin(), levelOfPower);
        m_levelsStale = false;
    }
    return m_levels;
}

float SpectrumTrace::levelAt(qsizetype index) const
{
    return m_levelsStale ? levelOfPower(m_powers.at(index)) : m_levels.at(index);
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
