#include "tools/measure/OrderTrials.h"

#include "scopes/ConstellationMeter.h"
#include "scopes/OrderFinder.h"
#include "wire/IqBlock.h"

#include <cmath>

namespace {

using Complex = AnalyticPoints::Complex;
using Settings = AnalyticPoints::Settings;
using Source = AnalyticPoints::Source;

constexpr double Pi = 3.14159265358979323846;
constexpr int MinReportDb = -6;
constexpr int MaxReportDb = 40;
constexpr int Points = ConstellationMeter::MaxBlocks * (iqBlock::Records - 1);

// A square of points with odd coordinates, with or without its corners.
std::vector<Complex> square(int perSide, bool corners)
{
    std::vector<Complex> points;
    for (int i = 1 - perSide; i < perSide; i += 2) {
        for (int q = 1 - perSide; q < perSide; q += 2) {
            if (corners || std::abs(i) + std::abs(q) < 2 * (perSide - 1)) {
                points.emplace_back(i, q);
            }
        }
    }
    return points;
}

std::vector<Complex> rings(std::initializer_list<std::vector<Complex>> parts)
{
    std::vector<Complex> points;
    for (const std::vector<Complex>& part : parts) {
        points.insert(points.end(), part.begin(), part.end());
    }
    return points;
}

// MSK at its symbols: a quarter of a turn to one side or the other.
Source minimumShift()
{
    return [phase = 0](std::mt19937& random, int /*symbol*/) mutable {
        phase += random() % 2 == 0 ? 1 : 3;
        return std::polar(1.0, Pi / 2.0 * (phase % 4));
    };
}

// π/4-QPSK: the four points are turned by 45° at every second symbol.
Source quarterShift()
{
    return [](std::mt19937& random, int symbol) {
        return std::polar(1.0, Pi / 4.0 * (symbol % 2 + 2.0 * static_cast<double>(random() % 4)));
    };
}

// OQPSK of which both I and Q are taken at the decisions of I: Q is between two symbols, where the
// raised cosine (roll-off 0.35) of its neighbours adds up.
Source offsetQpsk()
{
    constexpr int Neighbours = 8;
    constexpr double RollOff = 0.35;
    std::vector<double> pulse;
    for (int k = 0; k < Neighbours; ++k) {
        const double t = k - Neighbours / 2.0 + 0.5;
        const double sinc = std::sin(Pi * t) / (Pi * t);
        pulse.push_back(sinc * std::cos(Pi * RollOff * t) / (1.0 - std::pow(2.0 * RollOff * t, 2)));
    }
    return [pulse, bits = std::vector<double>(pulse.size())](
               std::mt19937& random, int /*symbol*/) mutable {
        bits.erase(bits.begin());
        bits.push_back(random() % 2 == 0 ? 1.0 : -1.0);
        double q = 0.0;
        for (size_t k = 0; k < bits.size(); ++k) {
            q += bits[k] * pulse[k];
        }
        return Complex(random() % 2 == 0 ? 1.0 : -1.0, q) / std::sqrt(2.0);
    };
}

// Carriers without a modulation, carriers that turn, and what is clipped.
QVector<Settings> carriers(double snr)
{
    const Source one = AnalyticPoints::randomOf({{1.0, 0.0}});
    const Source bpsk = AnalyticPoints::randomOf(ModulationOrder::Bpsk);
    const Source qpsk = AnalyticPoints::randomOf(ModulationOrder::Qpsk);
    const Source psk8 = AnalyticPoints::randomOf(ModulationOrder::Psk8);
    const Source qam16 = AnalyticPoints::randomOf(ModulationOrder::Qam16);
    return {
        {QStringLiteral("noise alone"),
            [](std::mt19937& /*random*/, int /*symbol*/) { return Complex(); }, snr},
        {QStringLiteral("carrier that stands"), one, snr},
        {QStringLiteral("carrier that turns slowly"), one, snr, 0.0003},
        {QStringLiteral("carrier, 1/2 turn per symbol"), one, snr, 0.5},
        {QStringLiteral("carrier, 1/4 turn per symbol"), one, snr, 0.25},
        {QStringLiteral("carrier, 1/8 turn per symbol"), one, snr, 0.125},
        {QStringLiteral("BPSK that turns"), bpsk, snr, 0.0003},
        {QStringLiteral("BPSK, 1/4 turn per symbol"), bpsk, snr, 0.25},
        {QStringLiteral("QPSK that turns"), qpsk, snr, 0.0003},
        {QStringLiteral("QPSK, 1/8 turn per symbol"), qpsk, snr, 0.125},
        {QStringLiteral("8PSK that turns"), psk8, snr, 0.0003},
        {QStringLiteral("16QAM that turns"), qam16, snr, 0.0003},
        {QStringLiteral("16QAM, clipped at half of its outer points"), qam16, snr, 0.0, 0.15},
    };
}

// Modulations that are none of the four.
QVector<Settings> modulations(double snr)
{
    const auto random = [](std::vector<Complex> points) {
        return AnalyticPoints::randomOf(std::move(points));
    };
    const auto ring = AnalyticPoints::ring;
    return {
        {QStringLiteral("OQPSK at the decisions of I"), offsetQpsk(), snr},
        {QStringLiteral("pi/4-QPSK"), quarterShift(), snr},
        {QStringLiteral("MSK"), minimumShift(), snr},
        {QStringLiteral("on-off keying"), random({{0.0, 0.0}, {1.0, 0.0}}), snr},
        {QStringLiteral("4PAM"), random({{-3, 0}, {-1, 0}, {1, 0}, {3, 0}}), snr},
        {QStringLiteral("3PSK"), random(ring(3, 1.0, 0.0)), snr},
        {QStringLiteral("6PSK"), random(ring(6, 1.0, 0.0)), snr},
        {QStringLiteral("16PSK"), random(ring(16, 1.0, 0.0)), snr},
        {QStringLiteral("8QAM, two squares"),
            random(rings({ring(4, 1.0, Pi / 4.0), ring(4, 2.0, 0.0)})), snr},
        {QStringLiteral("16APSK"),
            random(rings({ring(4, 1.0, Pi / 4.0), ring(12, 2.7, Pi / 12.0)})), snr},
        {QStringLiteral("32APSK"),
            random(rings({ring(4, 1.0, Pi / 4.0), ring(12, 2.6, Pi / 12.0), ring(16, 4.6, 0.0)})),
            snr},
        {QStringLiteral("32QAM"), random(square(6, false)), snr},
        {QStringLiteral("64QAM"), random(square(8, true)), snr},
    };
}

} // namespace

double orderTrials::threshold(ModulationOrder order)
{
    const auto states = static_cast<double>(modulationOrder::points(order).size());
    return 10.0 * std::log10(states - 1.0);
}

orderTrials::Counts orderTrials::run(
    const AnalyticPoints::Settings& signal, ModulationOrder order, int trials)
{
    Counts counts;
    counts.trials = trials;
    for (int trial = 0; trial < trials; ++trial) {
        AnalyticPoints points(signal, static_cast<quint32>(trial + 1));
        const ModulationOrder found = orderFinder::find(points.take(Points)).order;
        if (found == ModulationOrder::Unknown) {
            ++counts.unknown;
        } else if (found == order) {
            ++counts.right;
        } else {
            ++counts.wrong;
        }
    }
    return counts;
}

QString orderTrials::report(int trials)
{
    QString text;
    const auto add = [&](const Settings& signal, ModulationOrder order) {
        const Counts counts = run(signal, order, trials);
        text += QStringLiteral("%1, %2 dB: %3 right, %4 unknown, %5 wrong\n")
                    .arg(signal.name)
                    .arg(signal.snr)
                    .arg(counts.right)
                    .arg(counts.unknown)
                    .arg(counts.wrong);
    };
    for (int snr = MinReportDb; snr <= MaxReportDb; snr += 2) {
        for (const ModulationOrder order : {ModulationOrder::Bpsk, ModulationOrder::Qpsk,
                 ModulationOrder::Psk8, ModulationOrder::Qam16}) {
            add({modulationOrder::name(order), AnalyticPoints::randomOf(order), double(snr)},
                order);
        }
        for (const Settings& signal : otherSignals(snr)) {
            add(signal, ModulationOrder::Unknown);
        }
    }
    return text;
}

QVector<AnalyticPoints::Settings> orderTrials::otherSignals(double snr)
{
    return carriers(snr) + modulations(snr);
}
