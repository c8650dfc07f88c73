#include "scopes/IqBlockDecoder.h"
#include "scopes/SdiDecoder.h"
#include "sim/line/PseudoTerminal.h"
#include "sim/scope/ScopeBytes.h"
#include "sim/scope/ScopePort.h"
#include "support/LineEnd.h"
#include "support/TestMain.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QByteArray zeroBlock()
{
    return scopeBytes::block(QVector<int>(256, 0), QVector<int>(256, 0));
}

int blocksIn(const QByteArray& bytes)
{
    IqBlockDecoder decoder;
    int blocks = 0;
    qsizetype at = 0;
    while (at < bytes.size()) {
        at += decoder.take(bytes.constData() + at, bytes.size() - at);
        blocks += decoder.blockReady() ? 1 : 0;
    }
    return blocks;
}

FaultTable rates(const char* text)
{
    FaultTable table(ScopeFaults::names());
    const QString fault = table.set(QString::fromUtf8(text));
    if (!fault.isEmpty()) {
        qFatal("%s", qPrintable(fault));
    }
    return table;
}

// Returns 200 blocks of zeros after these faults were applied to them.
QByteArray spoiled(const char* faults, quint32 seed = 7)
{
    ScopeFaults spoiler(rates(faults), seed);
    QByteArray bytes;
    for (int k = 0; k < 200; ++k) {
        bytes += spoiler.pass(zeroBlock(), k * 133);
    }
    return bytes;
}

} // namespace

class tst_ScopePort : public QObject
{
    Q_OBJECT

private slots:
    void the_panel_s_decoder_accepts_a_block()
    {
        QVector<int> i;
        QVector<int> q;
        for (int k = 0; k < 256; ++k) {
            i.append(k - 32768);
            q.append(32767 - k);
        }
        IqBlockDecoder decoder;
        const QByteArray bytes = scopeBytes::block(i, q);
        QCOMPARE(bytes.size(), 1536);
        decoder.take(bytes.constData(), bytes.size());
        QVERIFY(decoder.blockReady());
        QCOMPARE(decoder.i().at(9), (9 - 32768) / 32768.0);
        QCOMPARE(decoder.q().at(9), (32767 - 9) / 32768.0);
    }

    void the_panel_s_decoder_accepts_a_record()
    {
        for (quint32 number = 0; number < 1000; ++number) {
            SdiDecoder decoder;
            const QByteArray bytes = scopeBytes::sdiRecord(number);
            QCOMPARE(decoder.read(bytes), bytes.mid(2));
        }
    }

    void without_faults_nothing_is_spoilt()
    {
        QCOMPARE(spoiled("scope-index=0,scope-loss=0").size(), 200 * 1536);
        QCOMPARE(blocksIn(spoiled("scope-noise=0,scope-silence=0")), 200);
        QCOMPARE(ScopeFaults().pass("abc", 0), QByteArray("abc"));
    }

    void a_wrong_index_spoils_a_block_and_no_more()
    {
        QCOMPARE(spoiled("scope-index=1").size(), 200 * 1536);
        QCOMPARE(blocksIn(spoiled("scope-index=1")), 0);
        const int whole = blocksIn(spoiled("scope-index=0.25"));
        QVERIFY2(whole > 130 && whole < 170, QByteArray::number(whole));
    }

    void a_lost_byte_is_one_byte()
    {
        QCOMPARE(spoiled("scope-loss=1").size(), 200 * 1535);
        const auto lost = 200 * 1536 - spoiled("scope-loss=0.2").size();
        QVERIFY2(lost > 25 && lost < 55, QByteArray::number(lost));
        QVERIFY(blocksIn(spoiled("scope-loss=0.2")) >= 200 - 2 * lost);
    }

    void noise_comes_in_between()
    {
        QVERIFY(spoiled("scope-noise=1").size() > 200 * 1536 + 200 * 100);
        QVERIFY(spoiled("scope-noise=0.1").size() > 200 * 1536 + 20);
        const int whole = blocksIn(spoiled("scope-noise=0.1"));
        QVERIFY2(whole >= 150 && whole < 200, QByteArray::number(whole));
    }

    void a_silence_lasts_two_seconds()
    {
        QVERIFY(spoiled("scope-silence=1").isEmpty());
        ScopeFaults faults(rates("scope-silence=0.05"), 3);
        qint64 since = -1;
        int silences = 0;
        for (qint64 ms = 0; ms < 100'000; ms += 100) {
            const bool silent = faults.pass("x", ms).isEmpty();
            if (silent && since < 0) {
                since = ms;
                ++silences;
            } else if (!silent && since >= 0) {
                QVERIFY(ms - since >= ScopeFaults::SilenceMs);
                since = -1;
            }
        }
        QVERIFY2(silences > 10 && silences < 40, QByteArray::number(silences));
    }

    void faults_are_the_same_for_the_same_seed()
    {
        const char* const all = "scope-index=0.2,scope-loss=0.2,scope-noise=0.2,scope-silence=0.01";
        QCOMPARE(spoiled(all, 3), spoiled(all, 3));
        QVERIFY(spoiled(all, 3) != spoiled(all, 4));
    }

    void another_number_is_no_mode()
    {
        PseudoTerminal line;
        ScopePort port(line, SignalSettings(), ScopeFaults(), 1);
        QCOMPARE(port.mode(), 0);
        port.setMode(2);
        for (const int none : {-1, 4, 99}) {
            port.setMode(none);
            QCOMPARE(port.mode(), 2);
        }
    }

    void another_signal_comes_with_the_next_block()
    {
        PseudoTerminal line;
        SignalSettings settings;
        settings.snr = 100.0;
        settings.level = 0.8;
        ScopePort port(line, settings, ScopeFaults(), 1);
        LineEnd panel(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        port.setMode(ScopePort::Constellation);
        settings.level = 0.2;
        const auto loudest = [&panel](qsizetype block) {
            IqBlockDecoder decoder;
            const QByteArray bytes = panel.received().mid(block * 1536, 1536);
            decoder.take(bytes.constData(), bytes.size());
            const auto samples = decoder.i();
            return decoder.blockReady() ? *std::max_element(samples.begin() + 1, samples.end())
                                        : -1.0;
        };
        QTRY_VERIFY(panel.received().size() > 100);
        const auto sent = port.sentCount();
        port.setSignal(settings);
        QTRY_VERIFY(panel.received().size() >= (sent + 1) * 1536);
        QVERIFY(loudest(0) > 0.5);
        QVERIFY(loudest(sent) > 0.1 && loudest(sent) < 0.2);
    }

    void a_second_of_the_line_carries_seven_blocks_and_a_half_data()
    {
        QTest::addColumn<int>("tickMs");
        for (const int tickMs : {1, 16, 37, 100, 130}) {
            QTest::addRow("%d ms at a time", tickMs) << tickMs;
        }
    }

    // The test calls pass() itself. No event loop runs meanwhile, so the port's own timer does not.
    void a_second_of_the_line_carries_seven_blocks_and_a_half()
    {
        QFETCH(int, tickMs);
        PseudoTerminal line;
        ScopePort port(line, SignalSettings(), ScopeFaults(), 1);
        LineEnd panel(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        port.setMode(ScopePort::EyePattern);
        int ms = 0;
        for (; ms < 4000; ms += tickMs) {
            port.pass(tickMs);
            panel.received();
        }
        const auto expected = static_cast<qsizetype>(11520LL * ms / 1000);
        QElapsedTimer elapsed;
        elapsed.start();
        while (panel.received().size() < expected - 1 && elapsed.elapsed() < 20000) {
        }
        const auto size = panel.received().size();
        QVERIFY2(qAbs(size - expected) <= 1, QByteArray::number(size));
        QCOMPARE(blocksIn(panel.received()), static_cast<int>(size / 1536));
        QVERIFY(blocksIn(panel.received()) >= 29);
        QVERIFY(qAbs(port.sentCount() - size / 1536) <= 1);
    }

    void what_a_line_has_missed_it_does_not_catch_up_on()
    {
        PseudoTerminal line;
        ScopePort port(line, SignalSettings(), ScopeFaults(), 1);
        LineEnd panel(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        port.setMode(ScopePort::EyePattern);
        port.pass(10'000);
        QElapsedTimer elapsed;
        elapsed.start();
        while (panel.received().size() < 1536 && elapsed.elapsed() < 20000) {
        }
        QCOMPARE(panel.received().size(), qsizetype{1536});
    }

    void the_line_s_time_is_that_of_the_clock()
    {
        constexpr double MaxAtOnce = 1536.0 / 11520.0; // seconds that the line can catch up on
        PseudoTerminal line;
        ScopePort port(line, SignalSettings(), ScopeFaults(), 1);
        LineEnd panel(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        QElapsedTimer elapsed;
        elapsed.start();
        port.setMode(ScopePort::EyePattern);
        double least = 0.0;
        double last = 0.0;
        while (elapsed.elapsed() < 3000) {
            QTest::qWait(30); // longer than the period of the port's timer
            panel.received();
            const double now = static_cast<double>(elapsed.nsecsElapsed()) / 1e9;
            // A loaded machine can stop both the test and the port. The port then sends only what
            // it can catch up on.
            least += std::min(MaxAtOnce, now - last);
            last = now;
        }
        const auto size = static_cast<double>(panel.received().size());
        const double seconds = static_cast<double>(elapsed.nsecsElapsed()) / 1e9;
        QVERIFY(size <= 11520.0 * seconds + 16.0);
        QVERIFY2(size >= 0.75 * 11520.0 * least,
            qPrintable(u"%1 bytes in %2 s of %3 s"_s.arg(size).arg(least).arg(seconds)));
    }

    void off_sends_nothing()
    {
        PseudoTerminal line;
        ScopePort port(line, SignalSettings(), ScopeFaults(), 1);
        LineEnd panel(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        QTest::qWait(200); // no event marks that nothing is sent
        QVERIFY(panel.received().isEmpty());
        QCOMPARE(port.sentCount(), 0);
    }

    void sdi_records_come_one_a_write()
    {
        PseudoTerminal line;
        ScopePort port(line, SignalSettings(), ScopeFaults(), 1);
        LineEnd panel(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        port.setMode(ScopePort::Sdi);
        QTRY_VERIFY(port.sentCount() >= 2);
        QTRY_VERIFY(panel.received().size() >= 14);
        QCOMPARE(panel.received().left(7), scopeBytes::sdiRecord(0));
    }
};

QN740_TEST_MAIN(tst_ScopePort)
#include "tst_ScopePort.moc"
