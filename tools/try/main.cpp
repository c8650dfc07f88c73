// qn740-try: runs scenarios against the panel, in place of the main unit and of the operator.
#include "app/Identity.h"
#include "tools/screen/OwnScreen.h"
#include "tools/try/Report.h"
#include "tools/try/Scenario.h"
#include "tools/try/ScenarioRun.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDirIterator>
#include <QFile>

#include <csignal>
#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int Failed = 1;
constexpr int Broken = 2;
constexpr int MsPerSecond = 1000;
constexpr int SecondsToUnwind = 10;

struct Options
{
    QStringList paths;
    RunSettings run;
    QString junit;
    bool list = false;
    bool steps = false;
    bool failFast = false;
};

// For a panel that does not come back into its event loop, where no timer of ours runs.
void stop(int /*signal*/)
{
    const char text[] =
        "\nqn740-try: the panel does not come back; the scenario named last hangs\n";
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text, sizeof text - 1);
    ::_exit(Failed);
}

QCommandLineOption option(const char* name, const char* text, const char* value = "")
{
    return {QString::fromLatin1(name), QString::fromLatin1(text), QString::fromLatin1(value)};
}

// Reads a time in seconds. Ends the program when it is none.
int milliseconds(const QCommandLineParser& parser, const QCommandLineOption& time, int otherwise)
{
    bool ok = true;
    const double seconds =
        parser.isSet(time) ? parser.value(time).toDouble(&ok) : double(otherwise) / MsPerSecond;
    if (!ok || seconds <= 0 || seconds > 3600) {
        std::fprintf(stderr, "--%s needs a time in seconds\n", qPrintable(time.names().first()));
        std::exit(Broken);
    }
    return qRound(seconds * MsPerSecond);
}

Options readOptions()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Runs scenarios against the panel. Exit status: 0 when all "_s
                                     u"passed, 1 when one failed, 2 when one cannot be read."_s);
    parser.addHelpOption();
    parser.addPositionalArgument(
        u"SCENARIO"_s, u"files, or folders with *.try"_s, u"SCENARIO..."_s);
    const auto out = option("out", "where pictures go, try-out by default", "DIR");
    const auto junit = option("junit", "writes the outcome for a CI server", "FILE");
    const auto update = option("update", "makes the pictures of \"compare\" anew");
    const auto failFast = option("fail-fast", "ends at the first scenario that fails");
    const auto verbose = option("verbose", "prints steps and messages as they happen");
    const auto list = option("list", "prints the scenarios and runs none");
    const auto steps = option("steps", "prints the steps that a scenario can have");
    const auto stepTime = option("step-time", "how long a step may wait, 5 by default", "SECONDS");
    const auto time = option("time", "how long a scenario may take, 60 by default", "SECONDS");
    parser.addOptions({out, junit, update, failFast, verbose, list, steps, stepTime, time});
    parser.process(*qApp);

    Options options;
    options.paths = parser.positionalArguments();
    options.run.output = QDir(parser.isSet(out) ? parser.value(out) : u"try-out"_s);
    options.run.update = parser.isSet(update);
    options.run.verbose = parser.isSet(verbose);
    options.run.stepMs = milliseconds(parser, stepTime, options.run.stepMs);
    options.run.scenarioMs = milliseconds(parser, time, options.run.scenarioMs);
    options.junit = parser.value(junit);
    options.list = parser.isSet(list);
    options.steps = parser.isSet(steps);
    options.failFast = parser.isSet(failFast);
    if (options.paths.isEmpty() && !options.steps) {
        parser.showHelp(Broken);
    }
    return options;
}

int printSteps()
{
    for (const StepWord& word : stepWords()) {
        std::printf("%s\n    %s\n", word.form, word.does);
    }
    return 0;
}

QStringList scenarioFiles(const QStringList& paths)
{
    QStringList files;
    for (const QString& path : paths) {
        if (!QFileInfo(path).isDir()) {
            files += path;
            continue;
        }
        const QDir folder(path);
        const QStringList names = folder.entryList({u"*.try"_s}, QDir::Files, QDir::Name);
        for (const QString& name : names) {
            files += folder.filePath(name);
        }
    }
    return files;
}

// Returns nothing, and says why, when one of the scenarios cannot be read.
QList<Scenario> readScenarios(const QStringList& files)
{
    QList<Scenario> scenarios;
    QStringList errors;
    for (const QString& file : files) {
        scenarios += Scenario::load(file);
        errors += scenarios.constLast().errors();
    }
    if (files.isEmpty()) {
        errors += u"no scenario"_s;
    }
    for (const QString& error : std::as_const(errors)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
    }
    return errors.isEmpty() ? scenarios : QList<Scenario>();
}

int printList(const QList<Scenario>& scenarios)
{
    for (const Scenario& scenario : scenarios) {
        std::printf("%s  %d steps\n", qPrintable(scenario.path()), int(scenario.steps().size()));
    }
    return 0;
}

QList<Outcome> runAll(const QList<Scenario>& scenarios, const Options& options)
{
    QList<Outcome> outcomes;
    for (const Scenario& scenario : scenarios) {
        if (options.run.verbose) {
            std::printf("%s\n", qPrintable(scenario.path()));
        }
        ::alarm(static_cast<unsigned>(options.run.scenarioMs / MsPerSecond + SecondsToUnwind));
        outcomes += ScenarioRun(scenario, options.run).run();
        ::alarm(0);
        std::printf("%s", qPrintable(report::text(outcomes.constLast())));
        std::fflush(stdout);
        if (options.failFast && !outcomes.constLast().passed) {
            break;
        }
    }
    return outcomes;
}

bool writeJunit(const QString& path, const QList<Outcome>& outcomes)
{
    QFile file(path);
    const QByteArray text = report::junit(outcomes);
    const bool ok = file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
    if (!ok) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(path), qPrintable(file.errorString()));
    }
    return ok;
}

} // namespace

int main(int argc, char** argv)
{
    const OwnScreen screen;
    QApplication application(argc, argv);
    identity::apply();
    identity::applyLook(application);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setCursorFlashTime(0); // a cursor that blinks would make every picture another
    std::signal(SIGALRM, stop);

    const Options options = readOptions();
    if (options.steps) {
        return printSteps();
    }
    const QList<Scenario> scenarios = readScenarios(scenarioFiles(options.paths));
    if (scenarios.isEmpty()) {
        return Broken;
    }
    if (options.list) {
        return printList(scenarios);
    }
    const QList<Outcome> outcomes = runAll(scenarios, options);
    std::printf("%s", qPrintable(report::summary(outcomes)));
    if (!options.junit.isEmpty() && !writeJunit(options.junit, outcomes)) {
        return Broken;
    }
    const bool passed = std::all_of(
        outcomes.begin(), outcomes.end(), [](const Outcome& outcome) { return outcome.passed; });
    return passed ? 0 : Failed;
}
