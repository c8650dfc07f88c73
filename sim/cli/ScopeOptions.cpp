#include "sim/cli/ScopeOptions.h"

#include "sim/line/PseudoTerminal.h"
#include "sim/line/UnitDevices.h"
#include "sim/scope/ScopeFaults.h"
#include "sim/scope/ScopePort.h"
#include "sim/unit/UnitState.h"

#include <QCommandLineParser>

namespace {

const QString Signal = QStringLiteral("signal");
const QString Mode = QStringLiteral("scope-mode");
const QString Line = QStringLiteral("ttyUSB%1");

// of Demod 1, 2 and 3 when nothing else is asked for
const QStringList DefaultSignals{
    QStringLiteral("qpsk"), QStringLiteral("8psk"), QStringLiteral("16qam:snr=25")};

} // namespace

void ScopeOptions::addTo(QCommandLineParser& parser)
{
    parser.addOption({Signal,
        QStringLiteral("The signal of the next scope port, from Demod 1 on; the last one given "
                       "goes for the others too."),
        QStringLiteral("SIGNAL")});
    parser.addOption({Mode,
        QStringLiteral("What the scope ports send before panel or menus say, 0 to 3 (default: 0)."),
        QStringLiteral("MODE"), QStringLiteral("0")});
}

ScopeOptions ScopeOptions::from(const QCommandLineParser& parser)
{
    ScopeOptions options;
    const QStringList given = parser.values(Signal);
    const QStringList& texts = given.isEmpty() ? DefaultSignals : given;
    for (int port = 0; port < Ports && options.fault.isEmpty(); ++port) {
        const QString text = texts.value(port, texts.constLast());
        options.signalSettings.append(SignalSettings::fromText(text, options.fault));
    }
    if (options.fault.isEmpty() && texts.size() > Ports) {
        options.fault =
            QStringLiteral("%1 signals for %2 scope ports").arg(texts.size()).arg(Ports);
    }
    bool modeIsNumber = false;
    options.mode = parser.value(Mode).toInt(&modeIsNumber);
    if (!modeIsNumber || options.mode < ScopePort::Off || options.mode > ScopePort::Sdi) {
        options.fault = QStringLiteral("no mode of a scope port: \"%1\"").arg(parser.value(Mode));
    }
    return options;
}

bool ScopeOptions::addPorts(
    UnitDevices& devices, UnitState& state, const FaultTable& faults, quint32 seed) const
{
    for (int port = 0; port < Ports; ++port) {
        const int demodulator = port + 1;
        PseudoTerminal* line = devices.add(Line.arg(demodulator));
        if (line == nullptr) {
            return false;
        }
        state.setSignal(demodulator, signalSettings.at(port));
        state.setScopeMode(demodulator, mode);
        const quint32 ownSeed = seed + static_cast<quint32>(port);
        auto* scope = new ScopePort(
            *line, state.signal(demodulator), ScopeFaults(faults, ownSeed), ownSeed, line);
        scope->setObjectName(Line.arg(demodulator));
        scope->setMode(mode);
        QObject::connect(&state, &UnitState::scopeModeChanged, scope,
            [scope, demodulator](int changed, int newMode) {
                if (changed == demodulator) {
                    scope->setMode(newMode);
                }
            });
        QObject::connect(
            &state, &UnitState::signalChanged, scope, [scope, demodulator, &state](int changed) {
                if (changed == demodulator) {
                    scope->setSignal(state.signal(demodulator));
                }
            });
    }
    return true;
}
