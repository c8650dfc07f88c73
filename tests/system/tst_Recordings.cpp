// These tests record the messages between the real programs and play them again. They also run the
// panel on a line that corrupts what it carries.
#include "sim/replay/Recording.h"
#include "support/Program.h"
#include "support/TestMain.h"

#include <QRegularExpression>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongMs = 60000;

// Returns 200 messages: menus, values and texts, with a question after every other one.
QByteArray conversation()
{
    QByteArray text;
    for (int i = 0; i < 50; ++i) {
        const QByteArray number = QByteArray::number(i);
        text += "AK,Menu " + QByteArray::number(i % 3) + ",k" + number + ",Key " + number +
            ",0,R1:K" + number + ":,,0,,0,0,1\n";
        text += "PING\n";
        text += i % 2 == 0 ? "SK,Menu " + QByteArray::number(i % 3) + "\n"
                           : "SB,0,Text with \\\\ and \\xe4 " + number + "\n";
        text += i % 3 == 0 ? "Slave\n" : "VER\n";
    }
    return text;
}

// Returns everything that the panel has sent, in the order in which it was sent.
QByteArray answersIn(const QString& path)
{
    QByteArray bytes;
    const Recording recording = Recording::load(path);
    for (const wire::TraceLine& line : recording.lines()) {
        bytes += line.in ? QByteArray() : line.frame.toLatin1();
    }
    return bytes;
}

QByteArray questionsIn(const QString& path)
{
    QByteArray bytes;
    const Recording recording = Recording::load(path);
    for (const wire::TraceLine& line : recording.lines()) {
        bytes += line.in ? line.frame.toLatin1() : QByteArray();
    }
    return bytes;
}

} // namespace

class tst_Recordings : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_parent;

    QString file(const char* name) const { return m_parent->filePath(QString::fromUtf8(name)); }
    QStringList panelEnvironment() const
    {
        return {u"QN740_DEV="_s + file("dev"), u"XDG_CONFIG_HOME="_s + m_parent->path()};
    }
    QString fileWith(const QByteArray& text) const
    {
        QFile out(file("talk.log"));
        out.open(QIODevice::WriteOnly);
        out.write(text);
        return out.fileName();
    }

    // Records the conversation with a panel into talk.log. Returns what the panel logged.
    QByteArray recordConversation(const QStringList& panelLog = {})
    {
        Program unit(QString::fromUtf8(QN740_SIM),
            {u"--dir"_s, file("dev"), u"--no-menus"_s, u"--record"_s, file("talk.log")});
        if (!QTest::qWaitFor([&unit] { return unit.output().startsWith("sim: ready"); }, LongMs)) {
            return "no unit";
        }
        Program panel(QString::fromUtf8(QN740_PANEL), {}, panelEnvironment() + panelLog);
        unit.write(conversation() + "SB,0,The end\n");
        const QByteArray end = "SB,0,The end";
        const bool done = QTest::qWaitFor(
            [this, &panel, &panelLog, &end] {
                // The log does not arrive by the same way as the answers.
                const bool logged = panel.errors().count(" out ") == 101 || panelLog.isEmpty();
                return logged && questionsIn(file("talk.log")).contains(end) &&
                    answersIn(file("talk.log")).count('\x04') == 101;
            },
            LongMs);
        return done ? panel.errors() : "no end: " + answersIn(file("talk.log"));
    }

private slots:
    void init() { m_parent = std::make_unique<QTemporaryDir>(); }

    void a_conversation_of_200_messages_comes_back_byte_for_byte()
    {
        recordConversation();
        const QByteArray answers = answersIn(file("talk.log"));
        QCOMPARE(answers.count('\x04'), 101); // the version at the start, then every other message
        QCOMPARE(questionsIn(file("talk.log")).count('\x04'), 202);

        Program unit(QString::fromUtf8(QN740_SIM),
            {u"--dir"_s, file("dev"), u"--replay"_s, file("talk.log"), u"--fast"_s, u"--record"_s,
                file("again.log")});
        QTRY_VERIFY_WITH_TIMEOUT(unit.output().startsWith("sim: ready"), LongMs);
        const Program panel(QString::fromUtf8(QN740_PANEL), {}, panelEnvironment());
        QTRY_COMPARE_WITH_TIMEOUT(unit.state(), QProcess::NotRunning, LongMs);
        QVERIFY2(unit.has("sim: 101 of 101 frames came back"), unit.output());
        QCOMPARE(unit.exitCode(), 0);
        QCOMPARE(answersIn(file("again.log")), answers);
        QCOMPARE(questionsIn(file("again.log")), questionsIn(file("talk.log")));
    }

    void the_log_of_the_panel_plays_as_well()
    {
        const QByteArray log = recordConversation({u"QT_LOGGING_RULES=qn740.link.debug=true"_s});
        const QByteArray answers = answersIn(file("talk.log"));
        QFile out(file("panel.log"));
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(log);
        out.close();
        QCOMPARE(answersIn(file("panel.log")), answers);
        Program unit(QString::fromUtf8(QN740_SIM),
            {u"--dir"_s, file("dev"), u"--replay"_s, file("panel.log"), u"--fast"_s, u"--record"_s,
                file("again.log")});
        QTRY_VERIFY_WITH_TIMEOUT(unit.output().startsWith("sim: ready"), LongMs);
        const Program panel(QString::fromUtf8(QN740_PANEL), {}, panelEnvironment());
        QTRY_COMPARE_WITH_TIMEOUT(unit.state(), QProcess::NotRunning, LongMs);
        QCOMPARE(unit.exitCode(), 0);
        QCOMPARE(answersIn(file("again.log")), answers);
    }

    void a_different_answer_shows_in_the_exit_status()
    {
        const QString talk = fileWith("0.000 in \\x02VER\\x04\n0.010 out \\x029.9\\x04\n"
                                      "0.020 in \\x02PING\\x04\n0.030 out \\x02PONG\\x04\n"
                                      "0.040 out \\x02R1:AGC:1\\x04\n");
        Program unit(QString::fromUtf8(QN740_SIM), {u"--dir"_s, file("dev"), u"--replay"_s, talk});
        QTRY_VERIFY_WITH_TIMEOUT(unit.output().startsWith("sim: ready"), LongMs);
        const Program panel(QString::fromUtf8(QN740_PANEL), {}, panelEnvironment());
        QTRY_COMPARE_WITH_TIMEOUT(unit.state(), QProcess::NotRunning, LongMs);
        QCOMPARE(unit.exitCode(), 1);
        QVERIFY2(unit.has("sim: 1 of 3 frames came back"), unit.output());
        QVERIFY(unit.has("sim: missing: 0.010 out \\x029.9\\x04"));
        QVERIFY(unit.has("sim: not pressed: 0.040 out \\x02R1:AGC:1\\x04"));
        QVERIFY(unit.has("sim: unexpected: \\x021.1.6.4\\x04"));
    }

    void a_panel_on_a_bad_line_comes_up_again_with_the_next_whole_message_data()
    {
        QTest::addColumn<QString>("faults");
        for (const char* name : {"drop", "cut", "junk", "split", "burst"}) {
            QTest::newRow(name) << u"%1=0.2"_s.arg(QString::fromUtf8(name));
        }
        QTest::newRow("all") << "drop=0.1,cut=0.1,junk=0.1,split=0.1,burst=0.1";
    }

    // Only a message with nothing in front of it is certain to be understood. The first message
    // after a corrupted one may be lost with it.
    void a_panel_on_a_bad_line_comes_up_again_with_the_next_whole_message()
    {
        QFETCH(QString, faults);
        {
            Program unit(QString::fromUtf8(QN740_SIM),
                {u"--dir"_s, file("dev"), u"--fault"_s, faults, u"--seed"_s, u"7"_s, u"--trace"_s});
            QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: seed 7"), LongMs);
            Program panel(QString::fromUtf8(QN740_PANEL), {}, panelEnvironment());
            QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: menus sent"), LongMs);
            const auto answered = [&unit] { return unit.has("panel: PONG"); };
            bool came = false;
            for (int i = 0; i < 600 && !came; ++i) {
                unit.write("PING\n");
                came = QTest::qWaitFor(answered, 50);
            }
            QVERIFY2(came, unit.output().right(2000));
            QCOMPARE(panel.state(), QProcess::Running);
        }
    }

    void faults_come_the_same_with_the_same_seed()
    {
        QList<QByteArray> runs;
        const QString menu = file("test.menu"); // without scopes, which send at any time
        QFile out(menu);
        QVERIFY(out.open(QIODevice::WriteOnly));
        for (int i = 0; i < 300; ++i) {
            out.write("SB,0,Text " + QByteArray::number(i) + '\n');
        }
        out.close();
        for (const char* seed : {"5", "5", "6"}) {
            Program unit(QString::fromUtf8(QN740_SIM),
                {u"--dir"_s, file("dev"), u"--menu"_s, menu, u"--fault"_s,
                    u"drop=0.1,cut=0.1,junk=0.2"_s, u"--seed"_s, QString::fromUtf8(seed),
                    u"--record"_s, file("talk.log")});
            QTRY_VERIFY_WITH_TIMEOUT(unit.has(QByteArray("sim: seed ") + seed), LongMs);
            const Program panel(QString::fromUtf8(QN740_PANEL), {}, panelEnvironment());
            QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: menus sent"), LongMs);
            runs += questionsIn(file("talk.log"));
        }
        QCOMPARE(runs.at(1), runs.at(0));
        QVERIFY(runs.at(2) != runs.at(0));
    }

    void options_that_cannot_be_done_are_refused_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("reason");
        const QString talk = m_parent->filePath(u"none.log"_s);
        QTest::newRow("no recording")
            << QStringList{u"--replay"_s, u"/proc/none"_s} << QByteArray("/proc/none: ");
        QTest::newRow("empty recording")
            << QStringList{u"--replay"_s, u"/dev/null"_s}
            << QByteArray("/dev/null: no line as \"12.345 in \\x02PING\\x04\" in it\n");
        QTest::newRow("no place to record")
            << QStringList{u"--record"_s, u"/proc/none"_s} << QByteArray("/proc/none: ");
        QTest::newRow("fault") << QStringList{u"--fault"_s, u"lost=1"_s}
                               << QByteArray(
                                      "no fault \"lost\"; there are drop, double, noise, cut, "
                                      "junk, split, burst, scope-index, scope-loss, scope-noise, "
                                      "scope-silence, card-no-reply, card-late, card-cut, "
                                      "card-noise, card-address, card-length\n");
        QTest::newRow("rate") << QStringList{u"--fault"_s, u"drop=2"_s}
                              << QByteArray("drop needs a rate from 0 to 1, as in drop=0.05\n");
        QTest::newRow("seed") << QStringList{u"--seed"_s, u"x"_s}
                              << QByteArray("the seed must be a whole number from 0 to "
                                            "4294967295, not \"x\"\n");
        QTest::newRow("menus in a replay")
            << QStringList{u"--replay"_s, u"/dev/null"_s, u"--no-menus"_s}
            << QByteArray("--replay sends what is recorded, and no menus\n");
        QTest::newRow("nothing to be fast with")
            << QStringList{u"--fast"_s} << QByteArray("--fast goes with --replay\n");
    }

    void options_that_cannot_be_done_are_refused()
    {
        QFETCH(QStringList, options);
        QFETCH(QByteArray, reason);
        Program unit(QString::fromUtf8(QN740_SIM), QStringList{u"--dir"_s, file("dev")} + options);
        QVERIFY(unit.ends());
        QCOMPARE(unit.exitCode(), 1);
        QVERIFY2(unit.errors().startsWith("qn740-sim: " + reason), unit.errors());
        QCOMPARE(unit.output(), QByteArray());
    }

    void help_has_every_option_and_fault()
    {
        Program unit(QString::fromUtf8(QN740_SIM), {u"--help"_s});
        QVERIFY(unit.ends());
        for (const char* text : {"--record", "--replay", "--fast", "--fault", "--seed", "  drop  ",
                 "  cut  ", "  junk  ", "  split  ", "  burst  ", "  scope-loss  ",
                 "  card-no-reply  ", "--replay panel.log --fast"}) {
            QVERIFY2(unit.output().contains(text), text);
        }
    }
};

QN740_TEST_MAIN(tst_Recordings)
#include "tst_Recordings.moc"
