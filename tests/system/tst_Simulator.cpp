#include "sim/unit/MenuFile.h"
#include "support/LineEnd.h"
#include "support/Program.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <csignal>
#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongMs = Program::LongMs;

QByteArray builtInFrames()
{
    QByteArray all;
    const MenuFile menus = MenuFile::builtIn();
    for (const MenuStep& step : menus.steps()) {
        if (step.kind == MenuStep::Kind::Message) {
            all += framed(step.body.toLatin1());
        }
    }
    return all;
}

// What the kernel tells about a program.
QByteArray statusFile(const Program& program, const QString& name)
{
    QFile file(u"/proc/%1/%2"_s.arg(program.processId()).arg(name));
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

// How often the program has gone to sleep so far.
int wakeUps(const Program& program)
{
    const QByteArray status = statusFile(program, u"status"_s);
    const QByteArray name = "\nvoluntary_ctxt_switches:";
    const qsizetype at = status.indexOf(name) + name.size();
    return status.mid(at, status.indexOf('\n', at) - at).trimmed().toInt();
}

} // namespace

class tst_Simulator : public QObject
{
    Q_OBJECT

    QTemporaryDir m_parent;
    QString m_directory;

    QString device() const { return m_directory + u"/ttyO1"_s; }

    QString fileWith(const QByteArray& text) const
    {
        QFile file(m_parent.filePath(u"test.menu"_s));
        file.open(QIODevice::WriteOnly);
        file.write(text);
        return file.fileName();
    }

private slots:
    void initTestCase() { m_directory = m_parent.filePath(u"dev"_s); }

    void the_panel_is_asked_for_its_version_and_gets_the_built_in_menus()
    {
        Program program(QString::fromUtf8(QN740_SIM), {u"--dir"_s, m_directory});
        QTRY_VERIFY_WITH_TIMEOUT(program.has("sim: ready " + m_directory.toUtf8()), LongMs);
        LineEnd panel(device());
        QVERIFY(panel.isOpen());
        QTRY_COMPARE_WITH_TIMEOUT(panel.received(), framed("VER"), LongMs);
        QTRY_VERIFY(program.has("sim: panel opened ttyO1"));
        QVERIFY(panel.write(framed("1.1.6.4")));
        const QByteArray expected = framed("VER") + builtInFrames();
        // The values that the unit measures follow these messages.
        QTRY_VERIFY_WITH_TIMEOUT(panel.received().size() >= expected.size(), LongMs);
        QCOMPARE(panel.received().left(expected.size()), expected);
        QTRY_VERIFY(program.has("panel: 1.1.6.4"));
        QTRY_VERIFY(program.has("sim: menus sent"));
        panel.close();
        QTRY_VERIFY(program.has("sim: panel closed ttyO1"));
    }

    void keys_are_confirmed_and_printed()
    {
        const QString menu = fileWith("AK,Menu,key,Key,0,R1:KEY:,,0,,0,0,1\n"
                                      "AK,Menu,go,Go,5,SK:Other:,,0,,0,0,1\n");
        Program program(QString::fromUtf8(QN740_SIM), {u"--dir"_s, m_directory, u"--menu"_s, menu});
        QTRY_VERIFY_WITH_TIMEOUT(program.output().startsWith("sim: ready"), LongMs);
        LineEnd panel(device());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_VERIFY_WITH_TIMEOUT(program.has("sim: menus sent"), LongMs);
        QVERIFY(panel.write(framed("R1:KEY:1")));
        QTRY_VERIFY(panel.received().endsWith(framed("CV,Menu,key,0,1")));
        QVERIFY(panel.write(framed("SK:Other:1")));
        QTRY_VERIFY(panel.received().endsWith(framed("SK,Other")));
        QVERIFY(panel.write(framed("a\\b\nc")));
        QVERIFY(panel.write("D1:SPEN:1"));
        QTRY_VERIFY(program.has("panel (unframed): D1:SPEN:1"));
        QVERIFY(program.output().contains("panel: 1.1.6.4\nsim: menus sent\npanel: R1:KEY:1\n"
                                          "panel: SK:Other:1\npanel: a\\\\b\\x0ac\n"));
    }

    void lines_on_standard_input_are_sent_and_its_end_ends_nothing()
    {
        Program program(QString::fromUtf8(QN740_SIM), {u"--dir"_s, m_directory, u"--no-menus"_s});
        QTRY_VERIFY_WITH_TIMEOUT(program.output().startsWith("sim: ready"), LongMs);
        LineEnd panel(device());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_COMPARE_WITH_TIMEOUT(panel.received(), framed("VER"), LongMs);
        program.write("# comment\n\nPING\nnonsense\nwait 10\nDB,Text,1");
        program.closeWriteChannel();
        QTRY_COMPARE_WITH_TIMEOUT(
            panel.received(), framed("VER") + framed("PING") + framed("DB,Text,1"), LongMs);
        QTRY_COMPARE(program.errors(), QByteArray("refused: unknown command word \"nonsense\"\n"));
        QVERIFY(panel.write(framed("PONG")));
        QTRY_VERIFY(program.has("panel: PONG"));
        QCOMPARE(program.state(), QProcess::Running);
    }

    void a_typed_line_is_sent_whole_or_refused_data()
    {
        QTest::addColumn<QByteArray>("front");
        QTest::addColumn<QByteArray>("letter");
        QTest::newRow("plain") << QByteArray() << QByteArray("x");
        QTest::newRow("escaped") << QByteArray() << QByteArray("\\x78");
        QTest::newRow("behind blanks") << QByteArray(300000, ' ') << QByteArray("x");
    }

    void a_typed_line_is_sent_whole_or_refused()
    {
        QFETCH(QByteArray, front);
        QFETCH(QByteArray, letter);
        constexpr int Longest = 65536;
        const QByteArray start("SB,0,");
        Program program(QString::fromUtf8(QN740_SIM), {u"--dir"_s, m_directory, u"--no-menus"_s});
        QTRY_VERIFY_WITH_TIMEOUT(program.output().startsWith("sim: ready"), LongMs);
        LineEnd panel(device());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_VERIFY_WITH_TIMEOUT(program.has("panel: 1.1.6.4"), LongMs);
        const auto room = Longest - start.size();
        program.write(start + letter.repeated(room) + '\n');
        program.write(front + start + letter.repeated(4 * Longest) + "\nPING\n");
        const QByteArray sent = framed("VER") + framed(start + QByteArray(room, 'x'));
        QTRY_COMPARE_WITH_TIMEOUT(panel.received(), sent + framed("PING"), LongMs);
        QCOMPARE(
            program.errors(), QByteArray("refused: the message is longer than 65536 characters\n"));
    }

    void a_menu_file_that_is_saved_is_sent_anew_unless_it_is_faulty()
    {
        const QString menu = fileWith("AK,Menu,key,Key,0,R1:KEY:,,0,,0,0,1\nSK,Menu\n");
        const QByteArray name = menu.toUtf8();
        Program program(QString::fromUtf8(QN740_SIM),
            {u"--dir"_s, m_directory, u"--menu"_s, menu, u"--watch"_s});
        QTRY_VERIFY_WITH_TIMEOUT(program.output().startsWith("sim: ready"), LongMs);
        LineEnd panel(device());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_VERIFY_WITH_TIMEOUT(panel.received().endsWith(framed("SK,Menu")), LongMs);
        const auto before = panel.received().size();
        const QByteArray notSent = name + ": was not sent; the menus stay as they are\n";
        QByteArray errors = name + ":1: error: AK needs 11 fields, this has 2 [QN102]\n" + notSent;
        fileWith("AK,Menu,key\n");
        QTRY_COMPARE_WITH_TIMEOUT(program.errors(), errors, LongMs);
        errors += name + ":2: error: there is no menu \"Mneu\" [QN201]\n" + notSent;
        fileWith("AK,Menu,key,Key,0,R1:KEY:,,0,,0,0,1\nSK,Mneu\n# qn740: ignore-file QN204\n");
        QTRY_COMPARE_WITH_TIMEOUT(program.errors(), errors, LongMs);
        QVERIFY(QFile::remove(menu));
        QTRY_VERIFY_WITH_TIMEOUT(
            program.errors().endsWith(name + ": is gone; the menus stay as they are\n"), LongMs);
        QCOMPARE(panel.received().size(), before);
        fileWith("AK,Menu,new,New,0,R1:NEW:,,0,,0,0,1\n");
        const QByteArray sent =
            framed("CLEAR") + framed("AK,Menu,new,New,0,R1:NEW:,,0,,0,0,1") + framed("SK,Menu");
        QTRY_COMPARE_WITH_TIMEOUT(panel.received().mid(before), sent, LongMs);
        QTRY_VERIFY(program.output().endsWith("sim: " + name + " was saved\nsim: menus sent\n"));
        QVERIFY(panel.write(framed("R1:NEW:1")));
        QTRY_COMPARE(panel.received().mid(before), sent + framed("CV,Menu,new,0,1"));
    }

    void confirmations_are_steered_by_options_and_typed_lines()
    {
        const QString menu = fileWith("AK,Menu,a,A,0,R1:A:,,0,,0,0,1\n"
                                      "AK,Menu,b,B,0,R1:B:,,0,,0,0,1\n"
                                      "AK,Menu,c,C,0,R1:C:,,0,,0,0,1\n");
        Program program(QString::fromUtf8(QN740_SIM),
            {u"--dir"_s, m_directory, u"--menu"_s, menu, u"--refuse"_s, u"R1:A:*"_s, u"--silent"_s,
                u"R1:B:*"_s, u"--delay"_s, u"50:R1:C:*"_s});
        QTRY_VERIFY_WITH_TIMEOUT(program.output().startsWith("sim: ready"), LongMs);
        LineEnd panel(device());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_VERIFY_WITH_TIMEOUT(program.has("sim: menus sent"), LongMs);
        QTRY_VERIFY(panel.received().contains("R1:C:"));
        const auto before = panel.received().size();
        QVERIFY(panel.write(framed("R1:C:1") + framed("R1:A:1") + framed("R1:B:1")));
        QByteArray all = framed("CV,Menu,a,0,0") + framed("CV,Menu,c,0,1");
        QTRY_COMPARE(panel.received().mid(before), all);
        program.write("confirm\nsilent R1:C:*\nrefuse \ndelay x\nPING\n");
        all += framed("PING");
        QTRY_COMPARE(panel.received().mid(before), all);
        QVERIFY(panel.write(framed("R1:C:0") + framed("R1:B:1") + framed("R1:A:1")));
        all += framed("CV,Menu,b,0,1") + framed("CV,Menu,a,0,1");
        QTRY_COMPARE(panel.received().mid(before), all);
        QTRY_COMPARE(program.errors(),
            QByteArray("refused: refuse needs a pattern, as R1:FREQ:*\n"
                       "refused: delay needs a time in milliseconds from 0 to 600000, and may have "
                       "\":PATTERN\" behind it\n"));
    }

    void a_device_is_unplugged_and_plugged_in_by_typed_lines()
    {
        Program program(QString::fromUtf8(QN740_SIM), {u"--dir"_s, m_directory, u"--no-menus"_s});
        QTRY_VERIFY_WITH_TIMEOUT(program.output().startsWith("sim: ready"), LongMs);
        {
            const LineEnd panel(device());
            QVERIFY(panel.isOpen());
            QTRY_VERIFY_WITH_TIMEOUT(program.has("sim: panel opened ttyO1"), LongMs);
            program.write("unplug ttyO1\nunplug nothing\nplug\n");
            QTRY_VERIFY_WITH_TIMEOUT(program.has("sim: panel closed ttyO1"), LongMs);
            QVERIFY(!QFileInfo(device()).isSymLink());
            QVERIFY(!panel.write("x"));
        }
        QTRY_COMPARE(program.errors(),
            QByteArray("refused: unplug needs a device of this unit, as ttyUSB1\n"
                       "refused: plug needs a device of this unit, as ttyUSB1\n"));
        program.write("plug ttyO1\n");
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(device()).isSymLink(), LongMs);
        LineEnd panel(device());
        QTRY_COMPARE_WITH_TIMEOUT(panel.received(), framed("VER"), LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(program.output().count("sim: panel opened ttyO1\n"), 2, LongMs);
    }

    void raw_bytes_are_typed_between_messages()
    {
        Program program(QString::fromUtf8(QN740_SIM), {u"--dir"_s, m_directory, u"--no-menus"_s});
        QTRY_VERIFY_WITH_TIMEOUT(program.output().startsWith("sim: ready"), LongMs);
        LineEnd panel(device());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_VERIFY_WITH_TIMEOUT(program.has("panel: 1.1.6.4"), LongMs);
        program.write(
            "PING\nraw \\x02SK,\xff\\\\ \\x04\\x00\xc3\xa4 \nraw\nraw \nraw \xe2\x82\xac\n"
            "raw " +
            QByteArray(65537, 'x') + "\nVER\n");
        const QByteArray sent = framed("VER") + framed("PING") + framed("SK,\xff\\ ") +
            QByteArray("\x00\xc3\xa4 ", 4) + framed("VER");
        QTRY_COMPARE_WITH_TIMEOUT(panel.received(), sent, LongMs);
        const QByteArray none("refused: raw needs bytes, as \\x02PING\\x04\n");
        QTRY_COMPARE(program.errors(),
            none + none + "refused: raw needs characters of Latin-1\n" +
                "refused: the message is longer than 65536 characters\n");
    }

    void repeated_traffic_can_be_switched_off_data()
    {
        QTest::addColumn<QString>("quiet");
        QTest::addColumn<bool>("isTold");
        QTest::newRow("nothing") << "" << true;
        QTest::newRow("SF") << "PM,SF" << false;
        QTest::newRow("another word") << "PM" << true;
    }

    void repeated_traffic_can_be_switched_off()
    {
        QFETCH(QString, quiet);
        QFETCH(bool, isTold);
        const QString menu =
            fileWith("AK,Menu,f,F,1,R1:FREQ:,2200 2400,1,,2250.5,0,1\nSF,0,2250.5\n");
        Program program(QString::fromUtf8(QN740_SIM),
            {u"--dir"_s, m_directory, u"--menu"_s, menu, u"--quiet"_s, quiet});
        QTRY_VERIFY_WITH_TIMEOUT(program.output().startsWith("sim: ready"), LongMs);
        LineEnd panel(device());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_VERIFY_WITH_TIMEOUT(program.has("sim: menus sent"), LongMs);
        QVERIFY(panel.write(framed("R1:FREQ:2251") + framed("R1:FREQ:2252")));
        QTRY_VERIFY(panel.received().contains(framed("CV,Menu,f,2252,0")));
        QCOMPARE(panel.received().contains(framed("SF,0,2251")), isTold);
    }

    void the_trace_shows_the_messages_of_its_words()
    {
        Program program(QString::fromUtf8(QN740_SIM),
            {u"--dir"_s, m_directory, u"--no-menus"_s, u"--trace-only"_s, u"PING,R1"_s,
                u"--trace-not"_s, u"R1:B"_s});
        QTRY_VERIFY_WITH_TIMEOUT(program.output().startsWith("sim: ready"), LongMs);
        const LineEnd panel(device());
        QVERIFY(panel.write(framed("1.1.6.4") + framed("R1:A:1") + framed("R1:B:1")));
        program.write("PING\n");
        QTRY_VERIFY_WITH_TIMEOUT(program.output().contains("PING"), LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(program.has("panel: R1:B:1"), LongMs);
        QCOMPARE(program.output().count("trace: "), 2);
        QVERIFY(program.output().contains(" in \\x02PING\\x04\n"));
        QVERIFY(program.output().contains(" out \\x02R1:A:1\\x04\n"));
    }

    void what_the_panel_ignores_stands_behind_the_message_data()
    {
        QTest::addColumn<bool>("trace");
        QTest::newRow("traced") << true;
        QTest::newRow("alone") << false;
    }

    // The real panel writes its log into the pipe.
    void what_the_panel_ignores_stands_behind_the_message()
    {
        QFETCH(bool, trace);
        const QString pipe = m_parent.filePath(u"panel.log"_s);
        QFile::remove(pipe);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe), 0600), 0);
        QStringList options{u"--dir"_s, m_directory, u"--no-menus"_s, u"--panel-log"_s, pipe};
        if (trace) {
            options.append(u"--trace"_s);
        }
        Program unit(QString::fromUtf8(QN740_SIM), options);
        QTRY_VERIFY_WITH_TIMEOUT(unit.output().startsWith("sim: ready"), LongMs);
        Program panel(u"sh"_s,
            {u"-c"_s, u"exec \"$0\" 2>\"$1\""_s, QString::fromUtf8(QN740_PANEL), pipe},
            {u"QN740_DEV="_s + m_directory, u"QN740_SPLASH_MS=0"_s,
                u"QT_LOGGING_RULES=qn740-ignored.debug=true;qn740.link.debug=true"_s});
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("panel: 1.1.6.4"), LongMs);
        QByteArray typed;
        for (int i = 0; i < 20; ++i) {
            typed += "PING\nSK,No" + QByteArray::number(i) + "\nSM,9,1\n";
        }
        unit.write(typed + "PING\nraw \\x02Foo\\x04\nVER\n");
        QTRY_COMPARE_WITH_TIMEOUT(unit.output().count("panel: 1.1.6.4\n"), 2, LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(unit.output().count("panel: PONG\n"), 21, LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(unit.output().contains("unknown word Foo"), LongMs);
        QCOMPARE(unit.output().count("ignored: "), 41);
        for (int i = 0; i < 20; ++i) {
            const QByteArray menu = "No" + QByteArray::number(i);
            const QByteArray front = trace ? " in \\x02SK," + menu + "\\x04" : QByteArray();
            QVERIFY2(unit.output().contains(front + "\nignored: SK: no menu " + menu + '\n'),
                unit.output());
        }
        QVERIFY2(!trace || unit.output().contains(" in \\x02Foo\\x04\nignored: unknown word Foo\n"),
            unit.output());
    }

    // With menus, three scope ports and a card that send nothing. Only the ports that are absent
    // are looked for, every two seconds.
    void an_idle_panel_sleeps()
    {
        const QString menu = fileWith("AK,Menu,key,Key,0,R1:KEY:,,0,,0,0,1\nSK,Menu\n");
        Program unit(QString::fromUtf8(QN740_SIM),
            {u"--dir"_s, m_directory, u"--menu"_s, menu, u"--quiet"_s, u"PM,SF"_s});
        QTRY_VERIFY_WITH_TIMEOUT(unit.output().startsWith("sim: ready"), LongMs);
        const Program panel(QString::fromUtf8(QN740_PANEL), {},
            {u"QN740_DEV="_s + m_directory, u"QN740_SPLASH_MS=1"_s});
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: menus sent"), LongMs);
        QVERIFY(wakeUps(panel) > 0);
        constexpr int MeasuredMs = 2000;
        constexpr int MaxWakeUps = 6;
        QElapsedTimer elapsed;
        elapsed.start();
        int count = 0;
        do { // until it has come up
            const int before = wakeUps(panel);
            QTest::qWait(MeasuredMs);
            count = wakeUps(panel) - before;
        } while (count > MaxWakeUps && !elapsed.hasExpired(LongMs));
        QVERIFY2(count <= MaxWakeUps, QByteArray::number(count));
        // Nor has it loaded what it does not need: Qt's network library and the plug-ins of
        // pictures that are not PNG files cost memory and a good part of the start.
        const QByteArray libraries = statusFile(panel, u"maps"_s);
        QVERIFY(libraries.contains("libQt6Widgets"));
#ifndef QN740_SANITIZED // linked with whatever is named
        QVERIFY(!libraries.contains("libQt6Network"));
#endif
        QVERIFY(!libraries.contains("imageformats"));
    }

    void the_trace_shows_both_directions_with_times()
    {
        Program program(
            QString::fromUtf8(QN740_SIM), {u"--dir"_s, m_directory, u"--no-menus"_s, u"--trace"_s});
        QTRY_VERIFY_WITH_TIMEOUT(program.output().startsWith("sim: ready"), LongMs);
        const LineEnd panel(device());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_VERIFY_WITH_TIMEOUT(program.has("panel: 1.1.6.4"), LongMs);
        const QRegularExpression both(u"\ntrace: \\d+\\.\\d{3} in \\\\x02VER\\\\x04\n.*"_s
                                      u"trace: \\d+\\.\\d{3} out \\\\x021\\.1\\.6\\.4\\\\x04\n"_s
                                      u"panel: 1\\.1\\.6\\.4\n"_s,
            QRegularExpression::DotMatchesEverythingOption);
        QVERIFY2(both.match(QString::fromUtf8(program.output())).hasMatch(), program.output());
    }

    void a_termination_signal_ends_it_and_removes_the_directory_data()
    {
        QTest::addColumn<int>("number");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
    }

    void a_termination_signal_ends_it_and_removes_the_directory()
    {
        QFETCH(int, number);
        Program program(QString::fromUtf8(QN740_SIM), {});
        QTRY_VERIFY_WITH_TIMEOUT(program.output().contains('\n'), LongMs);
        const QString directory =
            QString::fromUtf8(program.output().trimmed().mid(int(strlen("sim: ready "))));
        QVERIFY(QFile::exists(directory + u"/ttyO1"_s));
        const LineEnd panel(directory + u"/ttyO1"_s);
        QTRY_VERIFY_WITH_TIMEOUT(program.has("sim: panel opened ttyO1"), LongMs);
        ::kill(pid_t(program.processId()), number);
        QVERIFY(program.ends());
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        QVERIFY(!QFile::exists(directory));
    }

    void a_faulty_menu_file_is_refused_with_all_its_faults_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QByteArray>("form"); // of a line; %1 is the reason, %2 its code
        QTest::newRow("to play") << "--menu" << QByteArray("%1");
        QTest::newRow("to check") << "--check" << QByteArray("error: %1 [%2]");
    }

    void a_faulty_menu_file_is_refused_with_all_its_faults()
    {
        QFETCH(QString, option);
        QFETCH(QByteArray, form);
        const auto line = [&form](const char* reason, const char* code) {
            return QByteArray(form).replace("%1", reason).replace("%2", code) + '\n';
        };
        const QString path = fileWith("PING\nAK,Menu\nXY\n");
        Program program(QString::fromUtf8(QN740_SIM), {option, path});
        QVERIFY(program.ends());
        QCOMPARE(program.exitCode(), 1);
        const QByteArray name = path.toUtf8();
        QCOMPARE(program.errors(),
            name + ":2: " + line("AK needs 11 fields, this has 1", "QN102") + name +
                ":3: " + line("unknown command word \"XY\"", "QN101"));
        QCOMPARE(program.output(), QByteArray());
    }

    void a_good_menu_file_passes_the_check()
    {
        const QString path = fileWith("PING\nwait 5\nVER\n");
        Program program(QString::fromUtf8(QN740_SIM), {u"--check"_s, path});
        QVERIFY(program.ends());
        QCOMPARE(program.exitCode(), 0);
        QCOMPARE(program.output(), path.toUtf8() + ": 2 messages, no fault\n");
    }

    void the_check_has_exit_statuses_for_errors_and_warnings_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("output"); // behind the name of the file
        const QByteArray key = "AK,M,a,Label,5,A%1,,0,,0,0,1\nSK,M\n";
        const QByteArray good = QByteArray(key).replace("%1", ":");
        const QByteArray warned = QByteArray(key).replace("%1", "");
        QTest::newRow("good") << good << QStringList() << 0 << u": 2 messages, no fault\n"_s;
        QTest::newRow("good, strict")
            << good << QStringList{u"--strict"_s} << 0 << u": 2 messages, no fault\n"_s;
        QTest::newRow("warning") << warned << QStringList() << 0 << u": 2 messages, 1 warning\n"_s;
        QTest::newRow("warning, strict")
            << warned << QStringList{u"--strict"_s} << 1 << u": 2 messages, 1 warning\n"_s;
        QTest::newRow("error") << warned + "SK,N\n" << QStringList() << 1 << QString();
    }

    void the_check_has_exit_statuses_for_errors_and_warnings()
    {
        QFETCH(QByteArray, text);
        QFETCH(QStringList, options);
        QFETCH(int, status);
        QFETCH(QString, output);
        const QString path = fileWith(text);
        Program program(QString::fromUtf8(QN740_SIM), QStringList{u"--check"_s, path} + options);
        QVERIFY(program.ends());
        QCOMPARE(program.exitCode(), status);
        QCOMPARE(program.output(), output.isEmpty() ? QByteArray() : (path + output).toUtf8());
    }

    void several_files_are_checked_together()
    {
        const QString first = fileWith("PING\n");
        const QString second = m_parent.filePath(u"other.menu"_s);
        QVERIFY(QFile::copy(first, second));
        Program text(QString::fromUtf8(QN740_SIM), {u"--check"_s, first, second});
        QVERIFY(text.ends());
        QCOMPARE(text.output(),
            (first + u": 1 message, no fault\n"_s + second + u": 1 message, no fault\n"_s)
                .toUtf8());
        Program json(QString::fromUtf8(QN740_SIM),
            {u"--check"_s, u"--format"_s, u"json"_s, first, m_parent.filePath(u"none"_s)});
        QVERIFY(json.ends());
        QCOMPARE(json.exitCode(), 1);
        const QJsonObject report = QJsonDocument::fromJson(json.output()).object();
        QCOMPARE(report.value(u"errors"_s).toInt(), 1);
        QCOMPARE(report.value(u"files"_s).toArray().size(), 2);
        QCOMPARE(json.errors(), QByteArray());
    }

    void a_menu_file_is_exported_and_played_as_json()
    {
        const QString path = fileWith("PING\nAK,M,a,Label,5,A:,,0,,0,0,1\nSK,M\nwait 5\n");
        Program program(QString::fromUtf8(QN740_SIM), {u"--export"_s, u"json"_s, path});
        QVERIFY(program.ends());
        QCOMPARE(program.exitCode(), 0);
        const QString json = fileWith(program.output());
        Program lines(QString::fromUtf8(QN740_SIM), {u"--export"_s, u"menu"_s, json});
        QVERIFY(lines.ends());
        QCOMPARE(lines.output(), QByteArray("PING\nAK,M,a,Label,5,A:,,0,,0,0,1\nSK,M\nwait 5\n"));
        Program graph(QString::fromUtf8(QN740_SIM), {u"--export"_s, u"dot"_s, json});
        QVERIFY(graph.ends());
        QVERIFY(graph.output().contains("\"menu M\" [label=\"M\\n1 key\""));
        Program check(QString::fromUtf8(QN740_SIM), {u"--check"_s, json});
        QVERIFY(check.ends());
        QCOMPARE(check.output(), json.toUtf8() + ": 3 messages, no fault\n");
        Program unit(QString::fromUtf8(QN740_SIM), {u"--menu"_s, json});
        QTRY_VERIFY_WITH_TIMEOUT(unit.output().startsWith("sim: ready "), LongMs);
    }

    void options_of_the_check_and_the_export_are_refused_when_they_are_wrong_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("error");
        QTest::newRow("format") << QStringList{u"--check"_s, u"a"_s, u"--format"_s, u"xml"_s}
                                << QByteArray("--format is text or json, not \"xml\"");
        QTest::newRow("export") << QStringList{u"--export"_s, u"xml"_s, u"a"_s}
                                << QByteArray("--export is json, menu or dot, not \"xml\"");
        QTest::newRow("no file to check")
            << QStringList{u"--check"_s} << QByteArray("--check needs a menu file");
        QTest::newRow("no file") << QStringList{u"--export"_s, u"json"_s}
                                 << QByteArray("--export json needs one menu file, and no --check");
        QTest::newRow("two files")
            << QStringList{u"--export"_s, u"dot"_s, u"a"_s, u"b"_s}
            << QByteArray("--export dot needs one menu file, and no --check");
    }

    void options_of_the_check_and_the_export_are_refused_when_they_are_wrong()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, error);
        Program program(QString::fromUtf8(QN740_SIM), arguments);
        QVERIFY(program.ends());
        QCOMPARE(program.exitCode(), 1);
        QCOMPARE(program.errors(), "qn740-sim: " + error + '\n');
        QCOMPARE(program.output(), QByteArray());
    }

    void a_missing_menu_file_is_reported()
    {
        Program program(
            QString::fromUtf8(QN740_SIM), {u"--menu"_s, m_parent.filePath(u"none.menu"_s)});
        QVERIFY(program.ends());
        QCOMPARE(program.exitCode(), 1);
        QVERIFY(program.errors().startsWith(m_parent.filePath(u"none.menu"_s).toUtf8() + ": "));
    }

    void a_directory_that_cannot_be_used_is_reported()
    {
        Program program(QString::fromUtf8(QN740_SIM), {u"--dir"_s, u"/proc/none"_s});
        QVERIFY(program.ends());
        QCOMPARE(program.exitCode(), 1);
        QCOMPARE(program.errors(), QByteArray("qn740-sim: /proc/none: cannot be made\n"));
    }

    void every_example_of_the_help_works_data()
    {
        QTest::addColumn<QString>("command");
        Program program(QString::fromUtf8(QN740_SIM), {u"--help"_s});
        QVERIFY(program.ends());
        const QString help = QString::fromUtf8(program.output());
        const QStringList lines = help.mid(help.indexOf(u"\nExamples"_s)).split(u'\n').mid(2);
        for (const QString& line : lines) {
            if (!line.startsWith(u"  "_s)) {
                break;
            }
            // The part that is meant for the reader stands apart, after three blanks.
            const QString command = line.mid(2).section(u"   "_s, 0, 0);
            QTest::newRow(qPrintable(command)) << command;
        }
    }

    void every_example_of_the_help_works()
    {
        QFETCH(QString, command);
        QTemporaryDir home;
        const auto write = [&home](const char* name, const QByteArray& text) {
            QFile file(home.filePath(QString::fromUtf8(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(text);
        };
        // These files are what the examples before this one have left.
        write("my.menu", "PING\n");
        write("talk.log", "1.000 in \\x02PING\\x04\n1.001 out \\x02PONG\\x04\n");
        const bool isPanel = command.contains(u"qn740-panel"_s);
        if (!isPanel) {
            write("panel.log", "qn740.link: 1.000 in \\x02PING\\x04\n");
        }
        const QString bin = QFileInfo(QString::fromUtf8(QN740_SIM)).path();
        const QString own = home.filePath(u"dev"_s);
        std::unique_ptr<Program> unit;
        if (isPanel) {
            unit = std::make_unique<Program>(
                QString::fromUtf8(QN740_SIM), QStringList{u"--dir"_s, own, u"--no-menus"_s});
            QTRY_VERIFY_WITH_TIMEOUT(unit->has("sim: ready " + own.toUtf8()), LongMs);
        }
        // The shell gets its own process group, so that its children end with it.
        Program shell(u"setsid"_s,
            {u"sh"_s, u"-c"_s,
                u"cd "_s + home.path() + u"; "_s + QString(command).replace(u"/tmp/dev"_s, own)},
            {u"PATH="_s + bin + u':' + qEnvironmentVariable("PATH")});
        const auto works = [&] {
            const bool ended = shell.state() == QProcess::NotRunning && shell.exitCode() == 0;
            QFile log(home.filePath(u"panel.log"_s));
            const bool logs =
                isPanel && log.open(QIODevice::ReadOnly) && log.readAll().contains("VER");
            return shell.has("sim: ready " + own.toUtf8()) || ended || logs;
        };
        QTRY_VERIFY_WITH_TIMEOUT(works(), LongMs);
        QCOMPARE(shell.errors(), QByteArray());
        if (shell.state() != QProcess::NotRunning) {
            ::kill(-pid_t(shell.processId()), SIGTERM);
            QVERIFY(shell.ends());
        }
    }

    void help_has_the_options_and_examples()
    {
        Program program(QString::fromUtf8(QN740_SIM), {u"--help"_s});
        QVERIFY(program.ends());
        QCOMPARE(program.exitCode(), 0);
        for (const char* text : {"--dir", "--menu", "--check", "--strict", "--format", "--export",
                 "--trace", "--no-menus", "Examples;", "QN740_DEV=", "SK:Some Menu:", "D1:RATE:",
                 "sim: seed N", "trace: SECONDS", "refused: REASON", "up to 32 at once"}) {
            QVERIFY2(program.output().contains(text), text);
        }
    }

    void options_that_cannot_be_used_are_refused_with_the_reason_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("reason");
        QTest::newRow("delay") << QStringList{u"--delay"_s, u"soon"_s}
                               << QByteArray(
                                      "delay needs a time in milliseconds from 0 to 600000, and "
                                      "may have \":PATTERN\" behind it");
        QTest::newRow("pattern") << QStringList{u"--refuse="_s}
                                 << QByteArray("refuse needs a pattern, as R1:FREQ:*");
        QTest::newRow("watch") << QStringList{u"--watch"_s}
                               << QByteArray("--watch goes with --menu");
        QTest::newRow("panel log") << QStringList{u"--panel-log"_s, u"/dev/null"_s}
                                   << QByteArray("/dev/null: is no named pipe");
    }

    void options_that_cannot_be_used_are_refused_with_the_reason()
    {
        QFETCH(QStringList, options);
        QFETCH(QByteArray, reason);
        Program program(QString::fromUtf8(QN740_SIM), options);
        QVERIFY(program.ends());
        QCOMPARE(program.exitCode(), 1);
        QCOMPARE(program.errors(), "qn740-sim: " + reason + '\n');
    }

    void an_unknown_argument_is_an_error_data()
    {
        QTest::addColumn<QString>("argument");
        QTest::newRow("option") << "--nonsense";
        QTest::newRow("plain") << "nonsense";
        QTest::newRow("card") << "--card=nonsense";
    }

    void an_unknown_argument_is_an_error()
    {
        QFETCH(QString, argument);
        Program program(QString::fromUtf8(QN740_SIM), {argument});
        QVERIFY(program.ends());
        QCOMPARE(program.exitCode(), 1);
        QVERIFY(program.errors().contains("nonsense"));
    }
};

QN740_TEST_MAIN(tst_Simulator)
#include "tst_Simulator.moc"
