#pragma once

#include "sim/card/CardPort.h"
#include "sim/scope/SignalModel.h"

#include <QList>

class CardSpectrum;
class FaultTable;
class UnitDevices;
class UnitState;

/// What the unit's scope ports send at first.
struct ScopePortSettings
{
    static constexpr int Ports = 3; ///< one per demodulator

    QList<SignalSettings> signalSettings; ///< one per port
    int mode = 0;                         ///< 0 to 3, a ScopePort::Mode
};

/// Which spectral cards the unit has.
struct CardPortSettings
{
    bool none = false;                           ///< no cards, whatever the other members say
    CardPort::Type type = CardPort::Type::K7150; ///< of all three cards
    int points = CardPort::DefaultPoints; ///< of a spectrum, as CardPort's constructor takes them
    double level = 0.0;                   ///< of all carriers in dB, see CardSpectrum::setLevel()
};

/// The unit's ports apart from the panel's own line.
///
/// Each port lives as long as the line that it is on, so as long as the devices. \a seed makes the
/// random faults and signals repeatable.
namespace unitPorts {

/// Makes the three scope ports "ttyUSB1" to "ttyUSB3" and lets them send what the state says.
/// \param devices where the ports are made
/// \param state is given the signals and the modes; must live longer than the devices
/// \return false when a device could not be made; the devices then say why
bool addScopes(UnitDevices& devices, UnitState& state, const ScopePortSettings& settings,
    const FaultTable& faults, quint32 seed);

/// Makes the ports "ttyUSB11" to "ttyUSB13" of the three spectral cards.
/// \param devices where the ports are made
/// \param spectrum what the cards see; must live longer than the devices
/// \return false when a device could not be made; the devices then say why
bool addCards(UnitDevices& devices, CardSpectrum& spectrum, const CardPortSettings& settings,
    const FaultTable& faults, quint32 seed);

} // namespace unitPorts
