#include "sim/cli/Simulation.h"

#include "sim/cli/InputLines.h"
#include "sim/cli/MenuWatch.h"
#include "sim/cli/PanelLog.h"
#include "sim/cli/TypedLine.h"
#include "sim/line/PseudoTerminal.h"
#include "sim/line/UnitDevices.h"
#include "sim/lint/Linter.h"
#include "sim/lint/Report.h"
#include "sim/replay/RecordFile.h"
#include "sim/replay/Replay.h"
#include "sim/unit/CombinerMeter.h"
#include "sim/unit/MainUnit.h"
#include "sim/unit/MenuFile.h"
#include "sim/unit/UnitPorts.h"

#include <QCoreApplication>

#include <cstdio>
#include <unistd.h>

namespace {

const QString PanelLine = QStringLiteral("ttyO1");

void typeLine(MainUnit& unit, UnitDevices& devices, const QByteArray& text)
{
    const QString fault = typedLine::carryOut(unit, devices, text);
    if (!fault.isEmpty()) {
        Printer::error(QLatin1String("refused: ") + fault);
    }
}

// Prints what the check finds in a file. Returns whether there is no error in it.
bool passes(const MenuFile& menus)
{
    const lint::FileReport report{menus.name(), menus.messageCount(), lint::check(menus)};
    std::fputs(lint::findingsText(report).toUtf8().constData(), stderr);
    return report.count(lint::Severity::Error) == 0;
}

bool fail(const QString& reason)
{
    Printer::error(QLatin1String("qn740-sim: ") + reason);
    return false;
}

} // namespace

Simulation::Simulation(const Options& options)
    : m_options(options)
    , m_faults(options.line.faults, options.line.seed)
    , m_spectrum(options.line.seed)
    , m_printer(options.trace)
{
}

Simulation::~Simulation() = default;

int Simulation::play(const MenuFile& menus)
{
    if (!open()) {
        return 1;
    }
    MainUnit unit(*m_line, menus.steps(), m_faults);
    follow(unit);
    if (!addPorts()) {
        return 1;
    }
    connectUnit(unit);
    const CombinerMeter meter(m_state, m_options.line.seed);
    if (!m_options.noMenus) {
        QObject::connect(&meter, &CombinerMeter::tells, &unit,
            [this, &unit](const QString& body) { tell(unit, body); });
    }
    watch(unit);
    std::unique_ptr<MenuWatch> file;
    if (m_options.watch) {
        file = std::make_unique<MenuWatch>(m_options.menu);
        follow(*file, unit);
    }
    const InputLines input(STDIN_FILENO);
    QObject::connect(&input, &InputLines::line, &unit,
        [this, &unit](const QByteArray& text) { typeLine(unit, *m_devices, text); });
    printReady();
    return QCoreApplication::exec();
}

int Simulation::replay(const Recording& recording)
{
    if (!open()) {
        return 1;
    }
    Replay replay(*m_line, recording,
        m_options.line.fast ? Replay::Pace::Fast : Replay::Pace::Recorded, m_faults);
    follow(replay);
    if (!addPorts()) {
        return 1;
    }
    watch(replay);
    QObject::connect(&replay, &Replay::finished, qApp,
        [this, &replay] { QCoreApplication::exit(printScore(replay.score())); });
    printReady();
    return QCoreApplication::exec();
}

// Makes the file of --record and the panel's line.
bool Simulation::open()
{
    if (!m_options.line.record.isEmpty()) {
        m_record = std::make_unique<RecordFile>(m_options.line.record);
        if (!m_record->isOpen()) {
            return fail(m_record->errorString());
        }
    }
    if (!m_options.panelLog.isEmpty() && !openPanelLog()) {
        return false;
    }
    m_devices = std::make_unique<UnitDevices>(m_options.directory);
    m_line = m_devices->isValid() ? m_devices->add(PanelLine) : nullptr;
    if (m_line == nullptr) {
        return fail(m_devices->errorString());
    }
    QObject::connect(m_line, &PseudoTerminal::opened, &m_printer,
        [this] { m_printer.event(QLatin1String("panel opened ") + PanelLine); });
    return true;
}

bool Simulation::openPanelLog()
{
    m_panelLog = std::make_unique<PanelLog>(m_options.panelLog);
    if (!m_panelLog->fault().isEmpty()) {
        return fail(m_panelLog->fault());
    }
    m_printer.follow(*m_panelLog);
    return true;
}

bool Simulation::addPorts()
{
    const LineOptions& line = m_options.line;
    return (unitPorts::addScopes(
                *m_devices, m_state, m_options.scopes.ports, line.faults, line.seed) &&
               unitPorts::addCards(
                   *m_devices, m_spectrum, m_options.cards.ports, line.faults, line.seed)) ||
        fail(m_devices->errorString());
}

// What the unit is set to follows what is said on the link, and the cards see what it makes of the
// signals.
void Simulation::follow(const PanelLink& link)
{
    QObject::connect(&link, &PanelLink::received, &m_state, [this](const QString& body) {
        m_state.takeCommand(body);
        m_spectrum.takeCommand(body);
    });
    QObject::connect(&link, &PanelLink::sent, &m_state,
        [this](const QString& body) { m_state.takeMessage(body); });
    QObject::connect(&m_state, &UnitState::signalChanged, &m_state, [this](int demodulator) {
        m_spectrum.setSymbolRate(demodulator - 1, m_state.symbolRate(demodulator));
        m_spectrum.setShift(demodulator - 1, m_state.shift(demodulator));
    });
}

// Prints and, if that was asked for, records what is said on the line.
void Simulation::watch(const PanelLink& link)
{
    QObject::connect(m_line, &PseudoTerminal::closed, &m_printer,
        [this] { m_printer.event(QLatin1String("panel closed ") + PanelLine); });
    QObject::connect(&link, &PanelLink::received, &m_printer, &Printer::fromPanel);
    QObject::connect(&link, &PanelLink::wrote, &m_printer, &Printer::toPanel);
    if (m_record != nullptr) {
        QObject::connect(&link, &PanelLink::received, m_record.get(), &RecordFile::fromPanel);
        QObject::connect(&link, &PanelLink::wrote, m_record.get(), &RecordFile::toPanel);
        QObject::connect(m_record.get(), &RecordFile::failed, &m_printer,
            [](const QString& reason) { fail(reason); });
    }
}

void Simulation::connectUnit(MainUnit& unit)
{
    QObject::connect(m_line, &PseudoTerminal::opened, &m_state, &UnitState::restart);
    unit.confirmations() = m_options.unit.confirmations;
    QObject::connect(&m_state, &UnitState::tells, &unit,
        [this, &unit](const QString& body) { tell(unit, body); });
    QObject::connect(&unit, &MainUnit::menusSent, &m_printer,
        [this] { m_printer.event(QStringLiteral("menus sent")); });
}

void Simulation::tell(MainUnit& unit, const QString& body) const
{
    if (m_options.unit.lets(body)) {
        unit.tell(body);
    }
}

// Lets the panel have the menus of a file anew each time that it is saved without a fault.
void Simulation::follow(const MenuWatch& file, MainUnit& unit)
{
    QObject::connect(&file, &MenuWatch::gone, &unit, [&file] {
        Printer::error(file.path() + QLatin1String(": is gone; the menus stay as they are"));
    });
    QObject::connect(&file, &MenuWatch::saved, &unit, [this, &file, &unit] {
        const MenuFile menus = MenuFile::load(file.path());
        if (passes(menus)) {
            m_printer.event(QStringLiteral("%1 was saved").arg(file.path()));
            unit.replaceMenus(menus.steps());
        } else {
            Printer::error(
                file.path() + QLatin1String(": was not sent; the menus stay as they are"));
        }
    });
}

void Simulation::printReady()
{
    m_printer.event(QLatin1String("ready ") + m_devices->path());
    if (m_options.line.tellSeed) {
        m_printer.event(QLatin1String("seed ") + QString::number(m_options.line.seed));
    }
}

int Simulation::printScore(const ReplayScore& score)
{
    const QStringList lines = score.report();
    for (const QString& line : lines) {
        m_printer.event(line);
    }
    return score.isGood() ? 0 : 1;
}
