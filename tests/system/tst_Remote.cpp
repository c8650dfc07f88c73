// These tests look at the real panel through the real qn740-remote with three real VNC viewers:
// TigerVNC's under Xvfb, gvnccapture and vncsnapshot. The panel runs on Qt's VNC platform, whose
// own picture says what is right.
#include "support/Program.h"
#include "support/Pty.h"
#include "support/RfbClient.h"
#include "support/TestMain.h"
#include "tools/remote/NoPanelSign.h"
#include "tools/remote/VncScreen.h"
#include "wire/LocalPeer.h"
#include "wire/LocalSocket.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtEndian>

#include <array>
#include <csignal>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int LongMs = 20000;
constexpr QPoint Linking(451, 455);

// "secret12" as viewers keep it in a file: enciphered with the key that all of them have.
const QByteArray PasswordForViewers = QByteArray::fromHex("24b5ae4ce15503c6");

// What a screen that Xvfb keeps in a file shows (the form of xwd).
QImage screenOf(const QString& file)
{
    QFile dump(file);
    if (!dump.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray bytes = dump.readAll();
    const auto number = [&bytes](int at) {
        return static_cast<int>(qFromBigEndian<quint32>(bytes.constData() + qsizetype{4} * at));
    };
    const QSize size(number(4), number(5));
    const qsizetype head = number(0) + qsizetype{12} * number(19); // and the colours
    return QImage(reinterpret_cast<const uchar*>(bytes.constData()) + head, size.width(),
        size.height(), number(12), QImage::Format_RGB32)
        .copy();
}

// Where the picture lies on a larger one, which is near its corner; nothing when it does not.
std::optional<QPoint> find(const QImage& picture, const QImage& on)
{
    for (int y = 0; y <= 40 && !on.isNull(); ++y) {
        for (int x = 0; x <= 10; ++x) {
            if (on.copy(QRect(QPoint(x, y), picture.size())) == picture) {
                return QPoint(x, y);
            }
        }
    }
    return std::nullopt;
}

// The mean difference of two pictures, for each of the three colours of a pixel.
double difference(const QImage& a, const QImage& b)
{
    if (a.size() != b.size()) {
        return 255;
    }
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            sum +=
                qAbs(qRed(p) - qRed(q)) + qAbs(qGreen(p) - qGreen(q)) + qAbs(qBlue(p) - qBlue(q));
        }
    }
    return sum / (3.0 * a.width() * a.height());
}

} // namespace

class tst_Remote : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        for (const QString& viewer :
            {u"Xvfb"_s, u"xtigervncviewer"_s, u"xdotool"_s, u"gvnccapture"_s, u"vncsnapshot"_s}) {
            QVERIFY2(!QStandardPaths::findExecutable(viewer).isEmpty(),
                qPrintable(viewer + u" is missing; scripts/install test installs it"_s));
        }
        write(u"password"_s, "secret12\n", QFile::ReadOwner | QFile::WriteOwner);
        write(u"viewer"_s, PasswordForViewers, QFile::ReadOwner | QFile::WriteOwner);
    }
    void cleanup()
    {
        m_viewer.reset();
        m_xvfb.reset();
        m_remote.reset();
        m_glass.reset();
        m_panel.reset();
        m_devices.reset();
    }

    void it_says_what_is_wrong_and_does_not_start_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("says");
        write(u"open"_s, "secret12\n", QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
        write(u"group"_s, "secret12\n", QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
        write(u"short"_s, "12345\n", QFile::ReadOwner | QFile::WriteOwner);
        write(u"long"_s, "123456789\n", QFile::ReadOwner | QFile::WriteOwner);
        const auto with = [this](const QString& file) {
            return QStringList{u"--port"_s, u"5999"_s, u"--password-file"_s, path(file)};
        };
        QTest::newRow("no password file")
            << QStringList{} << 2 << QByteArray("--password-file is missing");
        QTest::newRow("an absent file") << with(u"absent"_s) << 1 << QByteArray("absent: No such");
        QTest::newRow("a file that others may read")
            << with(u"open"_s) << 1 << QByteArray("others may read or write it; chmod 600 helps");
        QTest::newRow("a file that the group may read")
            << with(u"group"_s) << 1 << QByteArray("others may read or write it");
        QTest::newRow("a folder") << with(u"."_s) << 1 << QByteArray("is a directory");
        QTest::newRow("five characters")
            << with(u"short"_s) << 1 << QByteArray("has 5 characters, not 6 to 8");
        QTest::newRow("nine characters")
            << with(u"long"_s) << 1 << QByteArray("has 9 characters, not 6 to 8");
        QTest::newRow("port 0") << QStringList{u"--port"_s, u"0"_s} << 2
                                << QByteArray("--port 0 is no port");
        QTest::newRow("port 65536")
            << QStringList{u"--port"_s, u"65536"_s} << 2 << QByteArray("--port 65536 is no port");
        QTest::newRow("an unknown option")
            << QStringList{u"--nonsense"_s} << 2 << QByteArray("nonsense");
        QTest::newRow("an argument")
            << with(u"password"_s) + QStringList{u"what"_s} << 2 << QByteArray("what is no option");
        QTest::newRow("version") << QStringList{u"--version"_s} << 0
                                 << QByteArray("qn740-remote 1");
        QTest::newRow("help") << QStringList{u"--help"_s} << 0 << QByteArray("--view-only");
    }
    void it_says_what_is_wrong_and_does_not_start()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QByteArray, says);
        Program remote(QString::fromUtf8(QN740_REMOTE), arguments);
        QVERIFY(remote.ends());
        QCOMPARE(remote.exitCode(), status);
        const QByteArray said = remote.output() + remote.errors();
        QVERIFY2(said.contains(says), said);
    }

    void only_this_computer_is_served_and_a_taken_port_is_said()
    {
        startRemote();
        for (const char* table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
            QFile file(QString::fromLatin1(table));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray port = QByteArray::number(m_port, 16).toUpper().rightJustified(4, '0');
            for (const QByteArray& line : file.readAll().split('\n')) {
                const QByteArray local = line.simplified().split(' ').value(1);
                if (local.endsWith(':' + port)) {
                    QCOMPARE(local, "0100007F:" + port); // 127.0.0.1
                }
            }
        }
        Program second(QString::fromUtf8(QN740_REMOTE), arguments());
        QVERIFY(second.ends());
        QCOMPARE(second.exitCode(), 1);
        QVERIFY2(second.errors().contains("is taken"), second.errors());
        m_remote->terminate();
        QVERIFY(m_remote->ends());
        QCOMPARE(m_remote->exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_remote->exitCode(), 0);
    }

    void five_wrong_passwords_shut_the_door_for_a_while()
    {
        startRemote();
        for (int k = 1; k <= VncScreen::MaxFailures; ++k) {
            QTcpSocket viewer;
            QCOMPARE(authenticate(viewer), QByteArray::fromHex("00000001")); // failed
        }
        QTcpSocket next;
        QVERIFY(authenticate(next).isEmpty());
        QVERIFY(m_remote->errors().contains("too many wrong passwords"));
    }

    void the_fifth_viewer_is_turned_away()
    {
        startRemote();
        std::array<QTcpSocket, VncScreen::MaxViewers + 1> viewers;
        for (QTcpSocket& viewer : viewers) {
            viewer.connectToHost(u"127.0.0.1"_s, m_port);
            QVERIFY(viewer.waitForConnected(LongMs));
            QTRY_VERIFY_WITH_TIMEOUT(viewer.bytesAvailable() == 12, LongMs); // the version
        }
        QTRY_COMPARE_WITH_TIMEOUT(viewers.back().state(), QTcpSocket::UnconnectedState, LongMs);
        QCOMPARE(viewers.front().state(), QTcpSocket::ConnectedState);
        QCOMPARE(viewers[VncScreen::MaxViewers - 1].state(), QTcpSocket::ConnectedState);
    }

    void three_viewers_show_the_glass_and_a_press_arrives()
    {
        startPanel();
        startRemote();
        const QImage glass = m_glass->picture();
        QCOMPARE(captured(), glass);
        const QImage snapshot = snapped();
        QVERIFY2(difference(snapshot, glass) < 1, "vncsnapshot"); // it writes JPEG

        startViewer();
        QTRY_VERIFY_WITH_TIMEOUT(find(glass, onScreen()), LongMs);
        press(Linking, *find(glass, onScreen()));
        QTRY_VERIFY_WITH_TIMEOUT(m_line->received().contains(framed("Slave,0")), LongMs);
        const QImage dialog = m_glass->picture();
        QVERIFY(dialog != glass);
        QTRY_VERIFY_WITH_TIMEOUT(find(dialog, onScreen()), LongMs);
        QCOMPARE(captured(), dialog); // a second viewer at the same time
    }

    void a_panel_that_is_turned_on_a_larger_screen_is_upright_and_alone_in_the_picture()
    {
        startPanel({u"QN740_ROTATION=90"_s}, QSize(600, 1024));
        startRemote();
        const auto upright = [this] {
            const QImage all = m_glass->picture().transformed(QTransform().rotate(-90));
            return all.copy(QRect(QPoint(112, 60), QSize(800, 480)));
        };
        const QImage menus = upright();
        QCOMPARE(menus.pixelColor(380, 474), QColor(0x91, 0x91, 0x91)); // the status bar
        QCOMPARE(captured(), menus);
        const int socket = localSocket::connectTo(path(u"socket"_s));
        LocalPeer finger(socket);
        finger.send(remoteProtocol::pointerMessage({Linking, true}));
        finger.send(remoteProtocol::pointerMessage({Linking, false}));
        QTRY_VERIFY_WITH_TIMEOUT(m_line->received().contains(framed("Slave,0")), LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(upright() != menus, LongMs);
        QCOMPARE(captured(), upright());
    }

    void an_enlarged_panel_is_seen_and_pressed_at_its_own_size()
    {
        startPanel({u"QN740_SCALE=1.25"_s}, QSize(1000, 600));
        startRemote();
        const auto reduced = [this] {
            return m_glass->picture().scaled(
                800, 480, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        };
        const QImage menus = reduced();
        QVERIFY(difference(captured(), menus) < 0.1);
        LocalPeer finger(localSocket::connectTo(path(u"socket"_s)));
        finger.send(remoteProtocol::pointerMessage({Linking, true}));
        finger.send(remoteProtocol::pointerMessage({Linking, false}));
        QTRY_VERIFY_WITH_TIMEOUT(m_line->received().contains(framed("Slave,0")), LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(difference(reduced(), menus) > 20, LongMs);
        // The edges of the dialog lie between two pixels of its own.
        QVERIFY(difference(captured(), reduced()) < 2);
    }

    void a_finger_is_said_again_while_its_viewer_answers_and_lifted_when_it_stalls()
    {
        m_port = RfbClient::freePort();
        VncScreen screen(m_port, "secret12", false);
        screen.setBeat(200ms);
        screen.showNoPanel();
        QList<remoteProtocol::Pointer> said;
        connect(&screen, &VncScreen::pointed, &screen,
            [&said](const remoteProtocol::Pointer& pointer) { said += pointer; });
        QImage picture(800, 480, QImage::Format_RGB32);
        picture.fill(Qt::black);
        drawNoPanelSign(reinterpret_cast<quint32*>(picture.bits()), picture.size());
        startViewer();
        QTRY_VERIFY_WITH_TIMEOUT(find(picture, onScreen()), LongMs);
        const QPoint corner = *find(picture, onScreen());
        constexpr QPoint First(100, 200);
        point(First, corner, u"mousedown"_s);
        // The picture does not change meanwhile.
        QTRY_VERIFY_WITH_TIMEOUT(said.size() > VncScreen::MaxQuietBeats + 2, LongMs);
        for (const remoteProtocol::Pointer& pointer : std::as_const(said)) {
            QCOMPARE(pointer.at, First);
            QVERIFY(pointer.down);
        }
        ::kill(static_cast<pid_t>(m_viewer->processId()), SIGSTOP);
        QTRY_VERIFY_WITH_TIMEOUT(!said.constLast().down, LongMs);
        QCOMPARE(said.constLast().at, QPoint(remoteProtocol::Beside, remoteProtocol::Beside));
        said.clear();
        ::kill(static_cast<pid_t>(m_viewer->processId()), SIGCONT);
        point(First + QPoint(5, 5), corner, u"mouseup"_s); // a move, which is no new press
        constexpr QPoint Second(300, 50);
        press(Second, corner);
        QTRY_COMPARE_WITH_TIMEOUT(said.size(), 2, LongMs);
        QVERIFY(said[0].down && !said[1].down);
        QCOMPARE(said[0].at, Second);
        QCOMPARE(said[1].at, Second);
    }

    void what_is_no_panel_is_not_shown_data()
    {
        QTest::addColumn<QByteArray>("says");
        QTest::addColumn<QImage>("shown");
        QImage noPanel(800, 480, QImage::Format_RGB32);
        noPanel.fill(Qt::black);
        drawNoPanelSign(reinterpret_cast<quint32*>(noPanel.bits()), noPanel.size());
        QImage black(800, 480, QImage::Format_RGB32);
        black.fill(Qt::black);
        const QByteArray hello = remoteProtocol::helloMessage({black.size(), false});
        const QByteArray end = remoteProtocol::endMessage();
        const quint32 pixels[] = {0xffff0000, 0xff00ff00};
        QByteArray beside;
        remoteProtocol::appendRectangle(
            beside, {799, 0, 2, 1}, reinterpret_cast<const uchar*>(pixels), 0);
        QByteArray inside;
        remoteProtocol::appendRectangle(
            inside, {798, 479, 2, 1}, reinterpret_cast<const uchar*>(pixels), 0);
        QTest::newRow("silent") << QByteArray() << noPanel;
        QTest::newRow("nonsense") << QByteArray("HTTP/1.1 400 Bad Request\r\n") << noPanel;
        QTest::newRow("a picture without a hello") << inside + end << noPanel;
        QTest::newRow("a part beside the picture") << hello + beside + end << black;
        black.setPixel(798, 479, pixels[0]);
        black.setPixel(799, 479, pixels[1]);
        QTest::newRow("two pixels") << hello + inside + end << black;
    }
    void what_is_no_panel_is_not_shown()
    {
        QFETCH(QByteArray, says);
        QFile::remove(path(u"socket"_s)); // of a panel that was killed
        QLocalServer panel;
        QVERIFY(panel.listen(path(u"socket"_s)));
        connect(&panel, &QLocalServer::newConnection, &panel,
            [&] { panel.nextPendingConnection()->write(says); });
        startRemote();
        QTEST(captured(), "shown");
    }

    void everybody_survives_the_death_of_each_party()
    {
        startPanel();
        startRemote();
        const QImage glass = m_glass->picture();
        startViewer();
        QTRY_VERIFY_WITH_TIMEOUT(find(glass, onScreen()), LongMs);
        const std::unique_ptr<Program> other = std::move(m_viewer); // stays, under the next one
        startViewer();
        QTRY_VERIFY_WITH_TIMEOUT(m_remote->has("remote: viewers: 2"), LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(windows() == 2, LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(find(glass, onScreen()), LongMs);
        // a viewer, with its finger down
        point(Linking, *find(glass, onScreen()), u"mousedown"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_glass->picture() != glass, LongMs);
        m_viewer->kill();
        QTRY_COMPARE_WITH_TIMEOUT(m_glass->picture(), glass, LongMs);
        QVERIFY(panelAnswers());
        QVERIFY(!m_line->received().contains("Slave")); // nothing was pressed
        QCOMPARE(captured(), glass);
        other->kill();
        QTRY_VERIFY_WITH_TIMEOUT(m_remote->has("remote: viewers: 0"), LongMs);
        // qn740-remote, while a viewer watches
        startViewer();
        QTRY_VERIFY_WITH_TIMEOUT(find(glass, onScreen()), LongMs);
        const QPoint corner = *find(glass, onScreen());
        point(Linking, corner, u"mouseup"_s); // of the viewer that was killed
        point(Linking, corner, u"mousedown"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_glass->picture() != glass, LongMs);
        // ... at first it stalls: the finger is lifted, and what it says afterwards presses nothing
        ::kill(static_cast<pid_t>(m_remote->processId()), SIGSTOP);
        QTRY_COMPARE_WITH_TIMEOUT(m_glass->picture(), glass, LongMs);
        ::kill(static_cast<pid_t>(m_remote->processId()), SIGCONT);
        point(Linking, corner, u"mouseup"_s);
        QCOMPARE(captured(), glass);
        QVERIFY(panelAnswers());
        QVERIFY(!m_line->received().contains("Slave"));
        m_remote->kill();
        QVERIFY(m_remote->ends());
        QVERIFY(panelAnswers());
        startRemote();
        QCOMPARE(captured(), glass);
        // the panel: another viewer sees that it is gone, and that it is back
        startViewer();
        QTRY_VERIFY_WITH_TIMEOUT(find(glass, onScreen()), LongMs);
        m_glass.reset();
        m_panel->kill();
        QVERIFY(m_panel->ends());
        QImage dimmed = glass.convertToFormat(QImage::Format_RGB32);
        drawNoPanelSign(reinterpret_cast<quint32*>(dimmed.bits()), dimmed.size());
        QTRY_VERIFY_WITH_TIMEOUT(find(dimmed, onScreen()), LongMs);
        QCOMPARE(captured(), dimmed);
        startPanel();
        QTRY_VERIFY_WITH_TIMEOUT(find(glass, onScreen()), LongMs);
        QCOMPARE(m_remote->state(), QProcess::Running);
    }

    void a_view_only_server_presses_nothing_and_a_wrong_password_shows_nothing()
    {
        startPanel();
        startRemote({u"--view-only"_s});
        const QImage glass = m_glass->picture();
        startViewer();
        QTRY_VERIFY_WITH_TIMEOUT(find(glass, onScreen()), LongMs);
        press(Linking, *find(glass, onScreen()));
        QCOMPARE(captured(), glass);
        QVERIFY(panelAnswers());
        QVERIFY(!m_line->received().contains("Slave"));
        QVERIFY(captured("wrong123").isNull());
    }

private:
    QString path(const QString& name) const { return m_home.filePath(name); }

    void write(const QString& name, const QByteArray& text, QFile::Permissions permissions)
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
        QVERIFY(file.setPermissions(permissions));
    }

    QStringList arguments() const
    {
        return {u"--socket"_s, path(u"socket"_s), u"--port"_s, QString::number(m_port),
            u"--password-file"_s, path(u"password"_s)};
    }

    // Gives a wrong password as a viewer does. Returns the outcome, nothing when it is not let in.
    QByteArray authenticate(QTcpSocket& viewer) const
    {
        const auto take = [&viewer](int count) {
            const bool isThere = QTest::qWaitFor(
                [&] {
                    return viewer.bytesAvailable() >= count ||
                        viewer.state() == QTcpSocket::UnconnectedState;
                },
                LongMs);
            return isThere ? viewer.read(count) : QByteArray();
        };
        viewer.connectToHost(u"127.0.0.1"_s, m_port);
        if (!viewer.waitForConnected(LongMs) || take(12).size() < 12) {
            return {};
        }
        viewer.write("RFB 003.008\n");
        take(take(1).toHex().toInt(nullptr, 16));
        viewer.write("\x02"); // by a password
        take(16);
        viewer.write(QByteArray(16, 'x'));
        return take(4);
    }

    void startPanel(const QStringList& more = {}, QSize screen = {800, 480})
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_line = &m_devices->add(u"ttyO1"_s);
        const quint16 port = RfbClient::freePort();
        m_panel = std::make_unique<Program>(QString::fromUtf8(QN740_PANEL), QStringList{},
            QStringList{u"QN740_DEV="_s + m_devices->path(), u"QN740_SPLASH_MS=0"_s,
                u"QN740_REMOTE_SOCKET="_s + path(u"socket"_s),
                u"QT_QPA_PLATFORM=vnc:size=%1x%2:port=%3"_s.arg(screen.width())
                    .arg(screen.height())
                    .arg(port)} +
                more);
        m_glass = std::make_unique<RfbClient>();
        QVERIFY2(m_glass->connectTo(port), qPrintable(m_glass->errorString()));
        QVERIFY(panelAnswers());
    }

    bool panelAnswers()
    {
        m_line->takeReceived();
        return m_line->write(framed("PING")) &&
            QTest::qWaitFor([this] { return m_line->received().contains(framed("PONG")); }, LongMs);
    }

    void startRemote(const QStringList& more = {})
    {
        m_port = RfbClient::freePort();
        m_remote = std::make_unique<Program>(QString::fromUtf8(QN740_REMOTE), arguments() + more);
        QTRY_VERIFY_WITH_TIMEOUT(
            m_remote->has("remote: ready on 127.0.0.1:" + QByteArray::number(m_port)), LongMs);
    }

    // TigerVNC's viewer on a screen of its own.
    void startViewer()
    {
        m_viewer.reset();
        if (m_xvfb == nullptr) {
            m_xvfb = std::make_unique<Program>(u"Xvfb"_s,
                QStringList{u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"820x540x24"_s,
                    u"-fbdir"_s, m_home.path(), u"-nolisten"_s, u"tcp"_s});
            QTRY_VERIFY_WITH_TIMEOUT(m_xvfb->output().endsWith('\n'), LongMs);
            m_display = u"DISPLAY=:"_s + QString::fromLatin1(m_xvfb->output().trimmed());
        }
        m_viewer = std::make_unique<Program>(u"xtigervncviewer"_s,
            QStringList{u"-PasswordFile="_s + path(u"viewer"_s), u"-AlertOnFatalError=0"_s,
                u"-ReconnectOnError=0"_s, u"-MenuKey="_s, u"-AutoSelect=0"_s,
                u"-PreferredEncoding=ZRLE"_s, u"127.0.0.1::%1"_s.arg(m_port)},
            QStringList{m_display});
    }

    QImage onScreen() const { return screenOf(path(u"Xvfb_screen0"_s)); }

    void point(QPoint at, QPoint corner, const QString& action)
    {
        const QPoint place = at + corner;
        Program finger(u"xdotool"_s,
            {u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), action,
                u"1"_s},
            {m_display});
        QVERIFY(finger.ends());
    }
    // How many viewers are on the screen.
    int windows() const
    {
        Program search(
            u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"QN740"_s}, {m_display});
        return search.ends() ? static_cast<int>(search.output().count('\n')) : 0;
    }
    void press(QPoint at, QPoint corner) { point(at, corner, u"click"_s); }

    // What gvnccapture gets; nothing when it gets nothing. It asks for the password on a terminal.
    QImage captured(const QByteArray& password = "secret12")
    {
        const QString file = path(u"captured.png"_s);
        QFile::remove(file);
        Program capture(u"script"_s,
            {u"-qec"_s, u"gvnccapture 127.0.0.1:%1 %2"_s.arg(m_port - 5900).arg(file),
                u"/dev/null"_s});
        const bool asked =
            QTest::qWaitFor([&capture] { return capture.output().contains("assword"); }, LongMs);
        // Not ends(): the panel may be one of this program.
        const auto ends = [&capture] { return capture.state() == QProcess::NotRunning; };
        bool ended = false;
        // It forgets what was typed before its terminal has stopped to echo.
        for (int attempt = 0; attempt < 4 && !ended; ++attempt) {
            capture.write(password + '\n');
            ended = QTest::qWaitFor(ends, LongMs / 4);
        }
        return asked && ended ? QImage(file).convertToFormat(QImage::Format_RGB32) : QImage();
    }

    QImage snapped()
    {
        const QString file = path(u"snapshot.jpg"_s);
        Program snapshot(u"vncsnapshot"_s,
            {u"-passwd"_s, path(u"viewer"_s), u"-nojpeg"_s, u"-quiet"_s, u"-nocursor"_s,
                u"127.0.0.1:%1"_s.arg(m_port - 5900), file});
        return snapshot.ends() ? QImage(file).convertToFormat(QImage::Format_RGB32) : QImage();
    }

    QTemporaryDir m_home;
    std::unique_ptr<DeviceDirectory> m_devices;
    Pty* m_line = nullptr;
    std::unique_ptr<Program> m_panel;
    std::unique_ptr<RfbClient> m_glass; // what the panel really shows
    std::unique_ptr<Program> m_remote;
    std::unique_ptr<Program> m_xvfb;
    std::unique_ptr<Program> m_viewer;
    QString m_display;
    quint16 m_port = 0;
};

QN740_TEST_MAIN(tst_Remote)
#include "tst_Remote.moc"
