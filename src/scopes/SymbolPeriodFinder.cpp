#include "scopes/SymbolPeriodFinder.h"

#include "wire/IqBlock.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

namespace {

using Complex = std::complex<double>;

constexpr double Pi = 3.14159265358979323846;
constexpr int Samples = iqBlock::Records;

// The edges reach so far to either side of half the symbol rate, in symbol rates.
constexpr double EdgeWidth = 0.15;

// The discrete Fourier transform, in place (radix 2; Cooley and Tukey, Mathematics of Computation,
// vol. 19, 1965).
class Transform
{
public:
    explicit Transform(size_t points)
        : m_turns(points / 2)
    {
        for (size_t k = 0; k < m_turns.size(); ++k) {
            m_turns[k] =
                std::polar(1.0, -2.0 * Pi * static_cast<double>(k) / static_cast<double>(points));
        }
    }

    void run(std::vector<Complex>& data) const
    {
        const size_t points = data.size();
        for (size_t n = 1, mirrored = 0; n < points; ++n) {
            size_t bit = points / 2;
            for (; (mirrored & bit) != 0; bit /= 2) {
                mirrored ^= bit;
            }
            mirrored |= bit;
            if (n < mirrored) {
                std::swap(data[n], data[mirrored]);
            }
        }
        for (size_t half = 1; half < points; half *= 2) {
            for (size_t first = 0; first < points; first += 2 * half) {
                pass(&data[first], half, points / (2 * half));
            }
        }
    }

private:
    void pass(Complex* data, size_t half, size_t stride) const
    {
        for (size_t k = 0; k < half; ++k) {
            const Complex& turn = m_turns[k * stride];
            const Complex& b = data[k + half];
            const Complex turned(b.real() * turn.real() - b.imag() * turn.imag(),
                b.real() * turn.imag() + b.imag() * turn.real());
            data[k + half] = data[k] - turned;
            data[k] += turned;
        }
    }

    std::vector<Complex> m_turns;
};

// A Tukey window of which half is flat: its flat middle keeps the edges of a band, which slope,
// from moving towards the middle of the band.
std::array<double, Samples> windowOf()
{
    constexpr double Flat = 0.5;
    std::array<double, Samples> window{};
    for (int n = 0; n < Samples; ++n) {
        const double in = std::min(n + 0.5, Samples - 0.5 - n) / (Samples / 2.0);
        window[static_cast<size_t>(n)] = in >= Flat ? 1.0 : 0.5 - 0.5 * std::cos(Pi * in / Flat);
    }
    return window;
}

// The mean is taken out; the first I sample of a block from the line is not one of the signal.
std::vector<Complex> windowed(const QVector<double>& i, const QVector<double>& q, size_t points)
{
    static const std::array<double, Samples> window = windowOf();
    Complex mean;
    for (int n = 1; n < Samples; ++n) {
        mean += Complex(i.at(n), q.at(n)) / (Samples - 1.0);
    }
    std::vector<Complex> data(points);
    for (int n = 1; n < Samples; ++n) {
        const auto at = static_cast<size_t>(n);
        data[at] = (Complex(i.at(n), q.at(n)) - mean) * window[at];
    }
    return data;
}

// The product of a line above half the symbol rate with one below it.
struct Products
{
    Complex i;
    Complex q;
    double largest = 0.0;
};

Complex product(Complex a, Complex b)
{
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

// The lines of one component with their magnitudes.
struct Lines
{
    std::vector<Complex> values;
    std::vector<double> magnitudes;

    explicit Lines(size_t count)
    {
        values.reserve(count);
        magnitudes.reserve(count);
    }

    void append(Complex value)
    {
        values.push_back(value);
        magnitudes.push_back(std::sqrt(std::norm(value)));
    }
};

// A real signal has at minus f the conjugate of what it has at f, so the lower edge is read there.
// With the distances that are looked at, all lines that are read here and below lie in the
// spectrum.
Products productsAt(const Lines& i, const Lines& q, int distance)
{
    Products sum;
    const int last = distance / 2 + static_cast<int>(EdgeWidth * distance);
    for (int upper = (distance + 1) / 2; upper <= last; ++upper) {
        const auto a = static_cast<size_t>(upper);
        const auto b = static_cast<size_t>(distance - upper);
        sum.i += product(i.values[a], i.values[b]);
        sum.q += product(q.values[a], q.values[b]);
        sum.largest += i.magnitudes[a] * i.magnitudes[b] + q.magnitudes[a] * q.magnitudes[b];
    }
    return sum;
}

} // namespace

SymbolPeriodFinder::Block SymbolPeriodFinder::blockOf(
    const QVector<double>& i, const QVector<double>& q)
{
    static const Transform transform(Points);
    std::vector<Complex> data = windowed(i, q, Points);
    transform.run(data);
    Block block;
    Lines linesI(Points / 2 + 1);
    Lines linesQ(Points / 2 + 1);
    for (size_t k = 0; k <= Points / 2; ++k) {
        const Complex plus = data[k];
        const Complex minus = std::conj(data[(Points - k) % Points]);
        linesI.append((plus + minus) * 0.5);
        const Complex difference = (plus - minus) * 0.5;
        linesQ.append({difference.imag(), -difference.real()});
        block.power[k] =
            static_cast<float>(std::norm(linesI.values.back()) + std::norm(linesQ.values.back()));
    }
    for (int n = 0; n < Distances; ++n) {
        const auto at = static_cast<size_t>(n);
        const Products products = productsAt(linesI, linesQ, n + MinDistance);
        block.aligned.at(at) = static_cast<float>(std::norm(products.i + products.q));
        block.staggered.at(at) = static_cast<float>(std::norm(products.i - products.q));
        block.largest.at(at) = static_cast<float>(products.largest * products.largest);
    }
    return block;
}

void SymbolPeriodFinder::addBlock(const QVector<double>& i, const QVector<double>& q)
{
    if (std::min(i.size(), q.size()) < Samples) {
        return;
    }
    m_blocks.push_back(blockOf(i, q));
    if (m_blocks.size() > MaxBlocks) {
        m_blocks.pop_front();
    }
}

SymbolPeriodFinder::Block SymbolPeriodFinder::sum() const
{
    Block sum;
    const auto add = [](auto& to, const auto& from) {
        std::transform(to.begin(), to.end(), from.begin(), to.begin(), std::plus<>());
    };
    for (const Block& block : m_blocks) {
        add(sum.power, block.power);
        add(sum.aligned, block.aligned);
        add(sum.staggered, block.staggered);
        add(sum.largest, block.largest);
    }
    return sum;
}

// Half the symbol rate lies where the power has dropped by 6 dB (signal) or 3 dB (noise behind the
// same filter), and goes on dropping; a line of the spectrum rises and falls.
bool SymbolPeriodFinder::edgeIsAt(const Block& sum, int distance)
{
    constexpr double MinEdge = 0.04;
    constexpr double MaxEdge = 0.6;
    constexpr double Uneven = 1.5; // the spectrum of a few blocks
    const auto half = static_cast<size_t>(distance) / 2;
    const size_t inside = static_cast<size_t>(distance) * 3 / 10;
    double power = 0.0;
    for (size_t k = 2; k < inside; ++k) {
        power += sum.power[k] / static_cast<double>(inside - 2);
    }
    const double edge = (sum.power[half] + sum.power[half + static_cast<size_t>(distance) % 2]) / 2;
    const auto reach = std::max<size_t>(3, static_cast<size_t>(distance) / 10);
    return edge >= MinEdge * power && edge <= MaxEdge * power &&
        sum.power[half - reach] * Uneven > edge && sum.power[half + reach] < edge * Uneven;
}

// Where the spectrum slopes, the window's main lobe sees more of the stronger side, so the edges
// seem farther apart than they are. For a slope of k nepers per unit of frequency the shift is k
// times the second moment of the lobe; the factor is that of this window, found by trial.
double SymbolPeriodFinder::slopeCorrection(const Block& sum, int distance)
{
    constexpr double Factor = 0.6 * 0.5 / (Samples * Samples);
    const int reach = distance / 10;
    const int low = distance / 2 - reach + distance % 2;
    const int high = distance / 2 + reach;
    const double ratio = sum.power[static_cast<size_t>(high)] /
        std::max(1e-30, static_cast<double>(sum.power[static_cast<size_t>(low)]));
    const double slope = -0.5 * std::log(std::max(1e-9, ratio)) * Points / (high - low);
    return 2.0 * std::max(0.0, slope) * Factor * Points;
}

SymbolPeriodFinder::Period SymbolPeriodFinder::find() const
{
    // Noise reaches more by chance where the edges are of a few lines only.
    constexpr double MinCoherence = 0.52;
    constexpr double MorePerSample = 0.012;
    constexpr double MinPeriod = 1.98;
    constexpr double MaxPeriod = 16.2;
    if (static_cast<int>(m_blocks.size()) < MinBlocks) {
        return {};
    }
    const Block all = sum();
    const auto coherence = [&all](int n) {
        const auto at = static_cast<size_t>(n);
        return std::max(all.aligned[at], all.staggered[at]) /
            std::max(1e-30, static_cast<double>(all.largest[at]));
    };
    Period best;
    double bestScore = 1.0;
    for (int n = 1; n + 1 < Distances; ++n) {
        const int distance = n + MinDistance;
        const double here = coherence(n);
        const double score =
            here / (MinCoherence + MorePerSample * Points / static_cast<double>(distance));
        const double left = coherence(n - 1);
        const double right = coherence(n + 1);
        if (score <= bestScore || here < left || here < right || !edgeIsAt(all, distance)) {
            continue;
        }
        const double curve = left - 2.0 * here + right;
        const double top = curve < 0.0 ? 0.5 * (left - right) / curve : 0.0;
        const double period = Points / (distance + top - slopeCorrection(all, distance));
        if (period >= MinPeriod && period <= MaxPeriod) {
            best = {true, std::clamp(period, 2.0, 16.0)};
            bestScore = score;
        }
    }
    return best;
}
