#include "sim/line/PseudoTerminal.h"
#include "sim/replay/Replay.h"
#include "support/LineEnd.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongMs = 20000;

const QByteArray Question = "1.000 in \\x02PING\\x04\n";
const QByteArray Answer = "1.001 out \\x02PONG\\x04\n";
const QByteArray Other = "1.002 in \\x02SB,0,Text\\x04\n";
const QByteArray Press = "1.003 out \\x02R1:AGC:1\\x04\n";

} // namespace

class tst_Replay : public QObject
{
    Q_OBJECT

private slots:
    void nothing_is_sent_before_the_panel_is_there()
    {
        PseudoTerminal line;
        Replay replay(line, Recording::parse(Question), Replay::Pace::Fast);
        const QSignalSpy wrote(&replay, &PanelLink::wrote);
        QTest::qWait(200);
        QCOMPARE(wrote.size(), 0);
    }

    void what_follows_an_answer_waits_for_it()
    {
        PseudoTerminal line;
        Replay replay(line, Recording::parse(Question + Answer + Other), Replay::Pace::Fast);
        const QSignalSpy sent(&replay, &PanelLink::sent);
        const QSignalSpy finished(&replay, &Replay::finished);
        LineEnd panel(line.slavePath());
        QTRY_COMPARE(panel.received(), framed("PING"));
        QTest::qWait(Replay::AnswerMs / 5);
        QCOMPARE(panel.received(), framed("PING"));
        QVERIFY(panel.write(framed("PONG")));
        QTRY_COMPARE(panel.received(), framed("PING") + framed("SB,0,Text"));
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, LongMs);
        QVERIFY(replay.score().isGood());
        QCOMPARE(sent.size(), 2);
        QCOMPARE(sent.at(1).at(0).toString(), u"SB,0,Text"_s);
    }

    void an_answer_that_does_not_come_is_given_up()
    {
        PseudoTerminal line;
        Replay replay(line, Recording::parse(Question + Answer + Other), Replay::Pace::Fast);
        const QSignalSpy finished(&replay, &Replay::finished);
        LineEnd panel(line.slavePath());
        QTRY_COMPARE_WITH_TIMEOUT(panel.received(), framed("PING") + framed("SB,0,Text"), LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, LongMs);
        QVERIFY(!replay.score().allAnswersCame());
        QCOMPARE(replay.score().returned(), 0);
    }

    void what_the_operator_pressed_is_not_waited_for()
    {
        PseudoTerminal line;
        Replay replay(line, Recording::parse(Press + Press + Press + Other), Replay::Pace::Fast);
        const QSignalSpy finished(&replay, &Replay::finished);
        LineEnd panel(line.slavePath());
        QTRY_COMPARE(panel.received(), framed("SB,0,Text"));
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, LongMs);
        QVERIFY(replay.score().isGood());
    }

    void keys_that_are_pressed_again_come_back()
    {
        PseudoTerminal line;
        Replay replay(line, Recording::parse(Press + Question + Answer), Replay::Pace::Fast);
        const QSignalSpy finished(&replay, &Replay::finished);
        LineEnd panel(line.slavePath());
        QTRY_COMPARE(panel.received(), framed("PING"));
        QVERIFY(panel.write(framed("R1:AGC:1") + framed("PONG")));
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, LongMs);
        QCOMPARE(replay.score().returned(), 2);
        QCOMPARE(replay.score().expected(), 2);
    }

    void its_own_pace_keeps_the_times()
    {
        PseudoTerminal line;
        Replay replay(line,
            Recording::parse("5.000 in \\x02a\\x04\n5.400 in \\x02b\\x04\n0.100 in \\x02c\\x04\n"
                             "0.500 in \\x02d\\x04\n"),
            Replay::Pace::Recorded);
        LineEnd panel(line.slavePath());
        QTRY_COMPARE(panel.received(), framed("a"));
        QElapsedTimer elapsed;
        elapsed.start();
        QTRY_COMPARE(panel.received(), framed("a") + framed("b") + framed("c"));
        QVERIFY2(elapsed.elapsed() >= 300, QByteArray::number(elapsed.elapsed()));
        QTRY_COMPARE(panel.received(), framed("a") + framed("b") + framed("c") + framed("d"));
        QVERIFY2(elapsed.elapsed() >= 700, QByteArray::number(elapsed.elapsed()));
    }

    void bytes_that_are_no_message_are_sent_as_they_are()
    {
        PseudoTerminal line;
        Replay replay(line, Recording::parse("1.000 in \\x00\\x04\\xff\\x02\n1.000 in PI"),
            Replay::Pace::Fast);
        const QSignalSpy sent(&replay, &PanelLink::sent);
        LineEnd panel(line.slavePath());
        QTRY_COMPARE(panel.received(), QByteArray("\x00\x04\xff\x02PI", 6));
        QCOMPARE(sent.size(), 0);
    }

    void closing_the_line_ends_the_replay()
    {
        PseudoTerminal line;
        Replay replay(line, Recording::parse(Question + Answer), Replay::Pace::Fast);
        const QSignalSpy finished(&replay, &Replay::finished);
        LineEnd panel(line.slavePath());
        QTRY_COMPARE(panel.received(), framed("PING"));
        panel.close();
        QTRY_COMPARE(finished.size(), 1);
        QVERIFY(!replay.score().isGood());
    }

    void a_slow_reader_gets_everything()
    {
        QByteArray text;
        QByteArray expected;
        for (int i = 0; i < 5000; ++i) {
            text += "1.000 in \\x02SB,0,Number " + QByteArray::number(i) + "\\x04\n";
            expected += framed("SB,0,Number " + QByteArray::number(i));
        }
        PseudoTerminal line;
        Replay replay(line, Recording::parse(text), Replay::Pace::Fast);
        LineEnd panel(line.slavePath());
        QTRY_VERIFY(line.pendingBytes() > 0);
        QTRY_COMPARE_WITH_TIMEOUT(panel.received().size(), expected.size(), 60000);
        QCOMPARE(panel.received(), expected);
    }
};

QN740_TEST_MAIN(tst_Replay)
#include "tst_Replay.moc"
