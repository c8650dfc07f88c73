// These tests check the link mode of the real panel from the main unit's end of the line alone.
// They press keys by the message that presses a key at once.
#include "support/Program.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QTemporaryDir>

#include <cerrno>
#include <csignal>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongMs = Program::LongMs;

const QList<QByteArray> LocalCommands{":DSDM", ":NFFT", ":SCBE", ":SRT0", ":B0LB", ":FCS0", ":MFS0",
    ":DC0E", ":AG0E", ":CF0E", ":MF0E", ":SEI0", ":HI0Z", ":BTEN", ":BTMO", ":BTTL", ":REST",
    ":BMUX"};

} // namespace

class tst_LinkModes : public QObject
{
    Q_OBJECT

    void start(const QStringList& environment = {})
    {
        m_line = &m_devices.add(QStringLiteral("ttyO1"));
        m_panel = std::make_unique<Program>(QString::fromUtf8(QN740_PANEL), QStringList{},
            QStringList{u"XDG_CONFIG_HOME="_s + m_home.path()} + environment);
        QCOMPARE(answer("VER"), framed("1.1.6.4"));
    }

    // Returns what the panel sends in reply to one message.
    QByteArray answer(const QByteArray& message)
    {
        const QByteArray pong = framed("PONG");
        m_line->takeReceived();
        if (!m_line->write(framed(message) + framed("PING")) ||
            !QTest::qWaitFor([&] { return m_line->received().endsWith(pong); }, LongMs)) {
            QTest::qFail("the panel does not answer", __FILE__, __LINE__);
        }
        QByteArray sent = m_line->takeReceived();
        sent.chop(pong.size());
        return sent;
    }

    // Presses a toggle key with this command and returns what the panel sends.
    QByteArray press(const QByteArray& command) { return answer("IK,Key,0," + command + ",,0,"); }

    // Returns what the panel has written to standard error, without what the screen has to say.
    QByteArray said()
    {
        QByteArray text;
        for (const QByteArray& line : m_panel->errors().split('\n')) {
            text += line.startsWith("This plugin does not support ") ? QByteArray() : line;
        }
        return text;
    }

    void killAtOnce()
    {
        ::kill(static_cast<pid_t>(m_panel->processId()), SIGKILL);
        QVERIFY(m_panel->ends());
        QCOMPARE(m_panel->exitStatus(), QProcess::CrashExit);
    }

private slots:
    void initTestCase() { start(); }

    void cleanupTestCase() { m_panel.reset(); }

    void every_prefix_is_widened_for_the_link_mode_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QByteArrayList>("sent"); // in modes 0, 1 and 2
        const auto row = [](const char* command, const char* diversity, const char* frequency) {
            QTest::newRow(command)
                << QByteArray(command) << QByteArrayList{command, diversity, frequency};
        };
        row("D1:BR:", "D1 D2 D3:BR:", "D1 D2 D3:BR:");
        row("D2:BR:", "D1 D2 D3:BR:", "D1 D2 D3:BR:");
        row("D3:BR:", "D1 D2 D3:BR:", "D1 D2 D3:BR:");
        row("R1:FREQ:", "R1 R2:FREQ:", "R1:FREQ:");
        row("R2:FREQ:", "R1 R2:FREQ:", "R2:FREQ:");
        row("R3:FREQ:", "R3:FREQ:", "R3:FREQ:");
        row("D4:BR:", "D4:BR:", "D4:BR:");
        row("D1 D2:BR:", "D1 D1 D2 D3:BR:", "D1 D1 D2 D3:BR:");
        row("d1:BR:", "d1:BR:", "d1:BR:");
        row("SYS:LOCK:", "SYS:LOCK:", "SYS:LOCK:");
        row("D1:A D1:B ", "D1 D2 D3:A D1 D2 D3:B ", "D1 D2 D3:A D1 D2 D3:B ");
        row("D3:A D1:B ", "D3:A D1 D2 D3:B ", "D3:A D1 D2 D3:B ");
        row("D3:A D2:B ", "D3:A D1 D2 D3:B ", "D3:A D1 D2 D3:B ");
        row("R2:A R1:B ", "R2:A R1 R2:B ", "R2:A R1:B ");
        row("D1:A R2:B ", "D1 D2 D3:A R1 R2:B ", "D1 D2 D3:A R2:B ");
        row("D1:dsdm ", "D1 D2 D3:dsdm ", "D1 D2 D3:dsdm ");
        row("D1DSDM:", "D1DSDM:", "D1DSDM:");
    }
    void every_prefix_is_widened_for_the_link_mode()
    {
        QFETCH(QByteArray, command);
        QFETCH(QByteArrayList, sent);
        for (int mode = 0; mode <= 2; ++mode) {
            QCOMPARE(answer("Slave," + QByteArray::number(mode)), QByteArray());
            QCOMPARE(press(command), framed(sent.at(mode) + '1'));
        }
    }

    void the_local_commands_stay_with_their_demodulator_data()
    {
        QTest::addColumn<QByteArray>("local");
        for (const QByteArray& local : LocalCommands) {
            QTest::newRow(local.constData()) << local;
        }
        QCOMPARE(LocalCommands.size(), 18);
    }
    void the_local_commands_stay_with_their_demodulator()
    {
        QFETCH(QByteArray, local);
        for (int mode = 0; mode <= 2; ++mode) {
            answer("Slave," + QByteArray::number(mode));
            for (const char* demodulator : {"D1", "D2", "D3"}) {
                const QByteArray command = demodulator + local + ':';
                QCOMPARE(press(command), framed(command + '1'));
                // The command may stand anywhere in the message.
                const QByteArray two = "D2:BR " + command;
                QCOMPARE(press(two), framed(two + '1'));
            }
            // Link mode 1 still extends a command for one receiver to both.
            QCOMPARE(press("D2" + local + " R1:"),
                framed("D2" + local + (mode == 1 ? " R1 R2:" : " R1:") + '1'));
        }
    }

    void the_mode_is_asked_for_over_the_line()
    {
        for (const char* mode : {"1", "2", "0", "2"}) {
            QCOMPARE(answer(QByteArray("Slave,") + mode), QByteArray());
            QCOMPARE(answer("Slave"), framed(QByteArray("Slave,") + mode));
        }
    }

    void the_mode_survives_a_kill_right_after_its_change()
    {
        for (const char* mode : {"1", "2", "0", "1"}) {
            // An empty answer to the change, followed by "PONG", shows that the panel has carried
            // it out.
            QCOMPARE(answer(QByteArray("Slave,") + mode), QByteArray());
            killAtOnce();
            start();
            QCOMPARE(answer("Slave"), framed(QByteArray("Slave,") + mode));
        }
    }

    void a_damaged_store_gives_mode_0_and_a_silent_start_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::newRow("half-written") << QByteArray("[General]\nSlave=");
        QTest::newRow("garbage") << QByteArray("\x01\xff[[=%\n\0\n=2", 11);
    }

    void a_damaged_store_gives_mode_0_and_a_silent_start()
    {
        QFETCH(QByteArray, contents);
        QFile store(m_home.filePath(u"TORVA/QN740KB.conf"_s));
        killAtOnce();
        QVERIFY(store.open(QIODevice::WriteOnly));
        QCOMPARE(store.write(contents), contents.size());
        store.close();
        start();
        QCOMPARE(answer("Slave"), framed("Slave,0"));
        QCOMPARE(said(), QByteArray());
        QCOMPARE(answer("Slave,2"), QByteArray());
        killAtOnce();
        start();
        QCOMPARE(answer("Slave"), framed("Slave,2"));
    }

#ifdef QN740_FILE_CALL_FAULTS
    void a_store_that_cannot_be_written_does_not_disturb_the_panel_data()
    {
        QTest::addColumn<int>("error");
        QTest::newRow("disk full") << ENOSPC;
        QTest::newRow("read-only") << EROFS;
    }

    void a_store_that_cannot_be_written_does_not_disturb_the_panel()
    {
        QFETCH(int, error);
        QCOMPARE(answer("Slave,1"), QByteArray());
        killAtOnce();
        start({u"LD_PRELOAD="_s + QString::fromUtf8(QN740_FILE_CALL_FAULTS),
            u"FAULT_PATH=QN740KB.conf.new"_s, u"FAULT_AT=0"_s, u"FAULT_LOG=/dev/null"_s,
            u"FAULT_HOW="_s + QString::number(error)});
        QCOMPARE(answer("Slave"), framed("Slave,1"));
        for (const char* mode : {"2", "0", "2"}) {
            QCOMPARE(answer(QByteArray("Slave,") + mode), QByteArray());
            QCOMPARE(answer("Slave"), framed(QByteArray("Slave,") + mode));
        }
        QCOMPARE(said(), QByteArray());
        killAtOnce();
        start();
        QCOMPARE(answer("Slave"), framed("Slave,1"));
    }
#endif

private:
    QTemporaryDir m_home;
    DeviceDirectory m_devices;
    Pty* m_line = nullptr;
    std::unique_ptr<Program> m_panel;
};

QN740_TEST_MAIN(tst_LinkModes)
#include "tst_LinkModes.moc"
