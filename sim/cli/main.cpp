#include "sim/card/CardSpectrum.h"
#include "sim/cli/CardOptions.h"
#include "sim/cli/InputLines.h"
#include "sim/cli/LineOptions.h"
#include "sim/cli/Printer.h"
#include "sim/cli/ScopeOptions.h"
#include "sim/cli/TerminationSignals.h"
#include "sim/line/PseudoTerminal.h"
#include "sim/line/UnitDevices.h"
#include "sim/replay/RecordFile.h"
#include "sim/replay/Replay.h"
#include "sim/unit/CombinerMeter.h"
#include "sim/unit/MainUnit.h"
#include "sim/unit/MenuFile.h"
#include "sim/unit/MessageRules.h"
#include "sim/unit/UnitState.h"

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
  sim: seed N               when faults or a seed were asked for
  sim: N of M frames came back        at the end of a replay, and what did not
  trace: SECONDS in MESSAGE           with --trace, what goes to the panel
  trace: SECONDS out MESSAGE          and what comes from it
and on standard error:
  refused: REASON           a line that was typed is no message and was not sent

A menu file, and what is typed on standard input, has one message a line:
  AK,Menu,id,Label,1,R1:FREQ:,2200 2400,1,,2250.5,0,1
  # a comment              (blank lines are skipped too)
  wait 500                 (milliseconds)
"\xHH" stands for the byte HH, "\\" for a backslash. A key with the command
"SK:Some Menu:" opens that menu; "PAX:1:" the PAX main menu, which a key with
"PAX:0:Some Menu:" leaves.

The scope ports ttyUSB1 to ttyUSB3 send as the panel's "D1:DSDM:2" and the unit's
"SM,1,3" tell them: 0 nothing, 1 constellation, 2 eye pattern, 3 SDI records. While
one of them sends, "PM" tells the panel phase and magnitudes twice a second (not
with --no-menus). A signal is bpsk, qpsk, oqpsk, 8psk or 16qam, and behind it any of
  :snr=20 (dB)  :phase=3 (degrees rms)  :offset=0.001 (turns a symbol)
  :imbalance=1 (dB)  :skew=5 (degrees)  :clip=0.4  :level=0.5  :rolloff=0.35
  :band=4 (of the filter in front of the demodulator, in symbol rates)

The spectral cards ttyUSB11 to ttyUSB13 answer the panel's requests. The K7150 type
comes up in the panel on "ST,1", the older one is for a panel started with -noK7150.

The unit does what it is set to. Two transmitters are on the air, on the frequencies
that the tuners begin with, and send what the demodulators are set to:
  D1:RATE:5000000   carrier as wide as the symbols are fast; more noise in the eye the
                    faster they are (10 dB for 10 times the rate), and symbols that
                    reach into each other when the tuner's filter is too narrow
  D1:MODE:4         modulation, if the chosen text names BPSK, QPSK, OQPSK, 8PSK or
                    16QAM (D, S and others in front count as these); else as it was
  D1:ROLL:0.5       roll-off
  R1:IFBW:5         the tuner's filter, in MHz as the chosen text begins
  R1:FREQ:2251.5    the carrier moves on the chart, whose middle the panel is told by
                    "SF"; the eye closes, and beyond the filter there is only noise
Demod 1 and chart 1 are on tuner 1, Demod 2 and chart 2 on tuner 2, Demod 3 and chart
3 (the combiner's) on tuner 1. "D1 D2 D3:" and "R1 R2:" set all of them.

A recording has one line for everything that goes over the line, with the time
in seconds and anything in front; other lines in the file are skipped:
  12.345 in \x02PING\x04
  12.346 out \x02PONG\x04
In a replay the answers to PING, VER, Slave and ST,1 are waited for, one second
each at most; what the operator had pressed is not, and is no fault when nobody
presses it again.

Faults, each with a rate from 0 to 1 of the messages, blocks or replies:
%1
Examples; the panel for them is QN740_DEV=/tmp/dev qn740-panel, in another shell:
  qn740-sim --dir /tmp/dev
  printf 'AK,Mine,agc,AGC,0,R1:AGC:,,0,,0,0,1\nSK,Mine\n' >my.menu
  qn740-sim --check my.menu                     only say what is wrong with it
  qn740-sim --dir /tmp/dev --menu my.menu       these menus
  echo 'DB,Antenna fault,1' | qn740-sim --dir /tmp/dev
  qn740-sim --dir /tmp/dev --no-menus --trace   type every message, see both ways
  qn740-sim --dir /tmp/dev --record talk.log    keep what was said
  qn740-sim --dir /tmp/dev --replay talk.log    say it again, at its own pace
  QN740_DEV=/tmp/dev QT_LOGGING_RULES=qn740.link.debug=true qn740-panel 2>panel.log
  qn740-sim --dir /tmp/dev --replay panel.log --fast
  qn740-sim --dir /tmp/dev --fault drop=0.01,junk=0.05 --fault burst=0.1 --seed 7
  qn740-sim --dir /tmp/dev --signal 16qam:snr=25:phase=2 --fault scope-loss=0.1
  qn740-sim --dir /tmp/dev --card older --fault card-cut=0.1,card-no-reply=0.2)";

const QString PanelLine = QStringLiteral("ttyO1");

struct Options
{
    QString directory;
    QString menu;
    QString check;
    bool noMenus = false;
    bool trace = false;
    ScopeOptions scopes;
    CardOptions cards;
    LineOptions line;
};

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
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QString::fromLatin1(Description).arg(LineOptions::faultHelp()));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({directory, menu, check, noMenus, trace});
    ScopeOptions::addTo(parser);
    CardOptions::addTo(parser);
    LineOptions::addTo(parser);
    parser.process(application);
    if (!parser.positionalArguments().isEmpty()) {
        Printer::error(QStringLiteral("qn740-sim: unexpected argument \"%1\"; see --help")
                           .arg(parser.positionalArguments().constFirst()));
        std::exit(1);
    }
    return {parser.value(directory), parser.value(menu), parser.value(check), parser.isSet(noMenus),
        parser.isSet(trace), ScopeOptions::from(parser), CardOptions::from(parser),
        LineOptions::from(parser)};
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
    const MenuFile::Line line = text.size() > InputLines::LongestLine
        ? MenuFile::Line{std::nullopt, rules::tooLong()}
        : MenuFile::parseLine(text);
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

// What the unit is set to follows what is said on the link, and the cards see what it makes of the
// signals.
void follow(UnitState& state, const PanelLink& link, CardSpectrum& spectrum)
{
    QObject::connect(&link, &PanelLink::received, &state, [&state, &spectrum](const QString& body) {
        state.takeCommand(body);
        spectrum.takeCommand(body);
    });
    QObject::connect(&link, &PanelLink::sent, &state,
        [&state](const QString& body) { state.takeMessage(body); });
    QObject::connect(
        &state, &UnitState::signalChanged, &state, [&state, &spectrum](int demodulator) {
            spectrum.setSymbolRate(demodulator - 1, state.symbolRate(demodulator));
            spectrum.setShift(demodulator - 1, state.shift(demodulator));
        });
}

// Adds the scope and card ports. Out: whether all are there.
bool addOtherPorts(
    const Options& options, UnitDevices& devices, UnitState& state, CardSpectrum& spectrum)
{
    const LineOptions& line = options.line;
    return options.scopes.addPorts(devices, state, line.faults, line.seed) &&
        options.cards.addPorts(devices, spectrum, line.faults, line.seed);
}

int play(const Options& options, const MenuFile& menus, const Recording& recording)
{
    CardSpectrum spectrum(options.line.seed);
    UnitState state;
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
        follow(state, replay, spectrum);
        if (!addOtherPorts(options, devices, state, spectrum)) {
            return fail({QLatin1String("qn740-sim: ") + devices.errorString()});
        }
        watch(replay, *line, printer, record.get());
        QObject::connect(&replay, &Replay::finished, qApp,
            [&replay, &printer] { QCoreApplication::exit(tellScore(replay.score(), printer)); });
        tellReady(options, devices, printer);
        return QCoreApplication::exec();
    }
    MainUnit unit(*line, menus.steps(), faults);
    follow(state, unit, spectrum);
    if (!addOtherPorts(options, devices, state, spectrum)) {
        return fail({QLatin1String("qn740-sim: ") + devices.errorString()});
    }
    QObject::connect(line, &PseudoTerminal::opened, &state, &UnitState::restart);
    QObject::connect(&state, &UnitState::tells, &unit, &MainUnit::tell);
    const CombinerMeter meter(state, options.line.seed);
    if (!options.noMenus) {
        QObject::connect(&meter, &CombinerMeter::tells, &unit, &MainUnit::tell);
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
    for (const QString& fault : {options.line.fault, options.scopes.fault, options.cards.fault}) {
        if (!fault.isEmpty()) {
            return fail({QLatin1String("qn740-sim: ") + fault});
        }
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
