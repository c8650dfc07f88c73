#include "sim/CardOptions.h"
#include "sim/CardSpectrum.h"
#include "sim/InputLines.h"
#include "sim/MainUnit.h"
#include "sim/MenuFile.h"
#include "sim/Printer.h"
#include "sim/PseudoTerminal.h"
#include "sim/ScopeOptions.h"
#include "sim/TerminationSignals.h"
#include "sim/UnitDevices.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <array>
#include <csignal>
#include <cstdio>
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
The spectral cards ttyUSB11 to ttyUSB13 answer the panel's requests with spectra
whose carriers are as wide as "D1:RATE:5000000" makes them. The K7150 type comes up
in the panel on "ST,1", the older one is for a panel started with -noK7150.

Examples:
  qn740-sim --dir /tmp/dev           then: QN740_DEV=/tmp/dev qn740-panel
  qn740-sim --menu my.menu           another set of menus
  qn740-sim --check my.menu          only say what is wrong with it
  echo 'DB,Antenna fault,1' | qn740-sim --dir /tmp/dev
  qn740-sim --no-menus --trace       type every message by hand, see both ways
  qn740-sim --signal 16qam:snr=25:phase=2 --scope-fault loss,noise
  qn740-sim --card older --card-fault cut,no-reply=20)";

const QString PanelLine = QStringLiteral("ttyO1");

struct Options
{
    QString directory;
    QString menu;
    QString check;
    bool noMenus = false;
    bool trace = false;
    QString seed;
    ScopeOptions scopes;
    CardOptions cards;
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
    const QCommandLineOption seed(QStringLiteral("seed"),
        QStringLiteral("The seed of signals and faults (default: 1)."), QStringLiteral("NUMBER"),
        QStringLiteral("1"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(Description));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({directory, menu, check, noMenus, trace, seed});
    ScopeOptions::addTo(parser);
    CardOptions::addTo(parser);
    parser.process(application);
    if (!parser.positionalArguments().isEmpty()) {
        Printer::error(QStringLiteral("qn740-sim: unexpected argument \"%1\"; see --help")
                           .arg(parser.positionalArguments().constFirst()));
        std::exit(1);
    }
    return {parser.value(directory), parser.value(menu), parser.value(check), parser.isSet(noMenus),
        parser.isSet(trace), parser.value(seed), ScopeOptions::from(parser),
        CardOptions::from(parser)};
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

int play(const Options& options, const MenuFile& menus)
{
    bool seedIsNumber = false;
    const quint32 seed = options.seed.toUInt(&seedIsNumber);
    if (!seedIsNumber) {
        return fail({QStringLiteral("qn740-sim: no seed: \"%1\"").arg(options.seed)});
    }
    for (const QString& fault : {options.scopes.fault, options.cards.fault}) {
        if (!fault.isEmpty()) {
            return fail({QLatin1String("qn740-sim: ") + fault});
        }
    }
    CardSpectrum spectrum(seed);
    const TerminationSignals signals_;
    QObject::connect(&signals_, &TerminationSignals::terminate, qApp, &QCoreApplication::quit);
    UnitDevices devices(options.directory);
    PseudoTerminal* line = devices.isValid() ? devices.add(PanelLine) : nullptr;
    if (line == nullptr) {
        return fail({QLatin1String("qn740-sim: ") + devices.errorString()});
    }
    const Printer printer(options.trace);
    QObject::connect(line, &PseudoTerminal::opened, &printer,
        [&printer] { printer.event(QLatin1String("panel opened ") + PanelLine); });
    MainUnit unit(*line, menus.steps());
    if (!options.scopes.addPorts(devices, unit, seed) ||
        !options.cards.addPorts(devices, spectrum, seed)) {
        return fail({QLatin1String("qn740-sim: ") + devices.errorString()});
    }
    QObject::connect(&unit, &MainUnit::received, &unit,
        [&spectrum](const QString& body) { spectrum.takeCommand(body); });
    QObject::connect(&unit, &MainUnit::received, &printer, &Printer::fromPanel);
    QObject::connect(&unit, &MainUnit::sent, &printer, &Printer::toPanel);
    QObject::connect(&unit, &MainUnit::menusSent, &printer,
        [&printer] { printer.event(QStringLiteral("menus sent")); });
    QObject::connect(line, &PseudoTerminal::closed, &printer,
        [&printer] { printer.event(QLatin1String("panel closed ") + PanelLine); });
    const InputLines input(STDIN_FILENO);
    QObject::connect(&input, &InputLines::line, &unit,
        [&unit](const QByteArray& text) { typeLine(unit, text); });
    printer.event(QLatin1String("ready ") + devices.path());
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
    const MenuFile menus = menusFor(options);
    return menus.errors().isEmpty() ? play(options, menus) : fail(menus.errors());
}
