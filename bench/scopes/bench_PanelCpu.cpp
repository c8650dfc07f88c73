// CPU time of the real panel beside the real simulated unit, whose three scope ports send at the
// full rate of their lines: with the menus shown, with the scopes page as three eye patterns, as
// three constellations, and with the menus again.
//
//   bench_PanelCpu [SECONDS]     length of each measurement, 30 by default
//
// The panel runs unchanged on Qt's offscreen platform. The operator's touches come through a
// socket, by Qt's plugin for remote touches. At the end a mode is chosen on the scopes page; that
// it arrives at the unit proves that the page was shown. Each line gives the figure, its ratio to
// the limit and how much of the lines' data was read.
#include "support/Program.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QPointF>
#include <QSize>
#include <QTemporaryDir>
#include <QTest>
#include <QUdpSocket>
#include <QtEndian>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int DefaultSeconds = 30;
constexpr double LimitPercent = 5.0; // Of a core, with the scopes page shown.
constexpr int SplashMs = 16000;      // The splash screen is shown for 15 seconds.
constexpr int SettleMs = 3000;
constexpr int TouchMs = 100;
constexpr int LineBytesPerSecond = 11520;
constexpr int Demodulators = 3;

// Where to touch the panel's window and the list of modes, as they are laid out.
constexpr QSizeF Window(800, 480);
constexpr QPointF ScopesButton(675, 455);
constexpr QPointF ModeButton1(132, 350);
constexpr QSizeF List(795, 478);
constexpr QPointF ChoiceOff(662, 110);

// As "SM" carries them.
constexpr int Constellation = 1;
constexpr int EyePattern = 2;

// A finger as TUIO 1.1 describes it: bundles of OSC messages in datagrams.
class Finger
{
public:
    explicit Finger(quint16 port)
        : m_port(port)
    {
    }

    // Touches a place in the focused window, whose size is needed to scale it.
    void touch(QPointF place, QSizeF window)
    {
        const auto x = static_cast<float>(place.x() / window.width());
        const auto y = static_cast<float>(place.y() / window.height());
        QByteArray set = message(",sifffff", "set");
        append(set, ++m_touches);
        for (const float value : {x, y, 0.0F, 0.0F, 0.0F}) {
            append(set, value);
        }
        QByteArray alive = message(",si", "alive");
        append(alive, m_touches);
        send({alive, set, frame()});
        QTest::qWait(TouchMs);
        send({message(",s", "alive"), frame()});
        QTest::qWait(SettleMs);
    }

private:
    static void appendText(QByteArray& bytes, const char* text)
    {
        bytes.append(text);
        bytes.append(4 - bytes.size() % 4, '\0');
    }

    template <class Number>
    static void append(QByteArray& bytes, Number number)
    {
        char big[sizeof number];
        qToBigEndian(number, big);
        bytes.append(big, sizeof number);
    }

    static QByteArray message(const char* types, const char* command)
    {
        QByteArray bytes;
        appendText(bytes, "/tuio/2Dcur");
        appendText(bytes, types);
        appendText(bytes, command);
        return bytes;
    }

    QByteArray frame()
    {
        QByteArray bytes = message(",si", "fseq");
        append(bytes, ++m_frames);
        return bytes;
    }

    void send(const QByteArrayList& messages)
    {
        QByteArray bundle("#bundle\0\0\0\0\0\0\0\0\1", 16); // now
        for (const QByteArray& message : messages) {
            append(bundle, static_cast<qint32>(message.size()));
            bundle += message;
        }
        m_socket.writeDatagram(bundle, QHostAddress::LocalHost, m_port);
    }

    QUdpSocket m_socket;
    quint16 m_port;
    qint32 m_touches = 0;
    qint32 m_frames = 0;
};

quint16 freePort()
{
    QUdpSocket socket;
    socket.bind(QHostAddress::LocalHost);
    return socket.localPort();
}

// Bytes that the program has read from lines, files and anything else.
double bytesRead(const Program& program)
{
    QFile file(u"/proc/%1/io"_s.arg(program.processId()));
    const bool open = file.open(QIODevice::ReadOnly);
    const QByteArray rchar = open ? file.readLine() : QByteArray();
    return rchar.mid(rchar.indexOf(' ')).trimmed().toDouble();
}

bool waitFor(Program& program, const QByteArray& line)
{
    const bool came = QTest::qWaitFor([&] { return program.has(line); }, Program::LongMs);
    if (!came) {
        std::fprintf(
            stderr, "\"%s\" did not come\n%s", line.constData(), program.output().constData());
    }
    return came;
}

// Returns whether all bytes of the three lines were read during the measurement.
bool measure(const char* what, Program& panel, int seconds)
{
    const double cpu = panel.cpuSeconds();
    const double bytes = bytesRead(panel);
    QTest::qWait(seconds * 1000);
    const double percent = (panel.cpuSeconds() - cpu) / seconds * 100.0;
    const double rate = (bytesRead(panel) - bytes) / seconds / (Demodulators * LineBytesPerSecond);
    std::printf(
        "%-32s %5.2f %% of a core over %d s: %.2f of the limit; %.0f %% of the lines read\n", what,
        percent, seconds, percent / LimitPercent, rate * 100.0);
    std::fflush(stdout);
    return rate > 0.9;
}

// Sets what the scopes show and what their ports send, as the unit does.
void setModes(Program& unit, int mode)
{
    for (int demodulator = 1; demodulator <= Demodulators; ++demodulator) {
        unit.write(u"SM,%1,%2\n"_s.arg(demodulator).arg(mode).toLatin1());
    }
    QTest::qWait(SettleMs);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int seconds = argc > 1 ? QByteArray(argv[1]).toInt() : DefaultSeconds;
    const QTemporaryDir work; // Has mode 0700, which the run-time directory needs.
    const QString devices = work.filePath(u"dev"_s);
    Program unit(QString::fromUtf8(QN740_SIM),
        {u"--dir"_s, devices, u"--no-menus"_s, u"--scope-mode"_s, u"2"_s});
    if (seconds <= 0 || !waitFor(unit, "sim: ready " + devices.toLatin1())) {
        return 1;
    }
    const quint16 port = freePort();
    Program panel(QString::fromUtf8(QN740_PANEL),
        {u"-platform"_s, u"offscreen:configfile="_s QN740_SCREEN, u"-plugin"_s,
            u"tuiotouch:udp=%1"_s.arg(port)},
        {u"QN740_DEV="_s + devices, u"XDG_RUNTIME_DIR="_s + work.path(),
            u"XDG_CONFIG_HOME="_s + work.path()});
    if (!waitFor(unit, "sim: panel opened ttyO1")) {
        return 1;
    }
    QTest::qWait(SplashMs);
    Finger finger(port);
    bool allRead = measure("menus shown", panel, seconds);
    finger.touch(ScopesButton, Window);
    setModes(unit, EyePattern);
    allRead &= measure("three eye patterns shown", panel, seconds);
    setModes(unit, Constellation);
    allRead &= measure("three constellations shown", panel, seconds);
    finger.touch(ScopesButton, Window);
    allRead &= measure("menus shown again", panel, seconds);
    finger.touch(ScopesButton, Window);
    finger.touch(ModeButton1, Window);
    finger.touch(ChoiceOff, List);
    if (!waitFor(unit, "panel: D1:DSDM:0")) {
        std::fprintf(stderr, "the scopes page was not shown: the figures are void\n");
        return 1;
    }
    if (!allRead) {
        std::fprintf(stderr, "the lines were not read at their full rate: the figures are void\n");
    }
    return allRead ? 0 : 1;
}
