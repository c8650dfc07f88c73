#include "link/LinkHealth.h"
#include "support/TestMain.h"

class tst_LinkHealth : public QObject
{
    Q_OBJECT

private slots:
    void silence_begins_after_three_intervals_data()
    {
        QTest::addColumn<QList<int>>("pings");
        QTest::addColumn<QList<int>>("others"); // bytes other than "PING"
        QTest::addColumn<int>("lastAlive");     // -1: never silent
        const auto row = [](const char* name, const QList<int>& pings, int lastAlive,
                             const QList<int>& others = {}) {
            QTest::newRow(name) << pings << others << lastAlive;
        };
        row("nothing at all", {}, -1);
        row("no PING, other traffic", {}, -1, {0, 1000, 2000, 3000});
        row("one PING", {0}, -1);
        row("two PING", {0, 1000}, -1);
        row("three PING, every second", {0, 1000, 2000}, 5000);
        row("ten PING, every second", {0, 1000, 2000, 3000, 4000, 5000, 6000, 7000, 8000, 9000},
            12000);
        row("fast: three seconds at least", {0, 100, 200}, 3200);
        row("slow", {0, 10000, 20000}, 50000);
        row("very slow", {0, 3'600'000, 7'200'000}, 18'000'000);
        row("a little unsteady: the longer interval counts", {0, 2000, 4800}, 4800 + 3 * 2800);
        row("unsteady", {0, 1000, 4000}, -1);
        row("a burst is no interval", {0, 30, 170}, -1);
        row("20 ms are an interval", {0, 20, 40}, 3040);
        row("19 ms are none", {0, 19, 38}, -1);
        row("never steady", {0, 1000, 4000, 5000, 9000, 10000}, -1);
        row("held up, all at once", {9000, 9001, 9002, 9003}, -1);
        row("held up, then steady", {9000, 9001, 9002, 10000, 11000}, 14000);
        row("a steady unit hesitates once and stops", {0, 1000, 2000, 4500}, 7500);
        row("started again at a slower rate", {0, 1000, 2000, 60000, 65000, 70000}, 85000);
        row("started again at a faster rate", {0, 5000, 10000, 60000, 61000, 62000}, 65000);
        row("started again, not steady yet", {0, 5000, 10000, 60000, 61000}, 76000);
        row("other traffic postpones it", {0, 1000, 2000}, 7500, {4500});
        row("other traffic between is no PING", {0, 1000, 2000}, 5000, {300, 500, 1700});
        row("after a silence it is told again", {0, 1000, 2000}, 103'000, {100'000});
    }

    void silence_begins_after_three_intervals()
    {
        QFETCH(QList<int>, pings);
        QFETCH(QList<int>, others);
        QFETCH(int, lastAlive);
        LinkHealth health;
        QMap<int, bool> events;
        for (const int time : pings) {
            events.insert(time, true);
        }
        for (const int time : others) {
            events.insert(time, false);
        }
        for (auto event = events.cbegin(); event != events.cend(); ++event) {
            event.value() ? health.notePing(event.key()) : health.noteBytes(event.key());
            QVERIFY(!health.isSilent(event.key()));
        }
        const auto deadline = health.deadline();
        QCOMPARE(deadline.has_value(), lastAlive >= 0);
        if (deadline) {
            QCOMPARE(*deadline, qint64(lastAlive));
            QVERIFY(!health.isSilent(lastAlive));
            QVERIFY(health.isSilent(lastAlive + 1));
        } else {
            QVERIFY(!health.isSilent(1'000'000'000));
        }
    }

    void a_silence_ends_with_the_next_byte()
    {
        LinkHealth health;
        for (const int time : {0, 1000, 2000}) {
            health.notePing(time);
        }
        QVERIFY(health.isSilent(5001));
        health.noteBytes(6000);
        QVERIFY(!health.isSilent(6000));
        QVERIFY(!health.isSilent(9000));
        QVERIFY(health.isSilent(9001));
    }
};

QN740_TEST_MAIN(tst_LinkHealth)
#include "tst_LinkHealth.moc"
