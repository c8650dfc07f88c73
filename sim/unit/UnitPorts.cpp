#include "sim/unit/UnitPorts.h"

#include "sim/card/CardSpectrum.h"
#include "sim/line/PseudoTerminal.h"
#include "sim/line/UnitDevices.h"
#include "sim/scope/ScopeFaults.h"
#include "sim/scope/ScopePort.h"
#include "sim/unit/UnitState.h"

namespace {

const QString Line = QStringLiteral("ttyUSB%1");
constexpr int FirstCardLine = 11;
constexpr int CardLines = 3;

void follow(UnitState& state, ScopePort& port, int demodulator)
{
    QObject::connect(&state, &UnitState::scopeModeChanged, &port,
        [&port, demodulator](int changed, int newMode) {
            if (changed == demodulator) {
                port.setMode(newMode);
            }
        });
    QObject::connect(
        &state, &UnitState::signalChanged, &port, [&port, demodulator, &state](int changed) {
            if (changed == demodulator) {
                port.setSignal(state.signal(demodulator));
            }
        });
}

} // namespace

bool unitPorts::addScopes(UnitDevices& devices, UnitState& state, const ScopePortSettings& settings,
    const FaultTable& faults, quint32 seed)
{
    for (int port = 0; port < ScopePortSettings::Ports; ++port) {
        const int demodulator = port + 1;
        PseudoTerminal* line = devices.add(Line.arg(demodulator));
        if (line == nullptr) {
            return false;
        }
        state.setSignal(demodulator, settings.signalSettings.at(port));
        state.setScopeMode(demodulator, settings.mode);
        const quint32 ownSeed = seed + static_cast<quint32>(port);
        auto* scope = new ScopePort(
            *line, state.signal(demodulator), ScopeFaults(faults, ownSeed), ownSeed, line);
        scope->setObjectName(Line.arg(demodulator));
        scope->setMode(settings.mode);
        follow(state, *scope, demodulator);
    }
    return true;
}

bool unitPorts::addCards(UnitDevices& devices, CardSpectrum& spectrum,
    const CardPortSettings& settings, const FaultTable& faults, quint32 seed)
{
    spectrum.setLevel(settings.level);
    for (int port = 0; port < CardLines && !settings.none; ++port) {
        PseudoTerminal* line = devices.add(Line.arg(FirstCardLine + port));
        if (line == nullptr) {
            return false;
        }
        const CardFaults cardFaults(faults, seed + static_cast<quint32>(port));
        new CardPort(settings.type, *line, spectrum, cardFaults, settings.points, line);
    }
    return true;
}
