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
