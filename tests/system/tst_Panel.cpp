// The whole panel: the real program, seen and touched through a remote screen, against the real
// simulated unit or a line that the test holds.
#include "support/Program.h"
#include "support/Pty.h"
#include "support/RfbClient.h"
#include "support/TestMain.h"

#include <QElapsedTimer>

namespace {

constexpr int LongMs = 40000;
const QColor Green(0, 128, 0);
const QColor Grey(0x91, 0x91, 0x91);

// In the first menu row of six keys, clear of the splash picture, left above the keys' texts.
constexpr QPoint FirstKey(23, 33);
constexpr QPoint SecondKey(152, 33);
constexpr QPoint FourthKey(411, 33);
constexpr QPoint SixthKey(670, 33);
constexpr QPoint OnSplash(180, 240);

QString vnc(quint16 port)
{
    return QString("vnc:size=800x480:port=%1").arg(port);
}

} // namespace

class tst_Panel : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_parent = std::make_unique<QTemporaryDir>(); }

    void a_toggle_key_goes_to_the_unit_and_back_and_turns_green()
    {
        const QString devices = m_parent->filePath("dev");
        Program unit(QN740_SIM, {"--dir", devices, "--trace"});
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: ready " + devices.toUtf8()), LongMs);
        const quint16 port = RfbClient::freePort();
        Program panel(QN740_PANEL, {"-platform", vnc(port)}, {"QN740_DEV=" + devices});
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: menus sent"), LongMs);
        QVERIFY(unit.has("panel: 1.1.6.4"));

        RfbClient screen;
        QVERIFY2(screen.connectTo(port), qPrintable(screen.errorString()));
        // the start menu's first key leads to tuner channel 1, whose sixth switches the attenuator
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(FirstKey), Grey, LongMs);
        QVERIFY(screen.click(FirstKey));
        QTRY_VERIFY_WITH_TIMEOUT(unit.output().contains("in \\x02SK,Tuner CH1\\x04\n"), LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(FourthKey), Green, LongMs);
        QCOMPARE(screen.picture().pixelColor(SixthKey), Grey);

        QVERIFY(screen.click(SixthKey));
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("panel: R1:ATTN:1"), LongMs);
        QVERIFY2(QRegularExpression("trace: \\d+\\.\\d{3} out \\\\x02R1:ATTN:1\\\\x04\n")
                     .match(unit.output())
                     .hasMatch(),
            unit.output());
        QTRY_VERIFY_WITH_TIMEOUT(
            unit.output().contains(" in \\x02CV,Tuner CH1,atten,0,1\\x04\n"), LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(SixthKey), Green, LongMs);

        QVERIFY(screen.click(SixthKey));
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("panel: R1:ATTN:0"), LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(SixthKey), Grey, LongMs);
    }

    void a_key_opens_the_menu_that_it_names()
    {
        const QString devices = m_parent->filePath("dev");
        Program unit(QN740_SIM, {"--dir", devices, "--trace"});
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: ready " + devices.toUtf8()), LongMs);
        const quint16 port = RfbClient::freePort();
        Program panel(QN740_PANEL, {"-platform", vnc(port)}, {"QN740_DEV=" + devices});
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: menus sent"), LongMs);
        RfbClient screen;
        QVERIFY2(screen.connectTo(port), qPrintable(screen.errorString()));
        // the start menu's second key stands for the second tuner channel
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(SecondKey), Grey, LongMs);
        QVERIFY(screen.click(SecondKey));
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("panel: SK:Tuner CH2:1"), LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(unit.output().contains("in \\x02SK,Tuner CH2\\x04\n"), LongMs);
        // that menu fills the first row, the start menu does not fill the second
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(671, 110), Grey, LongMs);
    }

    void the_splash_picture_lies_over_the_panel_until_its_time_is_over()
    {
        const quint16 port = RfbClient::freePort();
        QElapsedTimer clock;
        clock.start();
        Program panel(
            QN740_PANEL, {"-platform", vnc(port)}, {"QN740_DEV=" + m_parent->filePath("none")});
        RfbClient screen;
        QVERIFY2(screen.connectTo(port), qPrintable(screen.errorString()));
        // the panel itself is there, black but for its status bar
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(300, 440), Grey, LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(OnSplash), QColor(Qt::white), 5000);
        QVERIFY(screen.click(OnSplash)); // closes nothing
        while (screen.picture().pixelColor(OnSplash) == QColor(Qt::white)) {
            QVERIFY(clock.elapsed() < LongMs);
        }
        QVERIFY2(clock.elapsed() >= 15000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(screen.picture().pixelColor(OnSplash), QColor(Qt::black));
    }

    void the_panel_comes_up_without_its_line_and_sets_the_governor_twice()
    {
        QFile program(m_parent->filePath("cpufreq-set"));
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.write(
            "#!/bin/sh\necho \"$@\" >> " + m_parent->filePath("calls").toLocal8Bit() + "\n");
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        program.close();
        const quint16 port = RfbClient::freePort();
        Program panel(QN740_PANEL, {"-platform", vnc(port)},
            {"QN740_DEV=" + m_parent->filePath("none"),
                "PATH=" + m_parent->path() + ":" + qEnvironmentVariable("PATH")});
        const auto calls = [this] {
            QFile file(m_parent->filePath("calls"));
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        const QByteArray call("--governor performance\n");
        QTRY_COMPARE_WITH_TIMEOUT(calls(), call + call, LongMs);
        RfbClient screen;
        QVERIFY2(screen.connectTo(port), qPrintable(screen.errorString()));
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(300, 440), Grey, LongMs);
        QCOMPARE(panel.state(), QProcess::Running);
    }

    void a_line_whose_other_end_goes_burns_no_core()
    {
        DeviceDirectory devices;
        Pty& line = devices.add("ttyO1");
        Program panel(QN740_PANEL, {});
        QVERIFY(line.write(framed("VER")));
        QTRY_COMPARE_WITH_TIMEOUT(line.received(), framed("1.1.6.4"), LongMs);
        line.close();
        QTRY_VERIFY_WITH_TIMEOUT(panel.errors().contains("ttyO1 was lost"), LongMs);
        const double before = panel.cpuSeconds();
        QTest::qWait(10000);
        const double used = panel.cpuSeconds() - before;
        qInfo("processor time in the 10 s after the line went: %.2f s", used);
        QVERIFY(used < 1.0); // a line left open takes all 10
        QCOMPARE(panel.state(), QProcess::Running);
        QCOMPARE(panel.errors().count("ttyO1 was lost"), 1);
    }

private:
    std::unique_ptr<QTemporaryDir> m_parent;
};

QN740_TEST_MAIN(tst_Panel)
#include "tst_Panel.moc"
