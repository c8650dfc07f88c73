#include "sim/InputLines.h"
#include "sim/LineOptions.h"
#include "sim/MainUnit.h"
#include "sim/MenuFile.h"
#include "sim/Printer.h"
#include "sim/PseudoTerminal.h"
#include "sim/RecordFile.h"
#include "sim/Replay.h"
#include "sim/ScopePort.h"
#include "sim/TerminationSignals.h"
#include "sim/UnitDevices.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <memory>
#include <unistd.h>

namespace {

constexpr auto Description =
    R"(Plays the QN740 unit for a front panel: makes a directory with the unit's serial
devices, waits until the panel has opened its line, asks for its version, sends
menus and answers the operator's keys as the unit would.

What it prints (standard output, one line each):
  sim: ready DIR            the devices are in DIR
  sim: panel opened ttyO1   and "closed", "menus sent"
  panel: BODY               a message from the panel, without STX and EOT
  panel (unframed): TEXT    what stood in no frame
  sim: N of M frames came back        at the end of a replay, and what did not

A menu file, and what is typed on standard input, has one message a line:
  AK,Menu,id,Label,1,R1:FREQ:,2200 2400,1,,2250.5,0,1
  # a comment              (blank lines are skipped too)
  wait 500                 (milliseconds)
"\xHH" stands for the byte HH, "\\" for a backslash. A key whose command is
"SK:Some Menu:" opens that menu.

The scope ports ttyUSB1 to ttyUSB3 send as the panel's "D1:DSDM:2" and the unit's
"SM,1,3" tell them: 0 nothing, 1 constellation, 2 eye pattern, 3 SDI records. A
signal is bpsk, qpsk, oqpsk, 8psk or 16qam, and behind it any of
  :snr=20 (dB)  :phase=3 (degrees rms)  :offset=0.001 (turns a symbol)
  :imbalance=1 (dB)  :skew=5 (degrees)  :clip=0.4  :level=0.5  :rolloff=0.35

A recording has one line for everything that goes over the line, with the time
in seconds and anything in front; other lines in the file are skipped:
  12.345 in \x02PING\x04
  12.346 out \x02PONG\x04
In a replay the answers to PING, VER, Slave and ST are waited for, one second
each at most; what the operator had pressed is not, and is no fault when nobody
presses it again.

Faults of what goes to the panel, each with a rate from 0 to 1:
%1
Examples:
  qn740-sim --dir /tmp/dev           then: QN740_DEV=/tmp/dev qn740-panel
  qn740-sim --menu my.menu           another set of menus
  qn740-sim --check my.menu          only say what is wrong with it
  echo 'DB,Antenna fault,1' | qn740-sim --dir /tmp/dev
  qn740-sim --no-menus --trace       type every message by hand, see both ways
  qn740-sim --record talk.log        keep what was said
  qn740-sim --replay talk.log        say it again, at its own pace
  QT_LOGGING_RULES=qn740.link.debug=true qn740-panel 2>panel.log
  qn740-sim --replay panel.log --fast
  qn740-sim --fault drop=0.01,junk=0.05 --fault burst=0.1 --seed 7
  qn740-sim --signal 16qam:snr=25:phase=2 --scope-fault loss,noise)";

const QString PanelLine = QStringLiteral("ttyO1");
const QString ScopeLine = QStringLiteral("ttyUSB%1");
constexpr int ScopePorts = 3;
// of Demod 1, 2 and 3 when nothing else is asked for
const QStringList DefaultSignals{
    QStringLiteral("qpsk"), QStringLiteral("8psk"), QStringLiteral("16qam:snr=25")};

struct Options
{
    QString directory;
    QString menu;
    QString check;
    bool noMenus = false;
    bool trace = false;
    QStringList signalTexts; // one a scope port; the last one goes for those behind it too
    QString scopeFaults;
    QString scopeMode;
    LineOptions line;
};

// What the scope ports are to send.
struct ScopePlan
{
    QList<SignalSettings> signalSettings;
    int faults = 0;
    int mode = ScopePort::Off;
    quint32 seed = 1;
    QString fault; // why it cannot be done; empty when it can
};

ScopePlan scopePlan(const Options& options)
{
    ScopePlan plan;
    const QStringList& texts = options.signalTexts.isEmpty() ? DefaultSignals : options.signalTexts;
    for (int port = 0; port < ScopePorts && plan.fault.isEmpty(); ++port) {
        const QString text = texts.value(port, texts.constLast());
        plan.signalSettings.append(SignalSettings::fromText(text, plan.fault));
    }
    plan.faults = ScopeFaults::fromText(options.scopeFaults);
    plan.seed = options.line.seed;
    bool modeIsNumber = false;
    plan.mode = options.scopeMode.toInt(&modeIsNumber);
    if (plan.faults < 0) {
        plan.fault = QStringLiteral("no fault of a scope port: \"%1\"").arg(options.scopeFaults);
    } else if (!modeIsNumber || plan.mode < ScopePort::Off || plan.mode > ScopePort::Sdi) {
        plan.fault = QStringLiteral("no mode of a scope port: \"%1\"").arg(options.scopeMode);
    }
    return plan;
}

// Ends the program itself at --help, --version and options that it does not know.
Options parseOptions(const QCoreApplication& application)
{
    const QCommandLineOption directory(QStringLiteral("dir"),
        QStringLiteral("Make the devices in DIR (default: a fresh directory; removed at the end)."),
        QStringLiteral("DIR"));
    const QCommandLineOption menu(QStringLiteral("menu"),
        QStringLiteral("Send the menus of FILE instead of the built-in ones."),
        QStringLiteral("FILE"));
    const QCommandLineOption check(QStringLiteral("check"),
        QStringLiteral("Only check the menu file FILE: exit status 0 when it is good, else 1."),
        QStringLiteral("FILE"));
    const QCommandLineOption noMenus(
        QStringLiteral("no-menus"), QStringLiteral("Send no menus, only what is typed."));
    const QCommandLineOption trace(
        QStringLiteral("trace"), QStringLiteral("Print every message both ways with its time."));
    const QCommandLineOption signal(QStringLiteral("signal"),
        QStringLiteral("The signal of the next scope port, from Demod 1 on; the last one given "
                       "goes for the others too."),
        QStringLiteral("SIGNAL"));
    const QCommandLineOption scopeFault(QStringLiteral("scope-fault"),
        QStringLiteral("Spoil what the scope ports send: index, loss, noise, silence, or several "
                       "of them with \",\" between."),
        QStringLiteral("FAULTS"));
    const QCommandLineOption scopeMode(QStringLiteral("scope-mode"),
        QStringLiteral("What the scope ports send before the panel asks, 0 to 3 (default: 0)."),
        QStringLiteral("MODE"), QStringLiteral("0"));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QString::fromLatin1(Description).arg(LineOptions::faultHelp()));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({directory, menu, check, noMenus, trace, signal, scopeFault, scopeMode});
    LineOptions::addTo(parser);
    parser.process(application);
    if (!parser.positionalArguments().isEmpty()) {
        Printer::error(QStringLiteral("qn740-sim: unexpected argument \"%1\"; see --help")
                           .arg(parser.positionalArguments().constFirst()));
        std::exit(1);
    }
    return {parser.value(directory), parser.value(menu), parser.value(check), parser.isSet(noMenus),
        parser.isSet(trace), parser.values(signal), parser.value(scopeFault),
        parser.value(scopeMode), LineOptions::from(parser)};
}

int fail(const QStringList& errors)
{
    for (const QString& error : errors) {
        Printer::error(error);
    }
    return 1;
}

int checkFile(const QString& path)
{
    const MenuFile file = MenuFile::load(path);
    if (!file.errors().isEmpty()) {
        return fail(file.errors());
    }
    std::printf("%s: %lld messages, no fault\n", qPrintable(path),
        static_cast<long long>(file.messageCount()));
    return 0;
}

MenuFile menusFor(const Options& options)
{
    if (options.noMenus) {
        return {};
    }
    return options.menu.isEmpty() ? MenuFile::builtIn() : MenuFile::load(options.menu);
}

void typeLine(MainUnit& unit, const QByteArray& text)
{
    const MenuFile::Line line = MenuFile::parseLine(text);
    if (!line.fault.isEmpty()) {
        Printer::error(QLatin1String("refused: ") + line.fault);
    } else if (line.step && !unit.type(*line.step)) {
        Printer::error(QStringLiteral("refused: too many messages are waiting to be sent"));
    }
}

// Prints and, if that was asked for, records what is said on the line.
void watch(PanelLink& link, PseudoTerminal& line, const Printer& printer, RecordFile* record)
{
    QObject::connect(&line, &PseudoTerminal::closed, &printer,
        [&printer] { printer.event(QLatin1String("panel closed ") + PanelLine); });
    QObject::connect(&link, &PanelLink::received, &printer, &Printer::fromPanel);
    QObject::connect(&link, &PanelLink::wrote, &printer, &Printer::toPanel);
    if (record != nullptr) {
        QObject::connect(&link, &PanelLink::received, record, &RecordFile::fromPanel);
        QObject::connect(&link, &PanelLink::wrote, record, &RecordFile::toPanel);
        QObject::connect(record, &RecordFile::failed, &printer,
            [](const QString& reason) { Printer::error(QLatin1String("qn740-sim: ") + reason); });
    }
}

void tellReady(const Options& options, const UnitDevices& devices, const Printer& printer)
{
    printer.event(QLatin1String("ready ") + devices.path());
    if (options.line.tellSeed) {
        printer.event(QLatin1String("seed ") + QString::number(options.line.seed));
    }
}

int tellScore(const ReplayScore& score, const Printer& printer)
{
    const QStringList lines = score.report();
    for (const QString& line : lines) {
        printer.event(line);
    }
    return score.isGood() ? 0 : 1;
}

// Out: whether all three scope ports are there; they live as long as the devices.
bool addScopePorts(UnitDevices& devices, const PanelLink& unit, const ScopePlan& plan)
{
    for (int port = 0; port < ScopePorts; ++port) {
        PseudoTerminal* line = devices.add(ScopeLine.arg(port + 1));
        if (line == nullptr) {
            return false;
        }
        auto* scope = new ScopePort(port + 1, *line, plan.signalSettings.at(port), plan.faults,
            plan.seed + static_cast<quint32>(port), line);
        scope->setMode(plan.mode);
        QObject::connect(&unit, &PanelLink::received, scope, &ScopePort::takeCommand);
        QObject::connect(&unit, &PanelLink::sent, scope, &ScopePort::takeMessage);
    }
    return true;
}

int play(const Options& options, const MenuFile& menus, const Recording& recording)
{
    const ScopePlan plan = scopePlan(options);
    if (!plan.fault.isEmpty()) {
        return fail({QLatin1String("qn740-sim: ") + plan.fault});
    }
    const TerminationSignals signals_;
    QObject::connect(&signals_, &TerminationSignals::terminate, qApp, &QCoreApplication::quit);
    std::unique_ptr<RecordFile> record;
    if (!options.line.record.isEmpty()) {
        record = std::make_unique<RecordFile>(options.line.record);
        if (!record->isOpen()) {
            return fail({QLatin1String("qn740-sim: ") + record->errorString()});
        }
    }
    UnitDevices devices(options.directory);
    PseudoTerminal* line = devices.isValid() ? devices.add(PanelLine) : nullptr;
    if (line == nullptr) {
        return fail({QLatin1String("qn740-sim: ") + devices.errorString()});
    }
    const Printer printer(options.trace);
    QObject::connect(line, &PseudoTerminal::opened, &printer,
        [&printer] { printer.event(QLatin1String("panel opened ") + PanelLine); });
    const LineFaults faults(options.line.faults, options.line.seed);
    if (!options.line.replay.isEmpty()) {
        Replay replay(*line, recording,
            options.line.fast ? Replay::Pace::Fast : Replay::Pace::Recorded, faults);
        if (!addScopePorts(devices, replay, plan)) {
            return fail({QLatin1String("qn740-sim: ") + devices.errorString()});
        }
        watch(replay, *line, printer, record.get());
        QObject::connect(&replay, &Replay::finished, qApp,
            [&replay, &printer] { QCoreApplication::exit(tellScore(replay.score(), printer)); });
        tellReady(options, devices, printer);
        return QCoreApplication::exec();
    }
    MainUnit unit(*line, menus.steps(), faults);
    if (!addScopePorts(devices, unit, plan)) {
        return fail({QLatin1String("qn740-sim: ") + devices.errorString()});
    }
    watch(unit, *line, printer, record.get());
    QObject::connect(&unit, &MainUnit::menusSent, &printer,
        [&printer] { printer.event(QStringLiteral("menus sent")); });
    const InputLines input(STDIN_FILENO);
    QObject::connect(&input, &InputLines::line, &unit,
        [&unit](const QByteArray& text) { typeLine(unit, text); });
    tellReady(options, devices, printer);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    std::signal(SIGPIPE, SIG_IGN); // a reader of our output that goes is no reason to leave links
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("qn740-sim"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QN740_VERSION));
    const Options options = parseOptions(application);
    if (!options.check.isEmpty()) {
        return checkFile(options.check);
    }
    if (!options.line.fault.isEmpty()) {
        return fail({QLatin1String("qn740-sim: ") + options.line.fault});
    }
    if (!options.line.replay.isEmpty()) {
        const Recording recording = Recording::load(options.line.replay);
        return recording.fault().isEmpty()
            ? play(options, {}, recording)
            : fail({QLatin1String("qn740-sim: ") + recording.fault()});
    }
    const MenuFile menus = menusFor(options);
    return menus.errors().isEmpty() ? play(options, menus, {}) : fail(menus.errors());
}
