#include "scopes/EyeMeter.h"
#include "scopes/SignalFeed.h"
#include "sim/scope/SignalModel.h"
#include "support/TestMain.h"

#include <cmath>
#include <random>

using namespace Qt::StringLiterals;

namespace {

template <class Meter>
void feed(Meter& meter, const QString& text, int blocks)
{
    signalFeed::feed(meter, text, blocks, iqBlock::EyeSamplesPerSymbol, 3);
}

constexpr double Pi = 3.14159265358979323846;
constexpr int Instants = 16;

// Symbols of 4 samples or so many, raised-cosine pulses (roll-off 0.4) and some noise; the same
// with every library (a linear congruential generator; Numerical Recipes, 7.1).
QVector<double> shaped(int levels, double noise, quint32 seed, double period = 4.0)
{
    quint32 state = seed;
    const auto next = [&state] {
        state = state * 1664525U + 1013904223U;
        return state / 4294967296.0;
    };
    QVector<double> samples(256, 0.0);
    for (int symbol = -8; symbol < 72; ++symbol) {
        const double value = 2.0 * std::floor(next() * levels) + 1.0 - levels;
        for (int k = 0; k < 256; ++k) {
            const double t = k / period - symbol - 0.15;
            const double pulse =
                std::sin(Pi * t) / (Pi * t) * std::cos(0.4 * Pi * t) / (1.0 - 0.64 * t * t);
            samples[k] += 0.8 / levels * value * pulse;
        }
    }
    for (double& sample : samples) {
        sample += noise * (next() - 0.5);
    }
    return samples;
}

// The value at a place: a sinc with a Hann window over four samples to either side, at the nearest
// of 64 places between two samples.
double valueAt(const QVector<double>& samples, double place)
{
    const double nearest = std::floor(place * 64.0 + 0.5) / 64.0;
    const int left = static_cast<int>(nearest);
    double sum = 0.0;
    for (int k = left - 3; k <= left + 4; ++k) {
        const double t = nearest - k;
        const double sinc = t == 0.0 ? 1.0 : std::sin(Pi * t) / (Pi * t);
        sum += samples.at(k) * sinc * (0.5 + 0.5 * std::cos(Pi * t / 4.5));
    }
    return sum;
}

struct Level
{
    int count = 0;
    double mean = 0.0;
    double deviation = 0.0;
};

template <class Counts>
Level levelOf(const QVector<double>& values, Counts counts)
{
    Level level;
    for (const double value : values) {
        level.count += counts(value) ? 1 : 0;
        level.mean += counts(value) ? value : 0.0;
    }
    level.mean /= level.count;
    for (const double value : values) {
        level.deviation += counts(value) ? std::pow(value - level.mean, 2) : 0.0;
    }
    level.deviation = std::sqrt(level.deviation / level.count);
    return level;
}

// The spread of the innermost level at one instant: of all magnitudes with two levels, of those
// below the mean with four; 1 where there are not clearly four.
double spreadAt(const QVector<QVector<double>>& blocks, int instant, bool four, double period = 4.0)
{
    const double step = period / Instants;
    QVector<double> values;
    for (const QVector<double>& samples : blocks) {
        for (int n = static_cast<int>(std::ceil(5.0 / step)); n * step < 251.0; ++n) {
            if (n % Instants == instant) {
                values.append(std::abs(valueAt(samples, n * step)));
            }
        }
    }
    const Level all = levelOf(values, [](double) { return true; });
    if (!four) {
        return all.deviation / all.mean;
    }
    const Level inner = levelOf(values, [&all](double value) { return value < all.mean; });
    const Level outer = levelOf(values, [&all](double value) { return value >= all.mean; });
    const bool clear = std::min(inner.count, outer.count) >= 0.2 * all.count &&
        outer.mean - inner.mean >= 4.0 * std::max(inner.deviation, outer.deviation);
    return clear ? inner.deviation / inner.mean : 1.0;
}

// The opening by its definition, from the least spread of a parabola through three instants.
EyeOpening openingOf(const QVector<QVector<double>>& blocks, bool four, double period = 4.0)
{
    QVector<double> squares;
    for (int instant = 0; instant < Instants; ++instant) {
        squares.append(std::pow(spreadAt(blocks, instant, four, period), 2));
    }
    const auto best =
        static_cast<int>(std::min_element(squares.cbegin(), squares.cend()) - squares.cbegin());
    const double here = squares.at(best);
    const double left = squares.at((best + Instants - 1) % Instants);
    const double right = squares.at((best + 1) % Instants);
    const bool curved = left < 1.0 && right < 1.0;
    const double top = curved ? (left - right) / (2.0 * (left - 2.0 * here + right)) : 0.0;
    const double least = std::max(0.0, here - (left - right) * top / 4.0);
    const double place = (best + top) / Instants;
    return {true, 100.0 * (1.0 - 3.0 * std::sqrt(least)), place - std::floor(place + 0.5)};
}

// Whether there are two levels with an eye that is open, two that is not, or four.
EyeOpening plainOpening(const QVector<QVector<double>>& blocks)
{
    double leastOfTwo = 1.0;
    double leastOfFour = 1.0;
    for (int instant = 0; instant < Instants; ++instant) {
        leastOfTwo = std::min(leastOfTwo, spreadAt(blocks, instant, false));
        leastOfFour = std::min(leastOfFour, spreadAt(blocks, instant, true));
    }
    const bool four = leastOfTwo >= 1.0 / 3.0 && leastOfFour < 1.0;
    if ((four ? leastOfFour : leastOfTwo) > 0.6) {
        return {};
    }
    EyeOpening opening = openingOf(blocks, four);
    opening.percent = std::clamp(opening.percent, 0.0, 100.0);
    return opening;
}

// Symbols of 4 samples with four levels, of which this share are inner ones, the outer ones so many
// times as large.
QVector<double> unevenLevels(double inner, double outer, double noise, std::mt19937& random)
{
    const auto next = [&random] { return static_cast<double>(random()) / 4294967296.0; };
    QVector<double> samples(256, 0.0);
    for (int symbol = -8; symbol < 72; ++symbol) {
        const double value = (next() < inner ? 0.2 : 0.2 * outer) * (next() < 0.5 ? -1.0 : 1.0);
        for (int k = 0; k < 256; ++k) {
            const double t = k / 4.0 - symbol - 0.15;
            samples[k] +=
                value * std::sin(Pi * t) / (Pi * t) * std::cos(0.4 * Pi * t) / (1.0 - 0.64 * t * t);
        }
    }
    for (double& sample : samples) {
        sample += noise * (next() + next() + next() + next() - 2.0);
    }
    return samples;
}

} // namespace

class tst_EyeMeter : public QObject
{
    Q_OBJECT

private slots:
    // Blocks that begin anywhere in a symbol: a whole block, shifted by a number of samples that
    // differs from block to block.
    void the_period_is_found_when_each_block_has_another_phase()
    {
        QString fault;
        SignalModel model(SignalSettings::fromText(u"qpsk:snr=20:sps=5.5"_s, fault), 3);
        SymbolPeriodFinder finder;
        for (int block = 0; block < 16; ++block) {
            QVector<int> i;
            QVector<int> q;
            model.append(256 + block, iqBlock::EyeSamplesPerSymbol, i, q);
            QVector<double> x;
            QVector<double> y;
            for (int k = block; k < 256 + block; ++k) {
                x.append(i.at(k) / 32768.0);
                y.append(q.at(k) / 32768.0);
            }
            finder.addBlock(x, y);
        }
        QVERIFY(finder.find().found);
        QVERIFY(std::abs(finder.find().samplesPerSymbol - 5.5) < 0.055);
    }

    void the_period_of_a_clean_signal_is_exact_to_a_thousandth_data()
    {
        QTest::addColumn<QString>("signal");
        QTest::addColumn<double>("period");
        QTest::newRow("2.5") << u"qpsk:snr=30:sps=2.5"_s << 2.5;
        QTest::newRow("3.3") << u"qpsk:snr=30:sps=3.3:rolloff=1"_s << 3.3;
        QTest::newRow("5.5, a steep edge") << u"qpsk:snr=30:sps=5.5"_s << 5.5;
        QTest::newRow("5.5") << u"qpsk:snr=30:sps=5.5:rolloff=0.5"_s << 5.5;
        QTest::newRow("7, OQPSK") << u"oqpsk:snr=25:sps=7:rolloff=0.25"_s << 7.0;
        QTest::newRow("8") << u"qpsk:snr=30:sps=8:rolloff=0.5"_s << 8.0;
    }

    void the_period_of_a_clean_signal_is_exact_to_a_thousandth()
    {
        QFETCH(QString, signal);
        QFETCH(double, period);
        SymbolPeriodFinder finder;
        feed(finder, signal, 16);
        const SymbolPeriodFinder::Period found = finder.find();
        QVERIFY(found.found);
        QVERIFY2(std::abs(found.samplesPerSymbol - period) < 0.001 * period,
            qPrintable(QString::number(found.samplesPerSymbol)));
    }

    void no_period_is_found_without_symbols_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char* kind :
            {"zeros", "constant", "white noise", "tone", "two tones", "noise"}) {
            QTest::newRow(kind) << QString::fromLatin1(kind);
        }
    }

    void no_period_is_found_without_symbols()
    {
        QFETCH(QString, kind);
        std::mt19937 random(2);
        std::normal_distribution<double> noise(0.0, 0.1);
        double filtered = 0.0;
        SymbolPeriodFinder finder;
        EyeMeter meter;
        for (int block = 0; block < 16; ++block) {
            QVector<double> x(256, kind == u"constant"_s ? 0.5 : 0.0);
            QVector<double> y = x;
            for (int k = 0; k < 256; ++k) {
                const double at = 256 * block + k;
                if (kind.contains(u"tone"_s)) {
                    x[k] = 0.4 * std::cos(0.3 * at);
                    y[k] = 0.4 * std::sin(0.3 * at);
                }
                if (kind == u"two tones"_s) {
                    x[k] += 0.3 * std::cos(0.9 * at);
                }
                if (kind == u"white noise"_s) {
                    x[k] = noise(random);
                    y[k] = noise(random);
                }
                if (kind == u"noise"_s) {
                    filtered = 0.7 * filtered + noise(random);
                    x[k] = filtered;
                }
            }
            finder.addBlock(x, y);
            meter.addBlock(x, y);
        }
        QVERIFY2(!finder.find().found, qPrintable(QString::number(finder.find().samplesPerSymbol)));
        QVERIFY(!meter.figures().symbolPeriodFound);
        QCOMPARE(meter.figures().samplesPerSymbol, 4.0);
    }

    void the_period_needs_eight_blocks()
    {
        SymbolPeriodFinder finder;
        feed(finder, u"qpsk:snr=20:rolloff=0.5"_s, 7);
        QVERIFY(!finder.find().found);
        feed(finder, u"qpsk:snr=20:rolloff=0.5"_s, 1);
        QVERIFY(finder.find().found);
        finder.clear();
        QVERIFY(!finder.find().found);
    }

    void short_blocks_are_ignored()
    {
        SymbolPeriodFinder finder;
        EyeMeter meter;
        for (int n = 0; n < 20; ++n) {
            finder.addBlock(QVector<double>(255, 0.1), QVector<double>(256, 0.1));
            meter.addBlock({}, {});
            meter.addBlock(QVector<double>(3, 0.1), {});
        }
        QVERIFY(!finder.find().found);
        QVERIFY(!meter.figures().i.valid && !meter.figures().q.valid);
    }

    void a_new_period_replaces_the_old_one_within_sixteen_blocks()
    {
        EyeMeter meter;
        feed(meter, u"qpsk:snr=20:sps=3"_s, 16);
        QVERIFY(std::abs(meter.figures().samplesPerSymbol - 3.0) < 0.03);
        feed(meter, u"qpsk:snr=20:sps=6"_s, 16);
        QVERIFY(std::abs(meter.figures().samplesPerSymbol - 6.0) < 0.06);
    }

    void four_samples_per_symbol_are_exactly_four()
    {
        EyeMeter meter;
        feed(meter, u"16qam:snr=12"_s, 16);
        QVERIFY(meter.figures().symbolPeriodFound);
        QCOMPARE(meter.figures().samplesPerSymbol, 4.0);
    }

    void the_eyes_of_oqpsk_are_half_a_symbol_apart()
    {
        EyeMeter meter;
        feed(meter, u"oqpsk:snr=25"_s, 16);
        const EyeFigures& figures = meter.figures();
        QVERIFY(figures.i.valid && figures.q.valid);
        QVERIFY(std::abs(figures.i.bestInstant) < 0.03);
        QVERIFY(std::abs(std::abs(figures.q.bestInstant) - 0.5) < 0.03);
        QVERIFY(figures.q.bestInstant >= -0.5 && figures.q.bestInstant < 0.5);
    }

    void a_component_without_a_signal_has_no_eye()
    {
        EyeMeter meter;
        feed(meter, u"bpsk:snr=15"_s, 16);
        QVERIFY(meter.figures().i.valid);
        QVERIFY(!meter.figures().q.valid);
    }

    void the_opening_is_that_of_its_definition_data()
    {
        QTest::addColumn<int>("levels");
        QTest::addColumn<double>("noise");
        QTest::newRow("two levels") << 2 << 0.0;
        QTest::newRow("two levels, noise") << 2 << 0.2;
        QTest::newRow("four levels") << 4 << 0.0;
        QTest::newRow("four levels, noise") << 4 << 0.06;
    }

    void the_opening_is_that_of_its_definition()
    {
        QFETCH(int, levels);
        QFETCH(double, noise);
        EyeMeter meter;
        QVector<QVector<double>> blocks;
        for (quint32 block = 0; block < 6; ++block) { // too few for the period, which is 4 then
            blocks.append(shaped(levels, noise, 17 + block));
            meter.addBlock(blocks.last(), QVector<double>(256, 0.0));
        }
        const EyeOpening expected = openingOf(blocks, levels == 4);
        const EyeOpening found = meter.figures().i;
        QVERIFY(found.valid && !meter.figures().q.valid);
        QVERIFY(expected.percent > 20.0 && expected.percent <= 100.0);
        QVERIFY2(std::abs(found.percent - expected.percent) < 1e-6,
            qPrintable(QStringLiteral("%1, not %2").arg(found.percent).arg(expected.percent)));
        QVERIFY(std::abs(found.bestInstant - expected.bestInstant) < 1e-6);
        QVERIFY(std::abs(found.bestInstant - 0.15) < 0.03);
    }

    void the_opening_at_another_period_is_that_of_its_definition_data()
    {
        QTest::addColumn<double>("period");
        QTest::newRow("3.3") << 3.3;
        QTest::newRow("5.7") << 5.7;
        QTest::newRow("9.1") << 9.1;
    }

    void the_opening_at_another_period_is_that_of_its_definition()
    {
        QFETCH(double, period);
        EyeMeter meter;
        QVector<QVector<double>> blocks;
        for (quint32 block = 0; block < 12; ++block) {
            blocks.append(shaped(2, 0.05, 17 + block, period));
            meter.addBlock(blocks.last(), QVector<double>(256, 0.0));
        }
        const double found = meter.figures().samplesPerSymbol;
        QVERIFY2(std::abs(found - period) < 0.01 * period, QByteArray::number(found));
        const EyeOpening expected = openingOf(blocks, false, found);
        const EyeOpening opening = meter.figures().i;
        QVERIFY(opening.valid && expected.percent > 20.0);
        QVERIFY2(std::abs(opening.percent - expected.percent) < 1e-6,
            qPrintable(QStringLiteral("%1, not %2").arg(opening.percent).arg(expected.percent)));
        QVERIFY(std::abs(opening.bestInstant - expected.bestInstant) < 1e-6);
    }

    void any_eye_has_the_opening_of_its_definition_data()
    {
        QTest::addColumn<double>("inner");
        QTest::addColumn<double>("outer");
        QTest::addColumn<double>("noise");
        for (const double inner : {0.0, 0.15, 0.25, 0.7, 0.77, 0.83}) {
            for (const double outer : {1.8, 3.0}) {
                for (const double noise : {0.0, 0.05, 0.15, 0.4}) {
                    QTest::addRow("%g inner, %g, noise %g", inner, outer, noise)
                        << inner << outer << noise;
                }
            }
        }
    }

    void any_eye_has_the_opening_of_its_definition()
    {
        QFETCH(double, inner);
        QFETCH(double, outer);
        QFETCH(double, noise);
        std::mt19937 random(5);
        EyeMeter meter;
        QVector<QVector<double>> blocks;
        for (int block = 0; block < 4; ++block) { // too few for the period, which is 4 then
            blocks.append(unevenLevels(inner, outer, noise, random));
            meter.addBlock(blocks.last(), QVector<double>(256, 0.0));
        }
        const EyeOpening expected = plainOpening(blocks);
        const EyeOpening found = meter.figures().i;
        QCOMPARE(found.valid, expected.valid);
        QVERIFY2(std::abs(found.percent - expected.percent) < 1e-6,
            qPrintable(QStringLiteral("%1, not %2").arg(found.percent).arg(expected.percent)));
        QVERIFY(std::abs(found.bestInstant - expected.bestInstant) < 1e-6);
    }

    void an_eye_that_closes_at_once_has_the_opening_of_its_definition_data()
    {
        QTest::addColumn<int>("phase"); // of the samples that are noisy
        QTest::addColumn<double>("noise");
        for (int phase = 0; phase < 4; ++phase) {
            for (const double noise : {0.2, 0.4, 0.6, 0.8, 1.0, 1.4}) {
                QTest::addRow("%d, %g", phase, noise) << phase << noise;
            }
        }
    }

    // With noise at one instant of each symbol, one neighbour of the best one is no clear eye.
    void an_eye_that_closes_at_once_has_the_opening_of_its_definition()
    {
        QFETCH(int, phase);
        QFETCH(double, noise);
        std::mt19937 random(7);
        EyeMeter meter;
        QVector<QVector<double>> blocks;
        for (int block = 0; block < 4; ++block) {
            QVector<double> samples = unevenLevels(0.5, 3.0, 0.0, random);
            for (int k = phase; k < samples.size(); k += 4) {
                samples[k] += noise * (static_cast<double>(random()) / 4294967296.0 - 0.5);
            }
            blocks.append(samples);
            meter.addBlock(samples, QVector<double>(256, 0.0));
        }
        const EyeOpening expected = plainOpening(blocks);
        const EyeOpening found = meter.figures().i;
        QCOMPARE(found.valid, expected.valid);
        QVERIFY2(std::abs(found.percent - expected.percent) < 1e-6,
            qPrintable(QStringLiteral("%1, not %2").arg(found.percent).arg(expected.percent)));
        QVERIFY(std::abs(found.bestInstant - expected.bestInstant) < 1e-6);
    }

    void noise_closes_the_eye()
    {
        double before = 100.0;
        for (const int snr : {30, 20, 15, 10}) {
            EyeMeter meter;
            feed(meter, u"qpsk:snr=%1"_s.arg(snr), 16);
            QVERIFY(meter.figures().i.valid);
            QVERIFY(meter.figures().i.percent < before);
            before = meter.figures().i.percent;
        }
        QVERIFY(before < 15.0);
    }

    void sixteen_blocks_are_kept_and_clear_forgets_them()
    {
        EyeMeter meter;
        feed(meter, u"qpsk:snr=20"_s, 40);
        QCOMPARE(meter.blockCount(), EyeMeter::MaxBlocks);
        QVERIFY(meter.figures().i.valid);
        meter.clear();
        QCOMPARE(meter.blockCount(), 0);
        QVERIFY(!meter.figures().i.valid);
        QVERIFY(!meter.figures().symbolPeriodFound);
    }
};

QN740_TEST_MAIN(tst_EyeMeter)
#include "tst_EyeMeter.moc"
