#pragma once

#include "sim/card/CardSpectrum.h"
#include "sim/cli/Options.h"
#include "sim/cli/Printer.h"
#include "sim/line/LineFaults.h"
#include "sim/unit/UnitState.h"

#include <QString>

#include <memory>

class MainUnit;
class MenuFile;
class MenuWatch;
class PanelLink;
class PanelLog;
class PseudoTerminal;
class RecordFile;
class Recording;
class ReplayScore;
class UnitDevices;

/// One run of the simulated unit.
///
/// Makes the devices, puts the main unit or a recording on the panel's line, and connects it with
/// the rest: what is said on the line changes the unit's state, the state changes what scope ports
/// and cards send, and the printer and the file of --record are told everything. Faults of the
/// system (a device that cannot be made) are printed on standard error.
class Simulation
{
public:
    /// Prepares a run; nothing is created yet.
    explicit Simulation(const Options& options);
    ~Simulation();
    Simulation(const Simulation&) = delete;
    Simulation& operator=(const Simulation&) = delete;

    /// Plays the main unit with these menus until the program is told to end.
    /// \return the exit status
    int play(const MenuFile& menus);

    /// Plays a recording once.
    /// \return the exit status, 0 when all answers came back
    int replay(const Recording& recording);

private:
    bool open();
    bool openPanelLog();
    bool addPorts();
    void follow(const PanelLink& link);
    void watch(const PanelLink& link);
    void connectUnit(MainUnit& unit);
    void follow(const MenuWatch& file, MainUnit& unit);
    void tell(MainUnit& unit, const QString& body) const;
    void printReady();
    int printScore(const ReplayScore& score);

    const Options m_options;
    const LineFaults m_faults;
    CardSpectrum m_spectrum;
    UnitState m_state;
    std::unique_ptr<RecordFile> m_record;
    std::unique_ptr<UnitDevices> m_devices; // its ports use spectrum and state
    PseudoTerminal* m_line = nullptr;
    Printer m_printer;
    std::unique_ptr<PanelLog> m_panelLog;
};
