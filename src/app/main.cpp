#include "app/CommandLine.h"
#include "app/Identity.h"
#include "app/MainWindow.h"
#include "app/NoScreen.h"
#include "app/OutOfMemory.h"
#include "app/Rooms.h"
#include "app/SetGov.h"
#include "link/LinkControl.h"
#include "link/keySerial.h"
#include "wire/TerminationSignals.h"

#include <QApplication>
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
    std::fprintf(refused ? stderr : stdout, "%s\n", qPrintable(commandLine.text()));
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

int run(QApplication& application, SetGov& governor)
{
    const TerminationSignals terminationSignals;
    // Not quit(): that asks the window, which refuses to be closed.
    QObject::connect(&terminationSignals, &TerminationSignals::terminate, &application,
        [] { QCoreApplication::exit(static_cast<int>(ExitStatus::Ended)); });
    identity::apply();
    identity::applyLook(application);

    MainWindow window;
    if (window.rooms().link->serial()->isTaken()) {
        std::fprintf(stderr, "qn740-panel: another program has the main unit's line %s open\n",
            qPrintable(window.rooms().link->serial()->name()));
        return static_cast<int>(ExitStatus::LineIsTaken);
    }
    window.resize(Width, Height);
    QTimer::singleShot(SecondGovernorMs, &governor, &SetGov::changeGov);
    window.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    outOfMemory::endTheProcess();
    // Logging to a reader that is gone must not end the panel.
    std::signal(SIGPIPE, SIG_IGN);
    const CommandLine commandLine = readCommandLine(argc, argv);
    if (commandLine.action() != CommandLine::Action::Run) {
        return print(commandLine);
    }
    // Quirk: the governor is set twice, because the board's own start-up may set another one while
    // the panel comes up. See "Quirks" in docs/architecture.md.
    SetGov governor;
    governor.changeGov();

    std::unique_ptr<QApplication> application;
    {
        const noScreen::Guard guard;
        application = std::make_unique<QApplication>(argc, argv);
        if (QGuiApplication::primaryScreen() == nullptr) {
            noScreen::end();
        }
    }
    return run(*application, governor);
}
