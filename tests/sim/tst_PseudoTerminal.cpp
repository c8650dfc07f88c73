#include "sim/line/PseudoTerminal.h"
#include "support/LineEnd.h"
#include "support/TestMain.h"

#include <QSignalSpy>

#include <ctime>

using namespace Qt::StringLiterals;

namespace {

QByteArray joined(const QSignalSpy& spy)
{
    QByteArray all;
    for (const auto& arguments : spy) {
        all += arguments.first().toByteArray();
    }
    return all;
}

QByteArray allBytes()
{
    QByteArray bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += char(byte);
    }
    return bytes;
}

} // namespace

class tst_PseudoTerminal : public QObject
{
    Q_OBJECT

private slots:
    void it_is_not_open_before_somebody_opens_it()
    {
        PseudoTerminal line;
        QVERIFY(line.isValid());
        QSignalSpy opened(&line, &PseudoTerminal::opened);
        QTest::qWait(200); // four polling periods
        QVERIFY(!line.isOpen());
        QCOMPARE(opened.size(), 0);
        QVERIFY(!line.write("lost"));
        QCOMPARE(line.pendingBytes(), 0);
    }

    void each_opening_and_closing_is_announced()
    {
        PseudoTerminal line;
        QSignalSpy opened(&line, &PseudoTerminal::opened);
        QSignalSpy closed(&line, &PseudoTerminal::closed);
        for (int round = 1; round <= 3; ++round) {
            LineEnd slave(line.slavePath());
            QTRY_COMPARE(opened.size(), round);
            QVERIFY(line.isOpen());
            QCOMPARE(closed.size(), round - 1);
            slave.close();
            QTRY_COMPARE(closed.size(), round);
            QVERIFY(!line.isOpen());
        }
        QCOMPARE(opened.size(), 3);
    }

    void every_byte_passes_both_ways()
    {
        PseudoTerminal line;
        QSignalSpy received(&line, &PseudoTerminal::received);
        LineEnd slave(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        QVERIFY(slave.write(allBytes()));
        QTRY_COMPARE(joined(received), allBytes());
        QVERIFY(line.write(allBytes()));
        QTRY_COMPARE(slave.received(), allBytes());
    }

    void what_a_panel_wrote_before_it_went_is_still_received()
    {
        PseudoTerminal line;
        QSignalSpy opened(&line, &PseudoTerminal::opened);
        QSignalSpy received(&line, &PseudoTerminal::received);
        QSignalSpy closed(&line, &PseudoTerminal::closed);
        {
            const LineEnd slave(line.slavePath());
            QVERIFY(slave.write("last words"));
        }
        QTRY_COMPARE(closed.size(), 1);
        QCOMPARE(opened.size(), 1);
        QCOMPARE(joined(received), QByteArray("last words"));
    }

    void what_is_not_read_is_held_and_sent_on_in_order()
    {
        PseudoTerminal line;
        QSignalSpy drained(&line, &PseudoTerminal::drained);
        const LineEnd slave(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        QByteArray sent;
        for (int i = 0; i < 20000; ++i) {
            sent += QByteArray::number(i) + ',';
        }
        QVERIFY(line.write(sent));
        QVERIFY(line.pendingBytes() > 0);
        QCOMPARE(drained.size(), 0);
        QByteArray read;
        QTRY_COMPARE_WITH_TIMEOUT((read += slave.read(3000)).size(), sent.size(), 30000);
        QCOMPARE(read, sent);
        QTRY_COMPARE(drained.size(), 1);
        QCOMPARE(line.pendingBytes(), 0);
    }

    void a_write_beyond_the_limit_is_refused_completely()
    {
        PseudoTerminal line(100000);
        const LineEnd slave(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        QVERIFY(!line.write(QByteArray(100001, 'x')));
        QCOMPARE(line.pendingBytes(), 0);
        QVERIFY(line.write(QByteArray(100000, 'x')));
        const auto held = line.pendingBytes();
        QVERIFY(held > 0 && held < 100000);
        QVERIFY(!line.write(QByteArray(int(100001 - held), 'y')));
        QCOMPARE(line.pendingBytes(), held);
    }

    void the_next_panel_does_not_get_what_the_last_one_left()
    {
        PseudoTerminal line;
        LineEnd first(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        QVERIFY(line.write(QByteArray(100000, 'x')));
        first.close();
        QTRY_VERIFY(!line.isOpen());
        QCOMPARE(line.pendingBytes(), 0);
        const LineEnd second(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        QVERIFY(line.write("fresh"));
        QByteArray read;
        QTRY_VERIFY((read += second.read()).endsWith("fresh"));
        QCOMPARE(read, QByteArray("fresh"));
    }

    void it_costs_next_to_nothing_while_it_waits_or_holds_bytes()
    {
        PseudoTerminal closed;
        PseudoTerminal full;
        const LineEnd slave(full.slavePath());
        QTRY_VERIFY(full.isOpen());
        QVERIFY(full.write(QByteArray(200000, 'x')));
        const auto start = std::clock();
        QTest::qWait(1000);
        const double seconds = double(std::clock() - start) / CLOCKS_PER_SEC;
        QVERIFY2(seconds < 0.25, qPrintable(u"%1 s of 1 s"_s.arg(seconds)));
    }

    void unplugged_it_hangs_up_and_plugged_in_it_is_another_device()
    {
        PseudoTerminal line;
        QSignalSpy closed(&line, &PseudoTerminal::closed);
        QSignalSpy received(&line, &PseudoTerminal::received);
        const LineEnd before(line.slavePath());
        QTRY_VERIFY(line.isOpen());
        QVERIFY(line.write(QByteArray(100000, 'x')));
        line.unplug();
        QCOMPARE(closed.size(), 1);
        QVERIFY(!line.isOpen() && !line.isValid());
        QCOMPARE(line.slavePath(), QString());
        QCOMPARE(line.pendingBytes(), 0);
        QVERIFY(!before.write("x"));
        QVERIFY(!line.write("x"));
        line.unplug(); // nothing is plugged in
        QCOMPARE(closed.size(), 1);
        QVERIFY(line.plug());
        QVERIFY(line.isValid());
        const QString path = line.slavePath();
        QVERIFY(line.plug()); // it is plugged in
        QCOMPARE(line.slavePath(), path);
        LineEnd after(path);
        QTRY_VERIFY(line.isOpen());
        QVERIFY(line.write("down") && after.write("up"));
        QTRY_COMPARE(after.received(), QByteArray("down"));
        QTRY_COMPARE(joined(received), QByteArray("up"));
    }

    void it_can_be_deleted_while_the_panel_has_it_open()
    {
        auto line = std::make_unique<PseudoTerminal>();
        const LineEnd slave(line->slavePath());
        QTRY_VERIFY(line->isOpen());
        QVERIFY(line->write(QByteArray(100000, 'x')));
        line.reset();
        QVERIFY(!slave.write("x"));
    }
};

QN740_TEST_MAIN(tst_PseudoTerminal)
#include "tst_PseudoTerminal.moc"
