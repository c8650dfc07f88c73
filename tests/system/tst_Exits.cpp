// These tests check how the real panel ends, and what it says when it cannot start.
#include "app/CommandLine.h"
#include "support/Program.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSerialPort>
#include <QTemporaryDir>
#include <QThread>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongMs = 20000;
#ifdef QN740_SANITIZED
constexpr int EndMs = 5000;
#else
constexpr int EndMs = 1000; // how long an orderly end may take
#endif

const QStringList Screenless{u"QT_QPA_PLATFORM="_s, u"DISPLAY="_s, u"WAYLAND_DISPLAY="_s};

// The panel's command, with JOURNAL_STREAM as a service has it: device and inode of the journal's
// stream. Where another reads standard error, as of a shell on a terminal, it is that of a folder.
QString inJournal(const QString& arguments, bool journal)
{
    const QString stream = journal ? u"/proc/self/fd/9"_s : u"/"_s;
    return u"exec 9>&2; export JOURNAL_STREAM=$(stat -L -c %d:%i %1); exec %2 %3"_s.arg(
        stream, QString::fromUtf8(QN740_PANEL), arguments);
}

// Each open port has a file there, named after its path with "_" in place of "/".
QStringList lockFiles(const QString& directory)
{
    const QString name = QString(directory).replace(u'/', u'_');
    return QDir(u"/var/lock"_s).entryList({u"LCK..*"_s + name + u"_*"_s}, QDir::Files);
}

} // namespace

class tst_Exits : public QObject
{
    Q_OBJECT

private slots:
    void a_signal_ends_the_panel_with_status_0_and_frees_its_port_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<QByteArray>("before"); // what the main unit sends first
        const QByteArray editor = "IK,Frequency,1,R1:FREQ:,0 100,1,,Enter,5";
        QTest::newRow("SIGTERM, idle") << SIGTERM << QByteArray();
        QTest::newRow("SIGINT, idle") << SIGINT << QByteArray();
        QTest::newRow("SIGHUP, idle") << SIGHUP << QByteArray();
        QTest::newRow("SIGTERM, editor") << SIGTERM << editor;
        QTest::newRow("SIGTERM, slider") << SIGTERM << QByteArray("IK,Gain,3,R1:GAIN:,60 0,10,");
        QTest::newRow("SIGTERM, list") << SIGTERM << QByteArray("IK,Mode,2,R1:MODE:,,0,0 Off:1 On");
        QTest::newRow("SIGTERM, IPv4 pad") << SIGTERM << QByteArray("IK,Address,6,R1:ADDR:,,0,");
        QTest::newRow("SIGTERM, message box") << SIGTERM << QByteArray("DB,Antenna fault,1");
    }

    void a_signal_ends_the_panel_with_status_0_and_frees_its_port()
    {
        QFETCH(int, number);
        QFETCH(QByteArray, before);
        DeviceDirectory devices;
        Pty& line = devices.add(u"ttyO1"_s);
        Program panel(QString::fromUtf8(QN740_PANEL), {},
            {u"QN740_DEV="_s + devices.path(), u"QT_LOGGING_RULES=qn740.link.debug=true"_s});
        QVERIFY(answersPing(line));
        QCOMPARE(lockFiles(devices.path()).size(), 1);
        if (!before.isEmpty()) {
            QVERIFY(line.write(framed(before)));
            QTRY_VERIFY_WITH_TIMEOUT(panel.errors().contains("in \\x02" + before.left(3)), LongMs);
        }
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(::kill(static_cast<pid_t>(panel.processId()), number), 0);
        QVERIFY(panel.ends());
        QVERIFY2(clock.elapsed() < EndMs, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(panel.exitStatus(), QProcess::NormalExit);
        QCOMPARE(panel.exitCode(), 0);
        QCOMPARE(lockFiles(devices.path()), QStringList());
    }

    void a_signal_at_any_moment_of_the_start_ends_the_panel()
    {
        constexpr int LastMs = 60;
        constexpr int StepMs = 2;
        for (int delay = 0; delay <= LastMs; delay += StepMs) {
            Program panel(QString::fromUtf8(QN740_PANEL));
            QVERIFY(panel.waitForStarted());
            QThread::msleep(static_cast<unsigned long>(delay));
            QCOMPARE(::kill(static_cast<pid_t>(panel.processId()), SIGTERM), 0);
            QVERIFY2(panel.ends(), qPrintable(QString::number(delay)));
            // Before its first instruction nothing can catch the signal.
            if (panel.exitStatus() == QProcess::NormalExit) {
                QCOMPARE(panel.exitCode(), 0);
            }
        }
    }

    void a_signal_before_the_screen_is_opened_ends_with_status_0()
    {
        // The panel waits for this program before it does anything else.
        QTemporaryDir programs;
        QFile governor(programs.filePath(u"cpufreq-set"_s));
        QVERIFY(governor.open(QIODevice::WriteOnly));
        governor.write("#!/bin/sh\nkill -TERM $PPID\n");
        governor.close();
        QVERIFY(governor.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        Program panel(QString::fromUtf8(QN740_PANEL), {},
            {u"PATH="_s + programs.path() + u':' + qEnvironmentVariable("PATH")});
        QVERIFY(panel.ends());
        QCOMPARE(panel.exitStatus(), QProcess::NormalExit);
        QCOMPARE(panel.exitCode(), 0);
    }

    void a_second_panel_on_the_same_unit_says_so_and_ends_with_status_3()
    {
        DeviceDirectory devices;
        Pty& line = devices.add(u"ttyO1"_s);
        const QStringList environment{u"QN740_DEV="_s + devices.path()};
        Program first(QString::fromUtf8(QN740_PANEL), {}, environment);
        QVERIFY(answersPing(line));
        Program second(QString::fromUtf8(QN740_PANEL), {}, environment);
        QVERIFY(second.ends());
        QCOMPARE(second.exitStatus(), QProcess::NormalExit);
        QCOMPARE(second.exitCode(), 3);
        QVERIFY2(second.errors().contains(
                     "qn740-panel: another program has the main unit's line ttyO1 open\n"),
            second.errors());
        QVERIFY(answersPing(line)); // by the first one
    }

    void help_version_and_wrong_options_need_no_screen_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<QByteArray>("errors");
        QTest::newRow("version") << QStringList{u"--version"_s} << 0
                                 << QByteArray("qn740-panel 1.1.6.4\n") << QByteArray();
        QTest::newRow("help") << QStringList{u"--help"_s} << 0
                              << CommandLine({u"--help"_s}).text().toUtf8() + '\n'
                              << QByteArray();
        QTest::newRow("unknown") << QStringList{u"--fullscreen"_s} << 2 << QByteArray()
                                 << QByteArray("qn740-panel: unknown option --fullscreen; --help "
                                               "lists the options\n");
        QTest::newRow("wrong case") << QStringList{u"-nok7150"_s} << 2 << QByteArray()
                                    << QByteArray("qn740-panel: unknown option -nok7150; it is "
                                                  "spelled -noK7150\n");
    }

    void help_version_and_wrong_options_need_no_screen()
    {
        QFETCH(QStringList, arguments);
        Program panel(QString::fromUtf8(QN740_PANEL), arguments, Screenless);
        QVERIFY(panel.ends());
        QCOMPARE(panel.exitStatus(), QProcess::NormalExit);
        QTEST(panel.exitCode(), "status");
        QTEST(panel.output(), "output");
        QTEST(panel.errors(), "errors");
    }

    void without_a_screen_one_line_says_so_and_the_status_is_4_data()
    {
        QTest::addColumn<QString>("platform");
        QTest::newRow("no such plugin") << u"paper"_s;
        QTest::newRow("no such frame buffer") << u"linuxfb:fb=/dev/none"_s;
        QTest::newRow("no display") << u"xcb"_s;
    }

    void without_a_screen_one_line_says_so_and_the_status_is_4()
    {
        QFETCH(QString, platform);
        Program panel(QString::fromUtf8(QN740_PANEL), {u"-platform"_s, platform}, {u"DISPLAY="_s});
        QVERIFY(panel.ends());
        QCOMPARE(panel.exitStatus(), QProcess::NormalExit);
        QCOMPARE(panel.exitCode(), 4);
        QVERIFY2(panel.errors().startsWith("qn740-panel: no screen: "), panel.errors());
        QVERIFY2(panel.errors().count('\n') == 1, panel.errors());
        QVERIFY2(!panel.errors().contains("QStandardPaths"), panel.errors());
    }

    void what_ends_the_panel_is_an_error_in_the_journal_and_unmarked_elsewhere_data()
    {
        QTest::addColumn<bool>("journal"); // whether it reads standard error
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("status");
        const auto both = [](const char* name, const QString& arguments, const QByteArray& line,
                              int status) {
            QTest::addRow("%s, journal", name) << true << arguments << line << status;
            QTest::addRow("%s, terminal", name) << false << arguments << line << status;
        };
        both("unknown option", u"--fullscreen"_s, "qn740-panel: unknown option --fullscreen", 2);
        both("line is taken", {}, "qn740-panel: another program has the main unit's line", 3);
        both("no screen", u"-platform paper"_s, "qn740-panel: no screen: ", 4);
    }

    void what_ends_the_panel_is_an_error_in_the_journal_and_unmarked_elsewhere()
    {
        QFETCH(bool, journal);
        QFETCH(QString, arguments);
        QFETCH(QByteArray, line);
        DeviceDirectory devices;
        devices.add(u"ttyO1"_s);
        QSerialPort taken(devices.path() + u"/ttyO1"_s);
        QVERIFY(taken.open(QIODevice::ReadWrite));
        Program panel(u"/bin/sh"_s, {u"-c"_s, inJournal(arguments, journal)},
            {u"QN740_DEV="_s + devices.path()});
        QVERIFY(panel.ends());
        QTEST(panel.exitCode(), "status");
        const QByteArray marked = journal ? "<3>" + line : line;
        QVERIFY2(('\n' + panel.errors()).contains('\n' + marked), panel.errors());
    }

    void a_log_that_nobody_reads_does_not_end_the_panel()
    {
        DeviceDirectory devices;
        Pty& line = devices.add(u"ttyO1"_s);
        int ends[2] = {-1, -1};
        QCOMPARE(::pipe(ends), 0);
        Program panel(u"/bin/sh"_s,
            {u"-c"_s,
                u"exec %1 2>/proc/%2/fd/%3"_s.arg(QString::fromUtf8(QN740_PANEL))
                    .arg(::getpid())
                    .arg(ends[1])},
            {u"QN740_DEV="_s + devices.path(), u"QT_LOGGING_RULES=qn740.link.debug=true"_s});
        QVERIFY(answersPing(line));
        ::close(ends[0]);
        ::close(ends[1]);
        QVERIFY(answersPing(line)); // Each of them logs two lines.
        QVERIFY(answersPing(line));
        QCOMPARE(panel.state(), QProcess::Running);
    }

    void the_log_says_how_a_line_was_lost_data()
    {
        QTest::addColumn<bool>("deviceGone");
        QTest::addColumn<QByteArray>("reason");
        QTest::newRow("hang-up") << false << QByteArray("the other end has hung up");
        QTest::newRow("device gone") << true << QByteArray("the device is gone");
    }

    void the_log_says_how_a_line_was_lost()
    {
        QFETCH(bool, deviceGone);
        QFETCH(QByteArray, reason);
        DeviceDirectory devices;
        Pty& line = devices.add(u"ttyO1"_s);
        Program panel(QString::fromUtf8(QN740_PANEL), {}, {u"QN740_DEV="_s + devices.path()});
        QVERIFY(answersPing(line));
        if (deviceGone) {
            QVERIFY(QFile::remove(devices.path() + u"/ttyO1"_s));
        }
        line.close();
        QTRY_VERIFY_WITH_TIMEOUT(
            panel.errors().contains("ttyO1 was lost: " + reason + '\n'), LongMs);
    }

#ifndef QN740_SANITIZED // which reserve terabytes of address space
    void without_memory_one_line_says_so_and_the_status_is_5_data()
    {
        QTest::addColumn<bool>("journal");       // whether it reads standard error
        QTest::addColumn<QByteArray>("message"); // sent over and over
        const QByteArray box = framed("DB," + QByteArray(20'000, 'a') + ",1");
        QTest::newRow("a message without an end") << false << "\x02" + QByteArray(60'000, 'a');
        QTest::newRow("boxes") << false << box;
        QTest::newRow("boxes, journal") << true << box;
        QTest::newRow("keys") << false
                              << framed(
                                     "AK,M%1,K%1,Label,0,C:,,0," + QByteArray(500, 'a') + ",0,0,1");
    }

    void without_memory_one_line_says_so_and_the_status_is_5()
    {
        QFETCH(bool, journal);
        QFETCH(QByteArray, message);
        DeviceDirectory devices;
        Pty& line = devices.add(u"ttyO1"_s);
        Program panel(
            u"/bin/sh"_s, {u"-c"_s, inJournal({}, journal)}, {u"QN740_DEV="_s + devices.path()});
        QVERIFY(answersPing(line));
        const auto pid = static_cast<pid_t>(panel.processId());
        const rlim_t size = addressSpace(pid) + 4 * 1024 * 1024;
        const rlimit limit{size, size};
        QCOMPARE(::prlimit(pid, RLIMIT_AS, &limit, nullptr), 0);
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; clock.elapsed() < LongMs && panel.state() == QProcess::Running; ++i) {
            line.write(QByteArray(message).replace("%1", QByteArray::number(i)));
            QTest::qWait(1);
        }
        QVERIFY(panel.ends());
        QCOMPARE(panel.exitStatus(), QProcess::NormalExit);
        const QByteArray mark = journal ? "\n<3>" : "\n";
        QVERIFY2(('\n' + panel.errors()).endsWith(mark + "qn740-panel: out of memory\n"),
            panel.errors());
        QCOMPARE(panel.exitCode(), 5);
    }

    void with_too_little_memory_to_start_it_ends()
    {
        for (int megabytes = 16; megabytes <= 1024; megabytes *= 2) {
            Program panel(u"/bin/sh"_s,
                {u"-c"_s, u"ulimit -v $1; exec $2"_s, u"sh"_s, QString::number(megabytes * 1024),
                    QString::fromUtf8(QN740_PANEL)});
            const bool ended =
                QTest::qWaitFor([&panel] { return panel.state() == QProcess::NotRunning; }, 2000);
            if (!ended) { // it runs, and can be ended
                ::kill(static_cast<pid_t>(panel.processId()), SIGTERM);
                QVERIFY(panel.ends());
                QCOMPARE(panel.exitCode(), 0);
                return;
            }
            QCOMPARE(panel.exitStatus(), QProcess::NormalExit);
            QVERIFY(panel.exitCode() != 0);
            QVERIFY(!panel.errors().isEmpty());
        }
        QFAIL("it starts with no size");
    }

private:
    // Returns how many bytes of addresses a process uses.
    static rlim_t addressSpace(pid_t pid)
    {
        QFile file(u"/proc/%1/statm"_s.arg(pid));
        if (!file.open(QIODevice::ReadOnly)) {
            return 0;
        }
        return file.readAll().split(' ').value(0).toULongLong() *
            static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
    }
#endif

private:
    static bool answersPing(Pty& line)
    {
        line.takeReceived();
        return line.write(framed("PING")) &&
            QTest::qWaitFor([&line] { return line.received().contains("PONG"); }, LongMs);
    }
};

QN740_TEST_MAIN(tst_Exits)
#include "tst_Exits.moc"
