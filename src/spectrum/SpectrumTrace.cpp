#include "spectrum/SpectrumTrace.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {
constexpr int MaxDepth = 1000;
constexpr quint8 OverByte = 255;

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

// Decibels of the powers that a mean of spectra can have, which are normal numbers above 0: those
// of the power of two, those of the middle of the interval in which the rest of the number lies,
// and a series for what that is off (Abramowitz and Stegun, Handbook of Mathematical Functions,
// 4.1.24). The first term that is left out is below 2e-11 dB.
class Decibels
{
public:
    Decibels()
    {
        for (size_t i = 0; i < Intervals; ++i) {
            const double middle = 1.0 + (static_cast<double>(i) + 0.5) / Intervals;
            m_intervals[i] = {10.0 * std::log10(middle), 1.0 / middle};
        }
    }

    float operator()(float power) const
    {
        quint32 bits = 0;
        std::memcpy(&bits, &power, sizeof bits);
        const auto& [level, inverse] =
            m_intervals[(bits >> (FractionBits - IntervalBits)) & (Intervals - 1)];
        const int exponent = static_cast<int>(bits >> FractionBits) - Bias;
        if (exponent <= -Bias || exponent > Bias) {
            return 10.0F * std::log10(power); // 0, infinite or not a positive number
        }
        bits = (bits & FractionMask) | One;
        float fraction = 0.0F;
        std::memcpy(&fraction, &bits, sizeof fraction);
        const double off = static_cast<double>(fraction) * inverse - 1.0;
        const double series = off * (1.0 - off * (0.5 - off * (1.0 / 3.0)));
        return static_cast<float>(exponent * PerPowerOfTwo + level + PerNeper * series);
    }

private:
    struct Interval
    {
        double level;   // of its middle, in decibels
        double inverse; // of its middle
    };

    static constexpr int FractionBits = 23;
    static constexpr quint32 FractionMask = (1U << FractionBits) - 1;
    static constexpr int Bias = 127;
    static constexpr quint32 One = static_cast<quint32>(Bias) << FractionBits;
    static constexpr int IntervalBits = 8;
    static constexpr size_t Intervals = size_t{1} << IntervalBits;
    static constexpr double PerPowerOfTwo = 3.010299956639812;
    static constexpr double PerNeper = 4.342944819032518;

    std::array<Interval, Intervals> m_intervals{};
};

const Decibels& decibels()
{
    static const Decibels table;
    return table;
}

void look(const QByteArray& points, const Table& table, QVector<float>& numbers)
{
    numbers.resize(points.size());
    float* number = numbers.data();
    for (const char point : points) {
        *number++ = table[static_cast<quint8>(point)];
    }
}

// Moves each number towards that of its point, by this part of the difference.
void approach(const QByteArray& points, const Table& table, float weight, QVector<float>& numbers)
{
    float* number = numbers.data();
    for (const char point : points) {
        *number += (table[static_cast<quint8>(point)] - *number) * weight;
        ++number;
    }
}

template <class Choose>
void keep(const QByteArray& points, QVector<float>& levels, Choose choose)
{
    const Table& table = levelTable();
    if (levels.size() != points.size()) {
        look(points, table, levels);
        return;
    }
    float* level = levels.data();
    for (const char point : points) {
        *level = choose(*level, table[static_cast<quint8>(point)]);
        ++level;
    }
}

// The highest number first and where it is then: two passes that need no branches are faster than
// one.
qsizetype highest(const QVector<float>& numbers)
{
    const float* const first = numbers.constData();
    const qsizetype size = numbers.size();
    float top = first[0];
    for (qsizetype i = 1; i < size; ++i) {
        top = std::max(top, first[i]);
    }
    return std::find(first, first + size, top) - first;
}

quint8 highest(const QByteArray& points)
{
    quint8 top = 0;
    for (const char point : points) {
        top = std::max(top, static_cast<quint8>(point));
    }
    return top;
}
} // namespace

void SpectrumTrace::setAveraging(int depth)
{
    const int bounded = qBound(1, depth, MaxDepth);
    m_averagingOn = bounded > 1;
    if (m_averagingOn) {
        m_depth = bounded;
    }
    m_averaged = 0;
}

void SpectrumTrace::setAverageKind(Average kind)
{
    m_averagingOn = kind != Average::Off;
    if (m_averagingOn) {
        m_kind = kind;
    }
    m_averaged = 0;
}

void SpectrumTrace::setMaxHold(bool on)
{
    m_high.on = on;
    m_high.levels.clear();
}

void SpectrumTrace::setMinHold(bool on)
{
    m_low.on = on;
    m_low.levels.clear();
}

void SpectrumTrace::clearHolds()
{
    m_high.levels.clear();
    m_low.levels.clear();
}

void SpectrumTrace::restart()
{
    m_averaged = 0;
    clearHolds();
}

void SpectrumTrace::clear()
{
    restart();
    m_levels.clear();
    m_powers.clear();
    m_levelsStale = false;
    m_powersStale = false;
    m_variance = 0.0;
    m_peak = -1;
    m_over = false;
}

void SpectrumTrace::add(const QByteArray& points)
{
    if (points.isEmpty()) {
        return;
    }
    if (points.size() != m_levels.size()) {
        restart();
    }
    average(points);
    hold(points);
    const quint8 top = highest(points);
    m_over = top == OverByte;
    // The newest spectrum's levels rise with their bytes.
    m_peak = m_averaged == 1 ? points.indexOf(static_cast<char>(top))
                             : highest(m_levelsStale ? m_powers : m_levels);
}

void SpectrumTrace::average(const QByteArray& points)
{
    m_averaged = qMin(m_averaged + 1, averaging());
    if (m_averaged == 1) {
        m_newest = points;
        m_powersStale = true;
        m_levelsStale = false;
        m_variance = 1.0;
        look(points, levelTable(), m_levels);
        return;
    }
    static_cast<void>(powers()); // Those of the first spectrum, unless they are computed already.
    const float weight = 1.0F / static_cast<float>(m_averaged);
    m_variance = m_variance * (1.0 - weight) * (1.0 - weight) + weight * weight;
    approach(points, powerTable(), weight, m_powers);
    m_levelsStale = m_kind == Average::Power;
    if (!m_levelsStale) {
        approach(points, levelTable(), weight, m_levels);
    }
}

const QVector<float>& SpectrumTrace::powers() const
{
    if (m_powersStale) {
        look(m_newest, powerTable(), m_powers);
        m_powersStale = false;
    }
    return m_powers;
}

const QVector<float>& SpectrumTrace::levels() const
{
    if (m_levelsStale) {
        const Decibels& levelOf = decibels();
        std::transform(m_powers.cbegin(), m_powers.cend(), m_levels.begin(),
            [&levelOf](float power) { return levelOf(power); });
        m_levelsStale = false;
    }
    return m_levels;
}

float SpectrumTrace::levelAt(qsizetype index) const
{
    return m_levelsStale ? decibels()(m_powers.at(index)) : m_levels.at(index);
}

void SpectrumTrace::hold(const QByteArray& points)
{
    if (m_high.on) {
        keep(points, m_high.levels, [](float a, float b) { return std::max(a, b); });
    }
    if (m_low.on) {
        keep(points, m_low.levels, [](float a, float b) { return std::min(a, b); });
    }
}
