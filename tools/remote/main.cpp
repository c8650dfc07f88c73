// qn740-remote: shows the panel to VNC viewers of this computer.
#include "tools/remote/PanelConnection.h"
#include "tools/remote/Password.h"
#include "tools/remote/VncScreen.h"
#include "wire/TerminationSignals.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int Failed = 1;
constexpr int WrongOption = 2;
constexpr auto DefaultSocket = "/run/qn740/remote";
constexpr auto DefaultPort = "5900";
constexpr int MaxPort = 65535;

struct Options
{
    QString socket;
    QString passwordFile;
    quint16 port = 0;
    bool viewOnly = false;
};

void say(const QString& text)
{
    std::printf("remote: %s\n", qPrintable(text));
    std::fflush(stdout);
}

[[noreturn]] void fail(int status, const QString& text)
{
    std::fprintf(stderr, "qn740-remote: %s\n", qPrintable(text));
    std::exit(status);
}

QString environmentOr(const char* variable, const char* otherwise)
{
    const QString value = qEnvironmentVariable(variable);
    return value.isEmpty() ? QString::fromLatin1(otherwise) : value;
}

constexpr auto Description =
    R"(Shows the panel to VNC viewers, on 127.0.0.1 only. The panel has to run with
QN740_REMOTE_SOCKET, as the same user. Its picture is asked for only while a viewer
is connected; without a panel they see "NO PANEL". Exit status: 0 after SIGTERM,
SIGINT or SIGHUP; 1 a password file that is refused, or a port that is taken; 2 an
option that is wrong.)";

// Prints help or version and ends the program when that is asked for, or an option is unknown.
void parse(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QString::fromLatin1(Description));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    if (!parser.parse(QCoreApplication::arguments())) {
        fail(WrongOption, parser.errorText() + u" --help lists the options"_s);
    }
    if (parser.isSet(help)) {
        parser.showHelp();
    }
    if (parser.isSet(version)) {
        parser.showVersion();
    }
    if (!parser.positionalArguments().isEmpty()) {
        fail(WrongOption, u"%1 is no option"_s.arg(parser.positionalArguments().constFirst()));
    }
}

Options readOptions()
{
    const QCommandLineOption socket(u"socket"_s,
        u"the panel's socket; %1 when neither this nor QN740_REMOTE_SOCKET says otherwise"_s.arg(
            QLatin1String(DefaultSocket)),
        u"PATH"_s, environmentOr("QN740_REMOTE_SOCKET", DefaultSocket));
    const QCommandLineOption port(
        u"port"_s, u"TCP port, 5900 by default"_s, u"PORT"_s, QString::fromLatin1(DefaultPort));
    const QCommandLineOption passwordFile(u"password-file"_s,
        u"its first line is the password, 6 to 8 characters; only you may read it (mode 600)"_s,
        u"FILE"_s);
    const QCommandLineOption viewOnly(u"view-only"_s, u"viewers press nothing"_s);
    QCommandLineParser parser;
    parser.addOptions({socket, port, passwordFile, viewOnly});
    parse(parser);

    bool isNumber = false;
    const int number = parser.value(port).toInt(&isNumber);
    if (!isNumber || number < 1 || number > MaxPort) {
        fail(WrongOption, u"--port %1 is no port"_s.arg(parser.value(port)));
    }
    if (!parser.isSet(passwordFile)) {
        fail(WrongOption, u"--password-file is missing; --help lists the options"_s);
    }
    return {parser.value(socket), parser.value(passwordFile), static_cast<quint16>(number),
        parser.isSet(viewOnly)};
}

void connectThem(PanelConnection& panel, VncScreen& screen)
{
    QObject::connect(&screen, &VncScreen::viewersChanged, &panel, [&panel](int viewers) {
        say(u"viewers: %1"_s.arg(viewers));
        panel.watch(viewers > 0);
    });
    QObject::connect(&screen, &VncScreen::pointed, &panel, &PanelConnection::point);
    QObject::connect(
        &panel, &PanelConnection::up, &screen, [&screen](const remoteProtocol::Hello& hello) {
            say(hello.viewOnly ? u"the panel is there, to be looked at only"_s
                               : u"the panel is there"_s);
            screen.setSize(hello.size);
        });
    QObject::connect(&panel, &PanelConnection::down, &screen, [&screen] {
        say(u"no panel"_s);
        screen.showNoPanel();
    });
    QObject::connect(&panel, &PanelConnection::changed, &screen, &VncScreen::put);
    QObject::connect(&panel, &PanelConnection::whole, &screen, &VncScreen::flush);
}

} // namespace

int main(int argc, char** argv)
{
    std::signal(SIGPIPE, SIG_IGN);
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"qn740-remote"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QN740_VERSION));
    const Options options = readOptions();
    const Password password = Password::fromFile(options.passwordFile);
    if (!password.fault.isEmpty()) {
        fail(Failed, password.fault);
    }
    const TerminationSignals terminationSignals;
    QObject::connect(
        &terminationSignals, &TerminationSignals::terminate, &application, &QCoreApplication::quit);
    PanelConnection panel(options.socket);
    VncScreen screen(options.port, password.text, options.viewOnly);
    if (!screen.isListening()) {
        fail(Failed, u"port %1 is taken, or not for this user"_s.arg(options.port));
    }
    connectThem(panel, screen);
    say(u"ready on 127.0.0.1:%1"_s.arg(options.port));
    return QCoreApplication::exec();
}
