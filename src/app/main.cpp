#include "app/CommandLine.h"
#include "app/ErrorLine.h"
#include "app/Identity.h"
#include "app/MainWindow.h"
#include "app/NoScreen.h"
#include "app/OutOfMemory.h"
#include "app/PictureMemory.h"
#include "app/RemoteScreen.h"
#include "app/Rooms.h"
#include "app/ScreenSettings.h"
#include "app/SelfTest.h"
#include "app/ServiceNotifier.h"
#include "app/SetGov.h"
#include "app/Stage.h"
#include "app/TouchTrial.h"
#include "link/LinkControl.h"
#include "link/keySerial.h"
#include "menus/MenuMessages.h"
#include "wire/TerminationSignals.h"

#include <QApplication>
#include <QScreen>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <memory>

namespace {

constexpr int Width = 800;
constexpr int Height = 480;
constexpr int SecondGovernorMs = 1000;

int print(const CommandLine& commandLine)
{
    const bool refused = commandLine.action() == CommandLine::Action::Refuse;
    std::fprintf(refused ? stderr : stdout, "%s%s\n", refused ? errorLine::prefix() : "",
        qPrintable(commandLine.text()));
    return static_cast<int>(refused ? ExitStatus::WrongOption : ExitStatus::Ended);
}

// Before QApplication takes Qt's own options out.
CommandLine readCommandLine(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments += QString::fromLocal8Bit(argv[i]);
    }
    return CommandLine(arguments);
}

// For the service manager, which shows it beside the service's name.
QString status(const Rooms& rooms)
{
    const LinkState state = rooms.link->health();
    const QLatin1String link(state == LinkState::Alive ? "up"
            : state == LinkState::Silent               ? "silent"
                                                       : "closed");
    return QStringLiteral("menus %1, link %2").arg(rooms.menus->book.pages.size()).arg(link);
}

// Prints one line for each thing that the panel needs of the board.
int testBoard(char* program, const QString& platform)
{
    // It needs the fonts, not the screen, which another panel may be using.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int count = 1;
    const QGuiApplication application(count, &program);
    identity::apply();
    ExitStatus status = ExitStatus::Ended;
    for (const SelfTest::Line& line :
        SelfTest({}, platform, ScreenSettings::fromEnvironment()).run()) {
        std::printf("%s\n", qPrintable(SelfTest::print(line)));
        if (!line.ok) {
            status = ExitStatus::FaultFound;
        }
    }
    return static_cast<int>(status);
}

// Runs the event loop, unless a signal has ended the panel while it started: the splash screen
// handles events before there is a loop that could be told to end.
int runUntilEnded(const TerminationSignals& terminationSignals)
{
    return terminationSignals.wasRaised() ? static_cast<int>(ExitStatus::Ended)
                                          : QApplication::exec();
}

std::unique_ptr<Stage> openStage(const ScreenSettings& settings)
{
    for (const QString& warning : settings.warnings()) {
        qWarning("%s", qPrintable(warning));
    }
    return Stage::create(settings.rotation());
}

// In the middle of the screen, also where a window manager is expected and there is none.
void place(QWidget& window, const Stage* stage)
{
    if (stage != nullptr) {
        stage->place(&window);
    } else {
        const QRect screen = window.screen()->geometry();
        window.move(screen.center() - QRect(QPoint(), ScreenSettings::PanelSize).center());
    }
}

int showTouch(QApplication& application, const Stage* stage)
{
    const TerminationSignals terminationSignals;
    const auto end = [] { QCoreApplication::exit(static_cast<int>(ExitStatus::Ended)); };
    QObject::connect(&terminationSignals, &TerminationSignals::terminate, &application, end);
    identity::applyLook(application);
    TouchTrial page;
    QObject::connect(&page, &TouchTrial::ended, &application, end);
    place(page, stage);
    page.show();
    return runUntilEnded(terminationSignals);
}

int run(QApplication& application, SetGov& governor, const Stage* stage)
{
    const TerminationSignals terminationSignals;
    // Not quit(): that asks the window, which refuses to be closed.
    QObject::connect(&terminationSignals, &TerminationSignals::terminate, &application,
        [] { QCoreApplication::exit(static_cast<int>(ExitStatus::Ended)); });
    identity::apply();
    identity::applyLook(application);

    MainWindow window;
    if (window.rooms().link->serial()->isTaken()) {
        std::fprintf(stderr, "%sqn740-panel: another program has the main unit's line %s open\n",
            errorLine::prefix(), qPrintable(window.rooms().link->serial()->name()));
        return static_cast<int>(ExitStatus::LineIsTaken);
    }
    window.resize(Width, Height);
    ServiceNotifier notifier(&window, [&rooms = window.rooms()] { return status(rooms); });
    QObject::connect(
        window.rooms().link, &LinkControl::healthChanged, &notifier, &ServiceNotifier::tellStatus);
    const RemoteScreen remoteScreen(&window);
    QTimer::singleShot(SecondGovernorMs, &governor, &SetGov::changeGov);
    place(window, stage);
    window.show();
    return runUntilEnded(terminationSignals);
}

} // namespace

int main(int argc, char** argv)
{
    TerminationSignals::endAtOnce(); // no port is open yet
    pictureMemory::keepApart();
    outOfMemory::endTheProcess();
    // Logging to a reader that is gone must not end the panel.
    std::signal(SIGPIPE, SIG_IGN);
    const CommandLine commandLine = readCommandLine(argc, argv);
    const CommandLine::Action action = commandLine.action();
    if (action == CommandLine::Action::SelfTest) {
        return testBoard(argv[0], commandLine.platform());
    }
    if (action != CommandLine::Action::Run && action != CommandLine::Action::ShowTouch) {
        return print(commandLine);
    }
    // Quirk: the governor is set twice, because the board's own start-up may set another one while
    // the panel comes up. See "Quirks" in docs/architecture.md.
    SetGov governor;
    governor.changeGov();

    const ScreenSettings settings = ScreenSettings::fromEnvironment();
    std::unique_ptr<QApplication> application;
    {
        const noScreen::Guard guard;
        settings.apply(argc, argv);
        application = std::make_unique<QApplication>(argc, argv);
        if (QGuiApplication::primaryScreen() == nullptr) {
            noScreen::end();
        }
    }
    const std::unique_ptr<Stage> stage = openStage(settings);
    return action == CommandLine::Action::ShowTouch ? showTouch(*application, stage.get())
                                                    : run(*application, governor, stage.get());
}
