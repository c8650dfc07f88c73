#include "scopes/EyeMeter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

constexpr double Pi = 3.14159265358979323846;
constexpr int Instants = 16; // per symbol
constexpr int HalfTaps = 4;  // samples to either side that a value between them is made of
constexpr size_t Taps = 2UL * HalfTaps;
constexpr int Fractions = 64; // places between two samples
constexpr size_t MinTraces = 60;
constexpr size_t MaxTraces = 1000;

// A sinc with a Hann window, for each of the places between two samples.
class Between
{
public:
    Between()
    {
        for (int fraction = 0; fraction < Fractions; ++fraction) {
            for (int tap = 0; tap < 2 * HalfTaps; ++tap) {
                const double t = static_cast<double>(fraction) / Fractions - (tap - HalfTaps + 1);
                const double window = 0.5 + 0.5 * std::cos(Pi * t / (HalfTaps + 0.5));
                const double sinc = t == 0.0 ? 1.0 : std::sin(Pi * t) / (Pi * t);
                m_taps.at(static_cast<size_t>(fraction)).at(static_cast<size_t>(tap)) =
                    sinc * window;
            }
        }
    }

    // The value at a place, which has HalfTaps samples on either side.
    double operator()(const double* samples, double place) const
    {
        const double steps = place * Fractions + 0.5;
        const auto step = static_cast<int>(steps);
        const double* first = samples + step / Fractions - HalfTaps + 1;
        const auto& taps = m_taps[static_cast<size_t>(step % Fractions)];
        double sum = 0.0;
        for (size_t tap = 0; tap < taps.size(); ++tap) {
            sum += taps[tap] * first[tap];
        }
        return sum;
    }

private:
    std::array<std::array<double, Taps>, Fractions> m_taps{};
};

// The magnitudes of a component at one instant of all symbols.
using Magnitudes = std::vector<double>;

struct Level
{
    double count = 0.0;
    double mean = 0.0;
    double deviation = 0.0;

    // The deviation of the level relative to its distance from zero: 1 / Q, where Q is that of
    // ITU-T O.201 for two levels of equal magnitude.
    double spread() const { return mean > 0.0 ? deviation / mean : 1.0; }
};

// The level of those magnitudes that lie between two bounds.
Level levelOf(const Magnitudes& magnitudes, double least, double most)
{
    Level level;
    double sum = 0.0;
    double squares = 0.0;
    for (const double value : magnitudes) {
        if (value >= least && value < most) {
            level.count += 1.0;
            sum += value;
            squares += value * value;
        }
    }
    if (level.count > 0.0) {
        level.mean = sum / level.count;
        level.deviation = std::sqrt(std::max(0.0, squares / level.count - level.mean * level.mean));
    }
    return level;
}

// The eye at one instant.
struct Cut
{
    Level all;         // if there are two levels, one on either side of zero
    Level inner;       // if there are four
    bool four = false; // there clearly are
};

constexpr double Infinite = 1e9;

// Splits the magnitudes into two levels at their mean.
void split(Cut& cut, const Magnitudes& magnitudes)
{
    constexpr double MinShare = 0.2;
    constexpr double MinDistance = 4.0; // of two levels, in deviations; one level split has 2.7
    cut.inner = levelOf(magnitudes, 0.0, cut.all.mean);
    const Level outer = levelOf(magnitudes, cut.all.mean, Infinite);
    cut.four = std::min(cut.inner.count, outer.count) >= MinShare * cut.all.count &&
        outer.mean - cut.inner.mean >= MinDistance * std::max(cut.inner.deviation, outer.deviation);
}

// With two levels, whether the eye is open anywhere. If so, there are no more of them, though
// between the decisions it may look like that.
bool isOpen(const std::array<Cut, Instants>& cuts)
{
    constexpr double ClosedSpread = 1.0 / 3.0;
    return std::any_of(
        cuts.begin(), cuts.end(), [](const Cut& cut) { return cut.all.spread() < ClosedSpread; });
}

// The opening, and the instant with the least spread, by a parabola through the squares of three.
EyeOpening openingOf(const std::array<Cut, Instants>& cuts)
{
    constexpr double Sigmas = 3.0;    // on either side, as in the eye height of an oscilloscope
    constexpr double MaxSpread = 0.6; // noise alone has 0.76
    const bool four =
        std::any_of(cuts.begin(), cuts.end(), [](const Cut& cut) { return cut.four; });
    std::array<double, Instants> squares{};
    for (size_t n = 0; n < squares.size(); ++n) {
        const Cut& cut = cuts[n];
        const double spread = !four ? cut.all.spread() : cut.four ? cut.inner.spread() : 1.0;
        squares[n] = spread * spread;
    }
    const auto best =
        static_cast<size_t>(std::min_element(squares.begin(), squares.end()) - squares.begin());
    const double left = squares[(best + Instants - 1) % Instants];
    const double right = squares[(best + 1) % Instants];
    EyeOpening opening;
    opening.valid = squares[best] <= MaxSpread * MaxSpread;
    if (!opening.valid) {
        return opening;
    }
    const double curve = left - 2.0 * squares[best] + right;
    const bool open = curve > 0.0 && left < 1.0 && right < 1.0;
    const double top = open ? 0.5 * (left - right) / curve : 0.0;
    const double least = open ? squares[best] - 0.25 * (left - right) * top : squares[best];
    const double spread = std::sqrt(std::max(0.0, least));
    opening.percent = std::clamp(100.0 * (1.0 - Sigmas * spread), 0.0, 100.0);
    opening.bestInstant = (static_cast<double>(best) + top) / Instants;
    opening.bestInstant -= std::floor(opening.bestInstant + 0.5);
    return opening;
}

// Adds the magnitudes of a block at each instant.
void addBlockTo(std::array<Magnitudes, Instants>& magnitudes, const QVector<double>& samples,
    double samplesPerSymbol)
{
    static const Between between;
    constexpr double First = HalfTaps + 1; // the first sample of a block is none of the signal
    const double last = static_cast<double>(samples.size()) - HalfTaps - 1.0;
    const double step = samplesPerSymbol / Instants;
    const auto begin = static_cast<int>(std::ceil(First / step));
    for (int n = begin; n * step < last; ++n) {
        magnitudes[static_cast<size_t>(n % Instants)].push_back(
            std::abs(between(samples.constData(), n * step)));
    }
}

} // namespace

void EyeMeter::addBlock(const QVector<double>& i, const QVector<double>& q)
{
    m_blocks.push_back({i, q, false});
    if (m_blocks.size() > MaxBlocks) {
        m_blocks.pop_front();
    }
    m_changed = true;
}

void EyeMeter::clear()
{
    *this = {};
}

const EyeFigures& EyeMeter::figures()
{
    if (m_changed) {
        m_changed = false;
        findPeriod();
        m_figures.i = openingOf(&Block::i);
        m_figures.q = openingOf(&Block::q);
    }
    return m_figures;
}

void EyeMeter::findPeriod()
{
    for (Block& block : m_blocks) {
        if (!block.searched) {
            block.searched = true;
            m_periodFinder.addBlock(block.i, block.q);
        }
    }
    const SymbolPeriodFinder::Period period = m_periodFinder.find();
    m_figures.symbolPeriodFound = period.found;
    constexpr double Usual = iqBlock::EyeSamplesPerSymbol;
    constexpr double Near = 0.005 * Usual; // The finder can hardly tell less.
    const bool other = period.found && std::abs(period.samplesPerSymbol - Usual) > Near;
    m_figures.samplesPerSymbol = other ? period.samplesPerSymbol : Usual;
}

EyeOpening EyeMeter::openingOf(QVector<double> Block::*component) const
{
    std::array<Magnitudes, Instants> magnitudes;
    for (Magnitudes& instant : magnitudes) {
        const double symbols = iqBlock::Records / m_figures.samplesPerSymbol + 1.0;
        instant.reserve(m_blocks.size() * static_cast<size_t>(symbols));
    }
    // The newest blocks; with few samples per symbol, a part of them has symbols enough.
    for (auto block = m_blocks.rbegin(); block != m_blocks.rend(); ++block) {
        if (magnitudes.front().size() < MaxTraces) {
            addBlockTo(magnitudes, *block.*component, m_figures.samplesPerSymbol);
        }
    }
    std::array<Cut, Instants> cuts;
    for (size_t n = 0; n < cuts.size(); ++n) {
        if (magnitudes[n].size() < MinTraces) {
            return {};
        }
        cuts[n].all = levelOf(magnitudes[n], 0.0, Infinite);
    }
    if (!isOpen(cuts)) {
        for (size_t n = 0; n < cuts.size(); ++n) {
            split(cuts[n], magnitudes[n]);
        }
    }
    return ::openingOf(cuts);
}
