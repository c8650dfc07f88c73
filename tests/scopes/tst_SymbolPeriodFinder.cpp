#include "scopes/SymbolPeriodFinder.h"
#include "support/TestMain.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <random>

// The finder against the same steps written out plainly: a transform by its definition, I and Q one
// after the other, and no other precision than that of a double.

namespace {

using Complex = std::complex<double>;

constexpr double Pi = 3.14159265358979323846;
constexpr int Samples = 256;
constexpr int Points = 512;

// One line of the spectrum of a component, its mean taken out, the first sample left out.
std::vector<Complex> linesOf(const QVector<double>& samples)
{
    static const std::vector<Complex> turns = [] {
        std::vector<Complex> made;
        for (int n = 0; n < Points; ++n) {
            made.push_back(std::polar(1.0, -2.0 * Pi * n / Points));
        }
        return made;
    }();
    double mean = 0.0;
    for (int n = 1; n < Samples; ++n) {
        mean += samples.at(n) / 255.0;
    }
    std::vector<double> windowed(Samples, 0.0);
    for (int n = 1; n < Samples; ++n) {
        // Half of the window is flat, a quarter on either side is a raised cosine.
        const double fromEnd = std::min(n, 255 - n) + 0.5;
        const double weight = fromEnd >= 64.0 ? 1.0 : (1.0 - std::cos(Pi * fromEnd / 64.0)) / 2.0;
        windowed[static_cast<size_t>(n)] = weight * (samples.at(n) - mean);
    }
    std::vector<Complex> lines;
    for (size_t k = 0; k <= Points / 2; ++k) {
        double re = 0.0;
        double im = 0.0;
        for (size_t n = 1; n < Samples; ++n) {
            const Complex& turn = turns[k * n % Points];
            re += windowed[n] * turn.real();
            im += windowed[n] * turn.imag();
        }
        lines.emplace_back(re, im);
    }
    return lines;
}

struct Reference
{
    std::vector<double> power = std::vector<double>(257, 0.0);
    std::vector<double> aligned = std::vector<double>(265, 0.0);
    std::vector<double> staggered = std::vector<double>(265, 0.0);
    std::vector<double> largest = std::vector<double>(265, 0.0);

    void addBlock(const QVector<double>& i, const QVector<double>& q)
    {
        const std::vector<Complex> a = linesOf(i);
        const std::vector<Complex> b = linesOf(q);
        for (size_t k = 0; k < power.size(); ++k) {
            power[k] += std::norm(a[k]) + std::norm(b[k]);
        }
        for (size_t distance = 28; distance <= 264; ++distance) {
            // Pairs of lines around half the distance, up to 15 % of it away, two lines at least.
            const size_t width = std::max<size_t>(2, distance * 15 / 100);
            Complex ofI;
            Complex ofQ;
            double most = 0.0;
            for (size_t up = 1; up < distance && up <= 256; ++up) {
                const size_t down = distance - up;
                if (up >= down && up <= distance / 2 + width) {
                    ofI += a[up] * a[down];
                    ofQ += b[up] * b[down];
                    most += std::abs(a[up] * a[down]) + std::abs(b[up] * b[down]);
                }
            }
            aligned[distance] += std::norm(ofI + ofQ);
            staggered[distance] += std::norm(ofI - ofQ);
            largest[distance] += most * most;
        }
    }

    double coherence(size_t distance) const
    {
        return std::max(aligned[distance], staggered[distance]) / largest[distance];
    }

    bool hasEdge(size_t distance) const
    {
        const size_t inside = std::max<size_t>(5, distance * 3 / 10);
        double mean = 0.0;
        for (size_t k = 2; k < inside; ++k) {
            mean += power[k];
        }
        mean /= double(inside - 2);
        const size_t below = distance / 2;
        const double edge = (power[below] + power[distance - below]) / 2.0;
        const size_t reach = std::max<size_t>(3, distance / 10);
        const double beyond = power[std::min<size_t>(below + reach, 256)];
        return edge >= 0.04 * mean && edge <= 0.6 * mean && power[below - reach] > edge / 1.5 &&
            beyond < 1.5 * edge;
    }

    double shift(size_t distance) const
    {
        const size_t reach = std::max<size_t>(1, distance / 10);
        const size_t low = distance - distance / 2 - reach;
        const size_t high = std::min<size_t>(distance / 2 + reach, 256);
        const double fall = std::log(power[low] / power[high]) / 2.0;
        // Nepers per sampling rate, times 0.3 of the square of a block's length, on both edges.
        const double slope = fall * Points / double(high - low);
        return std::max(0.0, 2.0 * slope * 0.3 / (Samples * Samples) * Points);
    }

    SymbolPeriodFinder::Period find() const
    {
        SymbolPeriodFinder::Period best;
        double highest = 1.0;
        for (size_t distance = 29; distance < 264; ++distance) {
            const double left = coherence(distance - 1);
            const double here = coherence(distance);
            const double right = coherence(distance + 1);
            const double score = here / (0.52 + 0.012 * Points / double(distance));
            if (score > highest && here >= left && here >= right && hasEdge(distance)) {
                const double top = (left - right) / (2.0 * (left - 2.0 * here + right));
                const double period = Points / (double(distance) + top - shift(distance));
                if (period >= 1.98 && period <= 16.2) {
                    best = {true, std::clamp(period, 2.0, 16.0)};
                    highest = score;
                }
            }
        }
        return best;
    }
};

struct Signal
{
    double period = 4.0; // samples per symbol
    double rolloff = 0.35;
    double noise = 0.02; // deviation
    double late = 0.0;   // of Q, in symbols
    double leak = 0.0;   // of the sample before into each sample: a slope of the spectrum
    double tone = 0.0;   // amplitude
    double offset = 0.0; // of I and Q
};

class Source
{
public:
    explicit Source(unsigned seed)
        : m_random(seed)
    {
    }

    double number() { return static_cast<double>(m_random()) / 4294967296.0; }

    // A block of one component.
    QVector<double> block(const Signal& signal, double late)
    {
        QVector<double> samples(Samples, signal.offset);
        const double phase = number() + late;
        const int last = static_cast<int>(Samples / signal.period) + 8;
        for (int symbol = -8; symbol < last; ++symbol) {
            const double value = number() < 0.5 ? 0.2 : -0.2;
            const double centre = (symbol + phase) * signal.period;
            const int first = std::max(0, static_cast<int>(centre - 7.0 * signal.period));
            for (int n = first; n < Samples && n < centre + 7.0 * signal.period; ++n) {
                samples[n] += value * pulse((n - centre) / signal.period, signal.rolloff);
            }
        }
        double before = 0.0;
        for (int n = 0; n < Samples; ++n) {
            const double white = number() + number() + number() + number() - 2.0;
            samples[n] += signal.noise * std::sqrt(3.0) * white + signal.leak * before +
                signal.tone * std::cos(0.37 * n + phase);
            before = samples[n];
        }
        return samples;
    }

private:
    // The raised cosine, whose denominator is kept away from its zeros.
    static double pulse(double t, double rolloff)
    {
        const double x = std::abs(t) < 1e-9 ? 1e-9 : t;
        double bottom = 1.0 - 4.0 * rolloff * rolloff * x * x;
        bottom = std::abs(bottom) < 1e-3 ? 1e-3 : bottom;
        return std::sin(Pi * x) / (Pi * x) * std::cos(rolloff * Pi * x) / bottom;
    }

    std::mt19937 m_random;
};

// Whether both find the same after these blocks.
void compare(const Signal& signal, unsigned seed, int blocks = SymbolPeriodFinder::MinBlocks)
{
    Source source(seed);
    SymbolPeriodFinder finder;
    Reference reference;
    for (int n = 0; n < blocks; ++n) {
        const QVector<double> i = source.block(signal, 0.0);
        const QVector<double> q = source.block(signal, signal.late);
        finder.addBlock(i, q);
        reference.addBlock(i, q);
    }
    const SymbolPeriodFinder::Period expected = reference.find();
    const SymbolPeriodFinder::Period found = finder.find();
    const QString text = QStringLiteral("%1 %2, expected %3 %4, of %5")
                             .arg(found.found)
                             .arg(found.samplesPerSymbol)
                             .arg(expected.found)
                             .arg(expected.samplesPerSymbol)
                             .arg(signal.period);
    QVERIFY2(found.found == expected.found, qPrintable(text));
    QVERIFY2(std::abs(found.samplesPerSymbol - expected.samplesPerSymbol) < 2e-5 * signal.period,
        qPrintable(text));
}

} // namespace

class tst_SymbolPeriodFinder : public QObject
{
    Q_OBJECT

private slots:
    void a_period_is_that_of_the_definition_data()
    {
        QTest::addColumn<double>("period");
        QTest::addColumn<double>("rolloff");
        QTest::addColumn<double>("leak");
        for (const double period : {1.97, 2.0, 2.3, 3.1, 4.0, 5.7, 8.0, 11.3, 15.9, 16.3}) {
            QTest::addRow("%g", period) << period << 0.5 << 0.0;
        }
        QTest::newRow("a steep edge") << 5.0 << 0.1 << 0.0;
        QTest::newRow("a flat edge") << 5.0 << 1.0 << 0.0;
        QTest::newRow("a falling spectrum") << 5.0 << 0.5 << 0.5;
        QTest::newRow("a rising spectrum") << 5.0 << 0.5 << -0.5;
    }

    void a_period_is_that_of_the_definition()
    {
        QFETCH(double, period);
        QFETCH(double, rolloff);
        QFETCH(double, leak);
        compare({period, rolloff, 0.01, 0.5, leak, 0.0, 0.1}, 1);
    }

    void any_signal_gives_what_the_definition_gives_data()
    {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed = 1; seed <= 6; ++seed) {
            QTest::addRow("%u", seed) << seed;
        }
        QTest::newRow("31, an edge beside which the power changes much") << 31U;
    }

    void any_signal_gives_what_the_definition_gives()
    {
        QFETCH(unsigned, seed);
        Source source(seed);
        for (unsigned n = 0; n < 12; ++n) {
            Signal signal;
            signal.period = 1.9 + 15.0 * source.number() * source.number();
            signal.rolloff = 0.02 + 0.98 * source.number();
            signal.noise = 0.2 * source.number() * source.number();
            signal.late = source.number() < 0.5 ? 0.5 : 0.0;
            signal.leak = 1.6 * source.number() - 0.8;
            signal.tone = source.number() < 0.3 ? 0.3 * source.number() : 0.0;
            signal.offset = 0.2 * source.number();
            compare(signal, 100 * seed + n);
        }
    }

    void only_the_last_sixteen_blocks_count()
    {
        Source source(3);
        SymbolPeriodFinder finder;
        Reference reference;
        for (int n = 0; n < 20; ++n) {
            const Signal signal{n < 4 ? 3.0 : 6.0, 0.5, 0.02, 0.0, 0.0, 0.0, 0.0};
            const QVector<double> i = source.block(signal, 0.0);
            const QVector<double> q = source.block(signal, 0.0);
            finder.addBlock(i, q);
            if (n >= 4) {
                reference.addBlock(i, q);
            }
        }
        QVERIFY(reference.find().found);
        QVERIFY(
            std::abs(finder.find().samplesPerSymbol - reference.find().samplesPerSymbol) < 1e-4);
    }
};

QN740_TEST_MAIN(tst_SymbolPeriodFinder)
#include "tst_SymbolPeriodFinder.moc"
