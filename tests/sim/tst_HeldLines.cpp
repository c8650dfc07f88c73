// These tests check how the simulator prints what the panel says about messages: HeldLines,
// PanelLog and TraceWords.
#include "sim/cli/HeldLines.h"
#include "sim/cli/PanelLog.h"
#include "sim/cli/TraceWords.h"
#include "support/TestMain.h"
#include "wire/Message.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

QStringList texts(const QSignalSpy& spy)
{
    QStringList all;
    for (const auto& arguments : spy) {
        all.append(arguments.first().toString());
    }
    return all;
}

} // namespace

class tst_HeldLines : public QObject
{
    Q_OBJECT

private slots:
    void a_line_that_waits_for_nothing_goes_at_once()
    {
        HeldLines held;
        QSignalSpy line(&held, &HeldLines::line);
        held.add(u"one"_s);
        held.add(QString());
        held.add(u"two"_s);
        QCOMPARE(texts(line), (QStringList{u"one"_s, u"two"_s}));
    }

    void lines_keep_their_order_behind_one_that_waits()
    {
        HeldLines held;
        QSignalSpy line(&held, &HeldLines::line);
        held.add(u"in A"_s, u"A"_s);
        held.add(u"out"_s);
        held.add(u"in B"_s, u"B"_s);
        held.add(u"in C"_s, u"C"_s);
        QCOMPARE(line.size(), 0);
        QVERIFY(held.took(u"A"_s));
        QCOMPARE(texts(line), QStringList{u"in A"_s}); // what is said about A goes here
        QVERIFY(held.took(u"C"_s));
        QCOMPARE(texts(line), (QStringList{u"in A"_s, u"out"_s, u"in B"_s, u"in C"_s}));
        QVERIFY(!held.took(u"C"_s));
    }

    void what_follows_a_message_waits_a_moment_for_what_the_panel_says()
    {
        HeldLines held;
        QSignalSpy line(&held, &HeldLines::line);
        held.add(u"in A"_s, u"A"_s);
        QElapsedTimer elapsed;
        elapsed.start();
        QVERIFY(held.took(u"A"_s));
        held.add(u"out"_s);
        if (elapsed.elapsed() < HeldLines::GraceMs) {
            QCOMPARE(texts(line), QStringList{u"in A"_s});
        }
        QTRY_COMPARE(texts(line), (QStringList{u"in A"_s, u"out"_s}));
    }

    void a_panel_that_says_nothing_holds_lines_up_for_a_while_only()
    {
        HeldLines held;
        QSignalSpy line(&held, &HeldLines::line);
        QElapsedTimer elapsed;
        elapsed.start();
        held.add(u"in A"_s, u"A"_s);
        held.add(u"out"_s);
        QTRY_COMPARE(line.size(), 2);
        QVERIFY(elapsed.elapsed() >= HeldLines::HoldMs);
    }

    void there_is_an_end_to_what_waits()
    {
        HeldLines held;
        QSignalSpy line(&held, &HeldLines::line);
        for (int i = 0; i <= HeldLines::MaxLines; ++i) {
            held.add(u"in"_s, u"A"_s);
        }
        QCOMPARE(line.size(), 1);
        held.release();
        QCOMPARE(line.size(), HeldLines::MaxLines + 1);
    }

    void the_panel_s_lines_are_told_apart()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"log"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(path), 0600), 0);
        const PanelLog log(path);
        QCOMPARE(log.fault(), QString());
        QSignalSpy took(&log, &PanelLog::took);
        QSignalSpy ignored(&log, &PanelLog::ignored);
        QSignalSpy other(&log, &PanelLog::other);
        for (int panel = 1; panel <= 2; ++panel) { // the second one after the first has ended
            QFile pipe(path);
            QVERIFY(pipe.open(QIODevice::WriteOnly));
            pipe.write("qn740.link: 1.000 in \\x02SK,No\\x04\nqn740-ignored: SK: no menu No\n"
                       "qn740.link: 1.001 out \\x02PONG\\x04\nqn740.link: ttyO1 was lost: x\n"
                       "\xff\x01 1.000 in x\n\n");
            pipe.close();
            QTRY_COMPARE(other.size(), 3 * panel);
            QCOMPARE(texts(took), QStringList(panel, wire::frame(u"SK,No"_s)));
            QCOMPARE(texts(ignored), QStringList(panel, u"SK: no menu No"_s));
        }
        QCOMPARE(other.first().first().toString(), u"qn740.link: ttyO1 was lost: x"_s);
    }

    void what_is_no_pipe_is_refused_with_the_reason()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"log"_s);
        QCOMPARE(PanelLog(path).fault(), path + u": No such file or directory"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(PanelLog(path).fault(), path + u": is no named pipe"_s);
    }

    void a_trace_shows_the_messages_of_its_words_data()
    {
        QTest::addColumn<QStringList>("only");
        QTest::addColumn<QStringList>("never");
        QTest::addColumn<QString>("body");
        QTest::addColumn<bool>("shown");
        const QStringList none;
        QTest::newRow("no words") << none << none << "PM,1,2,3" << true;
        QTest::newRow("named") << QStringList{u"PM"_s} << none << "PM,1,2,3" << true;
        QTest::newRow("not named") << QStringList{u"SF"_s} << none << "PM,1,2,3" << false;
        QTest::newRow("left out") << none << QStringList{u"PM"_s} << "PM,1,2,3" << false;
        QTest::newRow("not left out") << none << QStringList{u"SF"_s} << "PM,1,2,3" << true;
        QTest::newRow("both") << QStringList{u"PM"_s} << QStringList{u"PM"_s} << "PM" << false;
        QTest::newRow("a part of the panel's")
            << QStringList{u"R1"_s} << none << "R1:AGC:1" << true;
        QTest::newRow("two parts") << QStringList{u"R1:AGC"_s} << none << "R1:AGC:1" << true;
        QTest::newRow("half a part") << QStringList{u"R1:A"_s} << none << "R1:AGC:1" << false;
        QTest::newRow("half a word") << QStringList{u"P"_s} << none << "PING" << false;
    }

    void a_trace_shows_the_messages_of_its_words()
    {
        QFETCH(QStringList, only);
        QFETCH(QStringList, never);
        QFETCH(QString, body);
        const TraceWords words{only, never};
        QTEST(words.show(wire::frame(body)), "shown");
        QTEST(words.show(body), "shown");
    }
};

QN740_TEST_MAIN(tst_HeldLines)
#include "tst_HeldLines.moc"
