#include "scopes/IqBlockDecoder.h"
#include "scopes/SdiDecoder.h"
#include "sim/PseudoTerminal.h"
#include "sim/ScopePort.h"
#include "support/LineEnd.h"
#include "support/TestMain.h"

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

QByteArray spoiled(int faults, quint32 seed = 7)
{
    ScopeFaults spoiler(faults, seed);
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
    void a_block_is_what_the_panel_s_decoder_takes()
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

    void a_record_is_what_the_panel_s_decoder_takes()
    {
        for (quint32 number = 0; number < 1000; ++number) {
            SdiDecoder decoder;
            const QByteArray bytes = scopeBytes::sdiRecord(number);
            QCOMPARE(decoder.read(bytes), bytes.mid(2));
        }
    }

    void faults_spoil_what_they_say()
    {
        const QByteArray whole = spoiled(0);
        QCOMPARE(whole.size(), 200 * 1536);
        QCOMPARE(blocksIn(whole), 200);

        QCOMPARE(spoiled(ScopeFaults::BrokenIndex).size(), whole.size());
        QCOMPARE(blocksIn(spoiled(ScopeFaults::BrokenIndex)), 150);

        QCOMPARE(whole.size() - spoiled(ScopeFaults::LostBytes).size(), whole.size() / 10000);
        QVERIFY(blocksIn(spoiled(ScopeFaults::LostBytes)) >= 200 - 2 * (whole.size() / 10000));

        QVERIFY(spoiled(ScopeFaults::NoiseBursts).size() > whole.size() + 20);
        QVERIFY(blocksIn(spoiled(ScopeFaults::NoiseBursts)) >= 150);
        QVERIFY(blocksIn(spoiled(ScopeFaults::NoiseBursts)) < 200);

        const double silent = 1.0 -
            static_cast<double>(spoiled(ScopeFaults::Silence).size()) /
                static_cast<double>(whole.size());
        QVERIFY(silent > 0.25 && silent < 0.42);
    }

    void faults_are_the_same_for_the_same_seed()
    {
        const int all =
            ScopeFaults::BrokenIndex | ScopeFaults::LostBytes | ScopeFaults::NoiseBursts;
        QCOMPARE(spoiled(all, 3), spoiled(all, 3));
        QVERIFY(spoiled(all, 3) != spoiled(all, 4));
    }

    void faults_are_read_by_name()
    {
        QCOMPARE(ScopeFaults::fromText(QString()), 0);
        QCOMPARE(ScopeFaults::fromText(QStringLiteral("index")), 1);
        QCOMPARE(ScopeFaults::fromText(QStringLiteral("loss,noise")), 6);
        QCOMPARE(ScopeFaults::fromText(QStringLiteral("silence,index")), 9);
        QCOMPARE(ScopeFaults::fromText(QStringLiteral("smoke")), -1);
    }

    void the_mode_follows_the_panel_s_commands_and_the_unit_s_messages()
    {
        PseudoTerminal line;
        ScopePort port(2, line, SignalSettings(), 0, 1);
        QCOMPARE(port.mode(), 0);
        port.takeCommand(QStringLiteral("D2:DSDM:1"));
        QCOMPARE(port.mode(), 1);
        port.takeCommand(QStringLiteral("D1:DSDM:2"));
        port.takeCommand(QStringLiteral("D2:DSDM:"));
        port.takeCommand(QStringLiteral("D2:DSDM:x"));
        port.takeCommand(QStringLiteral("D2:DSDM:4"));
        port.takeCommand(QStringLiteral("D2:DSDM:-1"));
        port.takeCommand(QStringLiteral("D2:NFFT:2"));
        port.takeCommand(QString());
        QCOMPARE(port.mode(), 1);
        port.takeMessage(QStringLiteral("SM,2,3"));
        QCOMPARE(port.mode(), 3);
        port.takeMessage(QStringLiteral("SM,1,2"));
        port.takeMessage(QStringLiteral("SM,2"));
        port.takeMessage(QStringLiteral("SM"));
        port.takeMessage(QString());
        QCOMPARE(port.mode(), 3);
        port.takeCommand(QStringLiteral("D2:DSDM:0"));
        QCOMPARE(port.mode(), 0);
    }

    void blocks_come_at_the_pace_of_the_line()
    {
        PseudoTerminal line;
        ScopePort port(1, line, SignalSettings(), 0, 1);
        LineEnd panel(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        QByteArray bytes;
        QElapsedTimer elapsed;
        elapsed.start();
        port.setMode(ScopePort::EyePattern);
        while (elapsed.elapsed() < 2000) {
            QTest::qWait(20);
            bytes = panel.received();
        }
        // a loaded machine makes it slower, nothing makes it faster
        const double seconds = static_cast<double>(elapsed.elapsed()) / 1000.0;
        QVERIFY(static_cast<double>(bytes.size()) <= 11520.0 * seconds + 16.0);
        QVERIFY(bytes.size() > 1536);
        QCOMPARE(blocksIn(bytes), static_cast<int>(bytes.size() / 1536));
    }

    void off_sends_nothing()
    {
        PseudoTerminal line;
        ScopePort port(1, line, SignalSettings(), 0, 1);
        LineEnd panel(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        QTest::qWait(200); // nothing can be waited for
        QVERIFY(panel.received().isEmpty());
        QCOMPARE(port.sentCount(), 0);
    }

    void sdi_records_come_one_a_write()
    {
        PseudoTerminal line;
        ScopePort port(1, line, SignalSettings(), 0, 1);
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
