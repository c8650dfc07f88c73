// These tests check the whole panel. The real program is seen and touched through a remote screen.
// It runs against the real simulated unit or a line that the test holds.
#include "app/ScreenSettings.h"
#include "app/StageMap.h"
#include "app/TouchTrial.h"
#include "support/Program.h"
#include "support/Pty.h"
#include "support/RfbClient.h"
#include "support/TestMain.h"

#include <QDir>
#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongMs = 40000;
const QColor Green(0, 128, 0);
const QColor Grey(0x91, 0x91, 0x91);

// These points are in the first menu row of six keys, clear of the splash picture, to the left of
// and above the keys' texts.
constexpr QPoint FirstKey(23, 33);
constexpr QPoint SecondKey(152, 33);
constexpr QPoint FourthKey(411, 33);
constexpr QPoint SixthKey(670, 33);
constexpr QPoint OnSplash(180, 240);
constexpr QPoint EndOfTouchTrial(400, 395);

QString vnc(quint16 port)
{
    return u"vnc:size=800x480:port=%1"_s.arg(port);
}

} // namespace

class tst_Panel : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_parent = std::make_unique<QTemporaryDir>(); }

    void a_toggle_key_turns_green_when_the_unit_confirms_it()
    {
        const QString devices = m_parent->filePath(u"dev"_s);
        Program unit(QString::fromUtf8(QN740_SIM), {u"--dir"_s, devices, u"--trace"_s});
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: ready " + devices.toUtf8()), LongMs);
        const quint16 port = RfbClient::freePort();
        Program panel(QString::fromUtf8(QN740_PANEL), {u"-platform"_s, vnc(port)},
            {u"QN740_DEV="_s + devices});
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: menus sent"), LongMs);
        QVERIFY(unit.has("panel: 1.1.6.4"));

        RfbClient screen;
        QVERIFY2(screen.connectTo(port), qPrintable(screen.errorString()));
        // The start menu's first key leads to tuner channel 1, whose sixth key switches the
        // attenuator.
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(FirstKey), Grey, LongMs);
        QVERIFY(screen.click(FirstKey));
        QTRY_VERIFY_WITH_TIMEOUT(unit.output().contains("in \\x02SK,Tuner CH1\\x04\n"), LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(FourthKey), Green, LongMs);
        QCOMPARE(screen.picture().pixelColor(SixthKey), Grey);

        QVERIFY(screen.click(SixthKey));
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("panel: R1:ATTN:1"), LongMs);
        QVERIFY2(QRegularExpression(u"trace: \\d+\\.\\d{3} out \\\\x02R1:ATTN:1\\\\x04\n"_s)
                     .match(QString::fromUtf8(unit.output()))
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
        const QString devices = m_parent->filePath(u"dev"_s);
        Program unit(QString::fromUtf8(QN740_SIM), {u"--dir"_s, devices, u"--trace"_s});
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: ready " + devices.toUtf8()), LongMs);
        const quint16 port = RfbClient::freePort();
        Program panel(QString::fromUtf8(QN740_PANEL), {u"-platform"_s, vnc(port)},
            {u"QN740_DEV="_s + devices});
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: menus sent"), LongMs);
        RfbClient screen;
        QVERIFY2(screen.connectTo(port), qPrintable(screen.errorString()));
        // The start menu's second key leads to the second tuner channel.
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(SecondKey), Grey, LongMs);
        QVERIFY(screen.click(SecondKey));
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("panel: SK:Tuner CH2:1"), LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(unit.output().contains("in \\x02SK,Tuner CH2\\x04\n"), LongMs);
        // That menu fills the first row, whereas the start menu does not fill the second.
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(671, 110), Grey, LongMs);
    }

    void the_splash_picture_lies_over_the_panel_until_its_time_is_over()
    {
        const quint16 port = RfbClient::freePort();
        QElapsedTimer clock;
        clock.start();
        Program panel(QString::fromUtf8(QN740_PANEL), {u"-platform"_s, vnc(port)},
            {u"QN740_DEV="_s + m_parent->filePath(u"none"_s)});
        RfbClient screen;
        QVERIFY2(screen.connectTo(port), qPrintable(screen.errorString()));
        // The panel itself is visible, black except for its status bar.
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
        // The program notes when it is called, and whether its caller has loaded a platform plugin
        // by then.
        QFile program(m_parent->filePath(u"cpufreq-set"_s));
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\n"
                      "grep -q libqvnc /proc/$PPID/maps && on=screen || on=nothing\n"
                      "echo \"$(date +%s%3N) $on $*\" >> " +
            m_parent->filePath(u"calls"_s).toLocal8Bit() + "\n");
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        program.close();
        const quint16 port = RfbClient::freePort();
        Program panel(QString::fromUtf8(QN740_PANEL), {u"-platform"_s, vnc(port)},
            {u"QN740_DEV="_s + m_parent->filePath(u"none"_s),
                u"PATH="_s + m_parent->path() + u":"_s + qEnvironmentVariable("PATH")});
        const auto calls = [this] {
            QFile file(m_parent->filePath(u"calls"_s));
            const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
            return text.endsWith('\n') ? text.chopped(1).split('\n') : QByteArrayList();
        };
        QTRY_COMPARE_WITH_TIMEOUT(calls().size(), 2, LongMs);
        RfbClient screen;
        QVERIFY2(screen.connectTo(port), qPrintable(screen.errorString()));
        QTRY_COMPARE_WITH_TIMEOUT(screen.picture().pixelColor(300, 440), Grey, LongMs);
        QCOMPARE(panel.state(), QProcess::Running);
        // The first call comes before the application exists, the second one a second later.
        const QByteArrayList first = calls().at(0).split(' ');
        const QByteArrayList second = calls().at(1).split(' ');
        QCOMPARE(first.mid(1), (QByteArrayList{"nothing", "--governor", "performance"}));
        QCOMPARE(second.mid(1), (QByteArrayList{"screen", "--governor", "performance"}));
        const qint64 between = second.first().toLongLong() - first.first().toLongLong();
        QVERIFY2(between >= 900, qPrintable(QString::number(between)));
        QCOMPARE(calls().size(), 2);
    }

    void the_option_for_the_older_card_is_taken_to_the_letter_data()
    {
        QTest::addColumn<bool>("taken");
        QTest::newRow("-noK7150") << true;
        QTest::newRow("-nok7150") << false;
        QTest::newRow("-NOK7150") << false;
        QTest::newRow("--noK7150x") << false;
        QTest::newRow("noK7150") << false;
    }

    void the_option_for_the_older_card_is_taken_to_the_letter()
    {
        QFETCH(bool, taken);
        DeviceDirectory devices;
        Pty& unit = devices.add(u"ttyO1"_s);
        Pty& card = devices.add(u"ttyUSB11"_s);
        Program panel(QString::fromUtf8(QN740_PANEL), {QString::fromUtf8(QTest::currentDataTag())});
        if (!taken) {
            QVERIFY(panel.ends());
            QCOMPARE(panel.exitCode(), 2); // an unknown option
            return;
        }
        QVERIFY(unit.write(framed("VER")));
        QTRY_COMPARE_WITH_TIMEOUT(unit.received(), framed("1.1.6.4"), LongMs);
        // If a card is present from the start, the panel opens its line before the first answer.
        QStringList opened;
        const QDir files(u"/proc/%1/fd"_s.arg(panel.processId()));
        for (const QFileInfo& file : files.entryInfoList(QDir::System | QDir::Files)) {
            opened += file.symLinkTarget();
        }
        QVERIFY(opened.contains(unit.slavePath()));
        QCOMPARE(opened.contains(card.slavePath()), taken);
        if (taken) {
            QTRY_VERIFY_WITH_TIMEOUT(card.received().contains("[0190RNME000000]"), LongMs);
        } else {
            QCOMPARE(card.received(), QByteArray());
        }
    }

    void the_page_that_shows_touches_takes_them_where_its_crosses_are_seen_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<QByteArray>("scale");
        QTest::addColumn<int>("rotation");
        QTest::newRow("as it is") << QSize(800, 480) << QByteArray("") << 0;
        QTest::newRow("turned and scaled") << QSize(600, 1024) << QByteArray("fit") << 90;
        QTest::newRow("turned, in the middle") << QSize(480, 900) << QByteArray("1") << 270;
    }

    void the_page_that_shows_touches_takes_them_where_its_crosses_are_seen()
    {
        QFETCH(QSize, screen);
        QFETCH(QByteArray, scale);
        QFETCH(int, rotation);
        const quint16 port = RfbClient::freePort();
        Program panel(QString::fromUtf8(QN740_PANEL),
            {u"--show-touch"_s, u"-platform"_s,
                u"vnc:size=%1x%2:port=%3"_s.arg(screen.width()).arg(screen.height()).arg(port)},
            {u"QN740_SCALE="_s + QString::fromLatin1(scale), u"QN740_ROTATION=%1"_s.arg(rotation)});
        RfbClient finger;
        QVERIFY2(finger.connectTo(port), qPrintable(finger.errorString()));
        const double factor = ScreenSettings(scale, QByteArray::number(rotation)).scaleOn(screen);
        const StageMap map(screen, ScreenSettings::PanelSize * factor, rotation);
        const auto at = [&](QPoint point) {
            return map.toScreen(QRect(point * factor, QSize(1, 1))).topLeft();
        };
        constexpr QPoint ArmOfCross(0, 10);
        const QList<QPoint> crosses = TouchTrial().crosses();
        for (const QPoint cross : crosses) {
            const QPoint arm = at(cross + ArmOfCross);
            QTRY_COMPARE_WITH_TIMEOUT(finger.picture().pixelColor(arm), QColor(Qt::white), LongMs);
            QVERIFY(finger.click(at(cross)));
            QTRY_COMPARE_WITH_TIMEOUT(finger.picture().pixelColor(arm), QColor(Qt::green), LongMs);
        }
        QVERIFY(finger.click(at(EndOfTouchTrial)));
        QVERIFY(panel.ends());
        QCOMPARE(panel.exitStatus(), QProcess::NormalExit);
        QCOMPARE(panel.exitCode(), 0);
    }

#ifdef QN740_FAKE_FRAME_BUFFER
    void the_frame_buffer_shows_the_panel_turned_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<int>("rotation");
        QTest::newRow("0") << QSize(800, 480) << 0;
        QTest::newRow("0, larger") << QSize(1024, 600) << 0;
        QTest::newRow("90") << QSize(480, 800) << 90;
        QTest::newRow("180") << QSize(800, 480) << 180;
        QTest::newRow("270, larger") << QSize(600, 1024) << 270;
    }

    // On the platform of the unit, which draws into a file here: 16 bits for a pixel.
    void the_frame_buffer_shows_the_panel_turned()
    {
        QFETCH(QSize, screen);
        QFETCH(int, rotation);
        constexpr int Bytes = 2;
        QFile buffer(m_parent->filePath(u"fb"_s));
        QVERIFY(buffer.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
        QVERIFY(buffer.resize(qint64{screen.width()} * screen.height() * Bytes));
        DeviceDirectory devices;
        devices.add(u"ttyO1"_s);
        const Program panel(QString::fromUtf8(QN740_PANEL),
            {u"-platform"_s, u"linuxfb:nographicsmodeswitch:fb="_s + buffer.fileName()},
            {u"LD_PRELOAD="_s + QString::fromUtf8(QN740_FAKE_FRAME_BUFFER),
                u"FAKE_FRAME_BUFFER=%1x%2"_s.arg(screen.width()).arg(screen.height()),
                u"QN740_ROTATION=%1"_s.arg(rotation), u"QN740_SPLASH_MS=0"_s});
        const StageMap map(screen, {800, 480}, rotation);
        const auto at = [&](QPoint point) {
            const QPoint pixel = map.toScreen(QRect(point, QSize(1, 1))).topLeft();
            quint16 value = 0;
            buffer.seek((qint64{pixel.y()} * screen.width() + pixel.x()) * Bytes);
            buffer.read(reinterpret_cast<char*>(&value), Bytes);
            return int{value};
        };
        constexpr int Grey16 = (0x91 >> 3) << 11 | (0x91 >> 2) << 5 | 0x91 >> 3;
        QTRY_COMPARE_WITH_TIMEOUT(at({300, 440}), Grey16, LongMs); // the status bar
        QCOMPARE(at({300, 40}), 0);                                // the page
    }

    // As docs/integration.md says of Debian's Qt.
    void the_device_for_touches_is_libinputs_unless_evdev_is_asked_for_data()
    {
        QTest::addColumn<QString>("noLibinput");
        QTest::addColumn<bool>("evdev");
        QTest::newRow("as it is") << u"0"_s << false;
        QTest::newRow("evdev") << u"1"_s << true;
    }

    void the_device_for_touches_is_libinputs_unless_evdev_is_asked_for()
    {
        QFETCH(QString, noLibinput);
        QFile buffer(m_parent->filePath(u"fb"_s));
        QVERIFY(buffer.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
        QVERIFY(buffer.resize(qint64{800} * 480 * 2));
        Program panel(QString::fromUtf8(QN740_PANEL),
            {u"--show-touch"_s, u"-platform"_s,
                u"linuxfb:nographicsmodeswitch:fb="_s + buffer.fileName()},
            {u"LD_PRELOAD="_s + QString::fromUtf8(QN740_FAKE_FRAME_BUFFER),
                u"FAKE_FRAME_BUFFER=800x480"_s, u"QT_QPA_FB_NO_LIBINPUT="_s + noLibinput,
                u"QT_LOGGING_RULES=qt.qpa.input.debug=true"_s,
                u"QT_QPA_EVDEV_TOUCHSCREEN_PARAMETERS=/dev/input/touch-panel:rotate=180"_s});
        const auto isPainted = [&buffer] {
            buffer.seek(0);
            return buffer.readAll().contains("\xff\xff"); // white: a cross, a letter
        };
        QTRY_VERIFY_WITH_TIMEOUT(isPainted(), LongMs);
        QTEST(panel.errors().contains("evdevtouch: Using device /dev/input/touch-panel"), "evdev");
    }

    void the_self_test_judges_the_screen_as_it_is_scaled_and_turned_data()
    {
        QTest::addColumn<QString>("size");
        QTest::addColumn<QStringList>("environment");
        QTest::addColumn<QByteArray>("line"); // what stands before and after the device
        QTest::newRow("turned") << u"480x800"_s << QStringList{u"QN740_ROTATION=90"_s}
                                << QByteArray("ok    screen: %1 of 480 x 800, turned by 90\n");
        QTest::newRow("fit") << u"1000x600"_s << QStringList{u"QN740_SCALE=fit"_s}
                             << QByteArray("ok    screen: %1 of 1000 x 600, scale 1.25\n");
        QTest::newRow("neither") << u"640x480"_s << QStringList()
                                 << QByteArray("FAULT screen: %1 of 640 x 480; the panel needs "
                                               "800 x 480, see QN740_SCALE and QN740_ROTATION\n");
    }

    void the_self_test_judges_the_screen_as_it_is_scaled_and_turned()
    {
        QFETCH(QString, size);
        QFETCH(QStringList, environment);
        QFETCH(QByteArray, line);
        QFile buffer(m_parent->filePath(u"fb"_s));
        QVERIFY(buffer.open(QIODevice::WriteOnly));
        Program panel(QString::fromUtf8(QN740_PANEL),
            {u"--self-test"_s, u"-platform"_s, u"linuxfb:fb="_s + buffer.fileName()},
            environment +
                QStringList{u"LD_PRELOAD="_s + QString::fromUtf8(QN740_FAKE_FRAME_BUFFER),
                    u"FAKE_FRAME_BUFFER="_s + size});
        QVERIFY(panel.ends());
        line.replace("%1", buffer.fileName().toUtf8());
        QVERIFY2(panel.output().contains('\n' + line), panel.output());
    }
#endif

    void a_lost_line_does_not_keep_the_processor_busy()
    {
        DeviceDirectory devices;
        Pty& line = devices.add(u"ttyO1"_s);
        Program panel(QString::fromUtf8(QN740_PANEL), {});
        QVERIFY(line.write(framed("VER")));
        QTRY_COMPARE_WITH_TIMEOUT(line.received(), framed("1.1.6.4"), LongMs);
        line.close();
        QTRY_VERIFY_WITH_TIMEOUT(panel.errors().contains("ttyO1 was lost"), LongMs);
        const double before = panel.cpuSeconds();
        QTest::qWait(10000);
        const double used = panel.cpuSeconds() - before;
        qInfo("processor time in the 10 s after the line went: %.2f s", used);
        QVERIFY(used < 1.0); // a line left open would use all 10
        QCOMPARE(panel.state(), QProcess::Running);
        QCOMPARE(panel.errors().count("ttyO1 was lost"), 1);
    }

private:
    std::unique_ptr<QTemporaryDir> m_parent;
};

QN740_TEST_MAIN(tst_Panel)
#include "tst_Panel.moc"
