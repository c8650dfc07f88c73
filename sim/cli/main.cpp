// qn740-sim: plays the unit for a panel, or checks or exports a menu file.
#include "sim/cli/Options.h"
#include "sim/cli/Printer.h"
#include "sim/cli/Simulation.h"
#include "sim/replay/Recording.h"
#include "sim/unit/MenuFile.h"
#include "wire/TerminationSignals.h"

#include <QCoreApplication>

#include <csignal>

namespace {

int fail(const QStringList& errors)
{
    for (const QString& error : errors) {
        Printer::error(error);
    }
    return 1;
}

MenuFile menusFor(const Options& options)
{
    if (options.noMenus) {
        return {};
    }
    return options.menu.isEmpty() ? MenuFile::builtIn() : MenuFile::load(options.menu);
}

int simulate(const Options& options)
{
    const TerminationSignals terminationSignals;
    QObject::connect(
        &terminationSignals, &TerminationSignals::terminate, qApp, &QCoreApplication::quit);
    Simulation simulation(options);
    if (!options.line.replay.isEmpty()) {
        const Recording recording = Recording::load(options.line.replay);
        return recording.fault().isEmpty()
            ? simulation.replay(recording)
            : fail({QLatin1String("qn740-sim: ") + recording.fault()});
    }
    const MenuFile menus = menusFor(options);
    return menus.errors().isEmpty() ? simulation.play(menus) : fail(menus.errors());
}

} // namespace

int main(int argc, char** argv)
{
    // Writing to a closed pipe must not end the program: it still has to remove its devices.
    std::signal(SIGPIPE, SIG_IGN);
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("qn740-sim"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QN740_VERSION));
    const Options options = Options::parse(application);
    if (!options.fault().isEmpty()) {
        return fail({QLatin1String("qn740-sim: ") + options.fault()});
    }
    return options.tools.isAsked() ? options.tools.run() : simulate(options);
}
