#include "app/Identity.h"
#include "app/SelfTest.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QDir>
#include <QSerialPort>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

void write(const QString& path, const QByteArray& bytes)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

} // namespace

class tst_SelfTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { identity::apply(); }

    void a_port_that_can_be_opened_is_all_right()
    {
        DeviceDirectory devices;
        Pty& line = devices.add(u"ttyO1"_s);
        const SelfTest::Line outcome = SelfTest({}, {}).checkPort(u"ttyO1"_s, true);
        QCOMPARE(SelfTest::print(outcome), u"ok    ttyO1: can be opened"_s);
        QCOMPARE(line.received(), QByteArray());
    }

    void a_port_that_is_absent_is_a_fault_only_when_the_panel_cannot_do_without_it()
    {
        const DeviceDirectory devices;
        const SelfTest test({}, {});
        QCOMPARE(SelfTest::print(test.checkPort(u"ttyO1"_s, true)),
            u"FAULT ttyO1: no %1/ttyO1; give the device this name by a udev rule"_s.arg(
                devices.path()));
        QVERIFY(test.checkPort(u"ttyUSB4"_s, false).ok);
    }

    void a_port_that_another_program_has_open_is_a_fault()
    {
        DeviceDirectory devices;
        devices.add(u"ttyO1"_s);
        QSerialPort first(devices.path() + u"/ttyO1"_s);
        QVERIFY(first.open(QIODevice::ReadWrite));
        const SelfTest::Line outcome = SelfTest({}, {}).checkPort(u"ttyO1"_s, true);
        QCOMPARE(
            SelfTest::print(outcome), u"FAULT ttyO1: another program has it open; end that one"_s);
    }

    void all_ports_of_the_panel_are_looked_at()
    {
        const DeviceDirectory devices;
        QStringList names;
        const QList<SelfTest::Line> lines = SelfTest({}, u"offscreen"_s).run();
        for (const SelfTest::Line& line : lines) {
            names += line.what;
        }
        QCOMPARE(names,
            QStringList({u"ttyO1"_s, u"ttyUSB1"_s, u"ttyUSB2"_s, u"ttyUSB3"_s, u"ttyUSB4"_s,
                u"ttyUSB11"_s, u"ttyUSB12"_s, u"ttyUSB13"_s, u"lock files"_s, u"fonts"_s,
                u"screen"_s, u"touchscreen"_s, u"settings"_s, u"governor"_s, u"user"_s}));
    }

    void a_missing_folder_for_lock_files_is_a_fault()
    {
        const QTemporaryDir directory;
        SelfTest::Places places;
        places.lockDirectory = directory.path();
        QVERIFY(SelfTest(places, {}).checkLocks().ok);
        places.lockDirectory = directory.filePath(u"none"_s);
        QCOMPARE(SelfTest::print(SelfTest(places, {}).checkLocks()),
            u"FAULT lock files: no folder %1; mount a tmpfs there"_s.arg(places.lockDirectory));
    }

    void the_font_of_the_panel_is_there() { QVERIFY(SelfTest::checkFonts().ok); }

    void the_screen_is_looked_for_where_the_platform_draws_data()
    {
        QTest::addColumn<QString>("platform");
        QTest::addColumn<QString>("line");
        QTest::newRow("no frame buffer")
            << u"linuxfb:fb=/dev/no-fb:tty=x"_s
            << u"FAULT screen: no frame buffer /dev/no-fb; see QT_QPA_PLATFORM"_s;
        QTest::newRow("no frame buffer at the usual place")
            << u"linuxfb"_s
            << u"FAULT screen: no frame buffer /dev/no-usual-fb; see QT_QPA_PLATFORM"_s;
        QTest::newRow("unknown platform")
            << QString()
            << u"FAULT screen: no frame buffer /dev/no-usual-fb; see QT_QPA_PLATFORM"_s;
        QTest::newRow("not a frame buffer")
            << u"linuxfb:fb=/dev/null"_s << u"FAULT screen: /dev/null is no frame buffer"_s;
        QTest::newRow("no card") << u"eglfs"_s << u"FAULT screen: no card in /dev/no-dri"_s;
        QTest::newRow("none needed")
            << u"vnc:port=5900"_s << u"ok    screen: vnc:port=5900 needs no device"_s;
    }

    void the_screen_is_looked_for_where_the_platform_draws()
    {
        QFETCH(QString, platform);
        SelfTest::Places places;
        places.frameBuffer = u"/dev/no-usual-fb"_s;
        places.cardDirectory = u"/dev/no-dri"_s;
        QTEST(SelfTest::print(SelfTest(places, platform).checkScreen()), "line");
    }

    void the_whole_panel_has_to_be_on_the_screen_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<QByteArray>("scale");
        QTest::addColumn<QByteArray>("rotation");
        QTest::addColumn<QString>("line");
        const auto row = [](const char* name, QSize screen, const char* scale, const char* rotation,
                             const QString& line) {
            QTest::newRow(name) << screen << QByteArray(scale) << QByteArray(rotation) << line;
        };
        row("the panel's size", {800, 480}, "", "", u"ok    screen: fb of 800 x 480"_s);
        row("larger", {1024, 600}, "", "", u"ok    screen: fb of 1024 x 600"_s);
        row("narrower", {799, 600}, "", "",
            u"FAULT screen: fb of 799 x 600; the panel needs 800 x 480, see QN740_SCALE and "
            "QN740_ROTATION"_s);
        row("lower", {1024, 479}, "", "",
            u"FAULT screen: fb of 1024 x 479; the panel needs 800 x 480, see QN740_SCALE and "
            "QN740_ROTATION"_s);
        row("upright and turned", {480, 800}, "", "90",
            u"ok    screen: fb of 480 x 800, turned by 90"_s);
        row("upright and not turned", {480, 800}, "", "",
            u"FAULT screen: fb of 480 x 800; the panel needs 800 x 480, see QN740_SCALE and "
            "QN740_ROTATION"_s);
        row("turned and not upright", {800, 480}, "", "270",
            u"FAULT screen: fb of 800 x 480, turned by 270; the panel needs 480 x 800, see "
            "QN740_SCALE and QN740_ROTATION"_s);
        row("upside down", {800, 480}, "", "180",
            u"ok    screen: fb of 800 x 480, turned by 180"_s);
        row("smaller, fit", {640, 480}, "fit", "",
            u"FAULT screen: fb of 640 x 480, scale 1; the panel needs 800 x 480, see "
            "QN740_SCALE and QN740_ROTATION"_s);
        row("larger and turned, fit", {600, 1024}, "fit", "270",
            u"ok    screen: fb of 600 x 1024, scale 1.25, turned by 270"_s);
        row("large enough for the scale", {1200, 720}, "1.5", "",
            u"ok    screen: fb of 1200 x 720, scale 1.5"_s);
        row("too small for the scale", {1024, 720}, "1.5", "",
            u"FAULT screen: fb of 1024 x 720, scale 1.5; the panel needs 1200 x 720, see "
            "QN740_SCALE and QN740_ROTATION"_s);
    }

    void the_whole_panel_has_to_be_on_the_screen()
    {
        QFETCH(QSize, screen);
        QFETCH(QByteArray, scale);
        QFETCH(QByteArray, rotation);
        const ScreenSettings settings(scale, rotation);
        QTEST(SelfTest::print(SelfTest::judgeScreen(u"fb"_s, screen, settings)), "line");
    }

    void a_value_that_the_panel_would_ignore_is_a_fault_of_the_screen()
    {
        QCOMPARE(SelfTest::print(SelfTest({}, u"offscreen"_s, {"huge", {}}).checkScreen()),
            u"FAULT screen: QN740_SCALE is ignored: \"huge\" is neither \"fit\" nor a number "
            "from 1 to 8"_s);
        QCOMPARE(SelfTest::print(SelfTest({}, u"offscreen"_s, {{}, "45"}).checkScreen()),
            u"FAULT screen: QN740_ROTATION is ignored: \"45\" is not 0, 90, 180 or 270"_s);
    }

    void a_board_without_a_touchscreen_is_told_to_load_its_driver()
    {
        const QTemporaryDir directory;
        SelfTest::Places places;
        places.inputDirectory = directory.path();
        // Looks like an event device by its name, and is none.
        QVERIFY(QFile::link(u"/dev/null"_s, directory.filePath(u"event0"_s)));
        QCOMPARE(SelfTest::print(SelfTest(places, {}).checkTouch()),
            u"FAULT touchscreen: none in %1; load its driver"_s.arg(directory.path()));
    }

    void settings_that_cannot_be_written_are_a_fault()
    {
        QVERIFY(SelfTest::checkSettings().ok);
        const QTemporaryDir directory;
        write(directory.filePath(u"file"_s), "in the way of the folder");
        QSettings::setPath(
            QSettings::NativeFormat, QSettings::UserScope, directory.filePath(u"file"_s));
        const SelfTest::Line outcome = SelfTest::checkSettings();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
            QString::fromLocal8Bit(qgetenv("XDG_CONFIG_HOME")));
        QVERIFY2(!outcome.ok, qPrintable(outcome.text));
    }

    void the_governor_has_to_be_performance_data()
    {
        QTest::addColumn<QByteArray>("governor");
        QTest::addColumn<QString>("line");
        QTest::newRow("fixed") << QByteArray()
                               << u"ok    governor: the frequency of this processor is fixed"_s;
        QTest::newRow("performance")
            << QByteArray("performance\n") << u"ok    governor: performance"_s;
        QTest::newRow("ondemand")
            << QByteArray("ondemand\n")
            << u"FAULT governor: ondemand, not performance; enable qn740-governor.service"_s;
    }

    void the_governor_has_to_be_performance()
    {
        QFETCH(QByteArray, governor);
        const QTemporaryDir directory;
        SelfTest::Places places;
        places.cpuDirectory = directory.path();
        if (!governor.isEmpty()) {
            write(directory.filePath(u"cpu0/cpufreq/scaling_governor"_s), governor);
        }
        QTEST(SelfTest::print(SelfTest(places, {}).checkGovernor()), "line");
    }

    void the_user_has_to_exist_and_be_in_the_groups_of_the_devices()
    {
        SelfTest::Places places;
        places.userName = u"nobody-of-this-name"_s;
        QCOMPARE(SelfTest::print(SelfTest(places, {}).checkUser()),
            u"FAULT user: no user nobody-of-this-name; run systemd-sysusers"_s);
        places.userName = u"daemon"_s; // every system has it, and it is in no group
        QCOMPARE(SelfTest::print(SelfTest(places, {}).checkUser()),
            u"FAULT user: daemon is not in dialout, input, video, tty; run systemd-sysusers"_s);
    }
};

QN740_TEST_MAIN(tst_SelfTest)
#include "tst_SelfTest.moc"
