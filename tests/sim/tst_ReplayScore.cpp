#include "sim/replay/Recording.h"
#include "sim/replay/ReplayScore.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

namespace {

QList<wire::TraceLine> recording(const QStringList& lines)
{
    QByteArray text;
    for (const QString& line : lines) {
        text += "1.000 " + line.toLatin1() + '\n';
    }
    return Recording::parse(text).lines();
}

QString frame(const QString& body)
{
    return u'\x02' + body + u'\x04';
}

const QStringList Talk{u"in \\x02PING\\x04"_s, u"out \\x02PONG\\x04"_s, u"in \\x02VER\\x04"_s,
    u"out \\x021.1.6.4\\x04"_s, u"out \\x02R1:AGC:1\\x04"_s, u"in \\x02PING\\x04"_s,
    u"out \\x02PONG\\x04"_s};

} // namespace

class tst_ReplayScore : public QObject
{
    Q_OBJECT

private slots:
    void answers_are_distinguished_from_the_operator_s_messages_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QList<bool>>("answers");
        QTest::newRow("ping") << QStringList{u"in \\x02PING\\x04"_s, u"out \\x02PONG\\x04"_s}
                              << QList<bool>{false, true};
        QTest::newRow("nobody asked") << QStringList{u"out \\x02PONG\\x04"_s} << QList<bool>{false};
        QTest::newRow("asked once")
            << QStringList{u"in \\x02PING\\x04"_s, u"out \\x02PONG\\x04"_s, u"out \\x02PONG\\x04"_s}
            << QList<bool>{false, true, false};
        QTest::newRow("version of another panel")
            << QStringList{u"in \\x02VER\\x04"_s, u"out \\x022.0\\x04"_s}
            << QList<bool>{false, true};
        QTest::newRow("link mode asked")
            << QStringList{u"in \\x02Slave\\x04"_s, u"out \\x02Slave,2\\x04"_s}
            << QList<bool>{false, true};
        QTest::newRow("link mode set, then chosen")
            << QStringList{u"in \\x02Slave,1\\x04"_s, u"out \\x02Slave,2\\x04"_s}
            << QList<bool>{false, false};
        QTest::newRow("spectrum start")
            << QStringList{u"in \\x02ST,1\\x04"_s, u"out D1:SPEN:1"_s, u"out D2:SPEN:1"_s}
            << QList<bool>{false, true};
        QTest::newRow("questions first")
            << QStringList{u"in \\x02PING\\x04"_s, u"in \\x02VER\\x04"_s,
                   u"out \\x02R1:AGC:1\\x04"_s, u"out \\x02PONG\\x04"_s, u"out \\x021.1\\x04"_s}
            << QList<bool>{false, false, false, true, true};
        QTest::newRow("no frame") << QStringList{u"in PING"_s, u"out \\x02PONG\\x04"_s}
                                  << QList<bool>{false, false};
    }

    void answers_are_distinguished_from_the_operator_s_messages()
    {
        QFETCH(QStringList, lines);
        const ReplayScore score(recording(lines));
        QList<bool> answers;
        for (qsizetype i = 0; i < recording(lines).size(); ++i) {
            answers += score.isAnswer(i);
        }
        QTEST(answers, "answers");
    }

    // The time per line must not grow with the number of open questions. Otherwise this test does
    // not finish in time.
    void many_open_questions_do_not_hold_up_a_long_recording()
    {
        constexpr int Open = 1000;
        constexpr int Presses = 200000;
        QList<wire::TraceLine> lines(Open, {1.0, true, frame(u"Slave"_s)});
        lines += QList<wire::TraceLine>(Presses, {1.0, false, frame(u"R1:AGC:1"_s)});
        lines += QList<wire::TraceLine>(Open + 1, {1.0, false, frame(u"Slave,0"_s)});
        const ReplayScore score(lines);
        for (int i = 0; i < Open + Presses; ++i) {
            QVERIFY(!score.isAnswer(i));
        }
        for (int i = 0; i < Open; ++i) {
            QVERIFY(score.isAnswer(Open + Presses + i));
        }
        QVERIFY(!score.isAnswer(lines.size() - 1)); // has no question
        QCOMPARE(score.expected(), Presses + Open + 1);
    }

    void everything_that_comes_back_counts()
    {
        ReplayScore score(recording(Talk));
        QCOMPARE(score.expected(), 4);
        score.take(frame(u"PONG"_s), 1);
        QVERIFY(score.cameBack(1));
        QVERIFY(!score.cameBack(6));
        score.take(frame(u"1.1.6.4"_s), 3);
        score.take(frame(u"R1:AGC:1"_s), 4);
        QVERIFY(!score.isGood());
        score.take(frame(u"PONG"_s), 6);
        QVERIFY(score.isGood());
        QCOMPARE(score.report(), QStringList{u"4 of 4 frames came back"_s});
    }

    void keys_that_nobody_presses_again_are_reported_but_are_no_fault()
    {
        ReplayScore score(recording(Talk));
        score.take(frame(u"PONG"_s), 1);
        score.take(frame(u"1.1.6.4"_s), 3);
        score.take(frame(u"PONG"_s), 6);
        QVERIFY(score.allAnswersCame());
        QVERIFY(score.isGood());
        QCOMPARE(score.report(),
            (QStringList{
                u"3 of 4 frames came back"_s, u"not pressed: 1.000 out \\x02R1:AGC:1\\x04"_s}));
    }

    void a_missing_answer_is_reported_and_is_a_fault()
    {
        ReplayScore score(recording(Talk));
        score.take(frame(u"PONG"_s), 1);
        score.take(frame(u"R1:AGC:1"_s), 5);
        score.take(frame(u"PONG"_s), 6);
        QVERIFY(!score.allAnswersCame());
        QVERIFY(!score.isGood());
        QCOMPARE(score.report(),
            (QStringList{u"3 of 4 frames came back"_s, u"missing: 1.000 out \\x021.1.6.4\\x04"_s}));
    }

    void an_unexpected_message_is_reported_and_is_a_fault()
    {
        ReplayScore score(recording({u"in \\x02PING\\x04"_s, u"out \\x02PONG\\x04"_s}));
        score.take(frame(u"PONG"_s), 1);
        score.take(u"x\n"_s, 2);
        QVERIFY(score.allAnswersCame());
        QVERIFY(!score.isGood());
        QCOMPARE(
            score.report(), (QStringList{u"1 of 1 frames came back"_s, u"unexpected: x\\x0a"_s}));
    }

    void another_version_is_missing_and_unexpected()
    {
        ReplayScore score(recording({u"in \\x02VER\\x04"_s, u"out \\x021.0\\x04"_s}));
        score.take(frame(u"1.1.6.4"_s), 1);
        QCOMPARE(score.report(),
            (QStringList{u"0 of 1 frames came back"_s, u"missing: 1.000 out \\x021.0\\x04"_s,
                u"unexpected: \\x021.1.6.4\\x04"_s}));
    }

    void an_answer_in_front_of_its_question_does_not_count()
    {
        ReplayScore score(recording(Talk));
        score.take(frame(u"1.1.6.4"_s), 1); // "VER" has not been sent yet
        QVERIFY(!score.cameBack(3));
    }

    void answers_in_another_order_do_not_count()
    {
        ReplayScore score(recording({u"in \\x02PING\\x04"_s, u"in \\x02VER\\x04"_s,
            u"out \\x02PONG\\x04"_s, u"out \\x021.1\\x04"_s}));
        score.take(frame(u"1.1"_s), 2);
        score.take(frame(u"PONG"_s), 2);
        QCOMPARE(score.returned(), 1);
        QVERIFY(!score.isGood());
    }

    void a_late_answer_still_counts()
    {
        ReplayScore score(recording(Talk));
        score.take(frame(u"PONG"_s), 6);
        QVERIFY(score.cameBack(1));
        QVERIFY(!score.cameBack(6));
    }

    void a_long_report_is_cut_and_counted()
    {
        QStringList lines;
        for (int i = 0; i < 150; ++i) {
            lines += {u"in \\x02PING\\x04"_s, u"out \\x02PONG\\x04"_s};
        }
        ReplayScore score(recording(lines));
        for (int i = 0; i < 120; ++i) {
            score.take(u"x"_s, 0);
        }
        const QStringList report = score.report();
        QCOMPARE(report.size(), 1 + ReplayScore::MaxLines + 1);
        QCOMPARE(report.first(), u"0 of 150 frames came back"_s);
        QCOMPARE(report.last(), u"170 more"_s);
    }
};

QN740_TEST_MAIN(tst_ReplayScore)
#include "tst_ReplayScore.moc"
