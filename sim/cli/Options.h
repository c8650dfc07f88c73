#pragma once

#include "sim/cli/CardOptions.h"
#include "sim/cli/LineOptions.h"
#include "sim/cli/MenuTools.h"
#include "sim/cli/Printer.h"
#include "sim/cli/ScopeOptions.h"
#include "sim/cli/UnitOptions.h"

#include <QString>

class QCoreApplication;

/// All options of the command line.
struct Options
{
    QString directory;    ///< --dir; empty for a directory of the program's own
    QString menu;         ///< --menu, the path; empty for the built-in menus
    bool watch = false;   ///< --watch: the menus are sent anew when the file is saved
    MenuTools tools;      ///< of the check and the export of menu files
    bool noMenus = false; ///< --no-menus
    Printer::Trace trace; ///< --trace, --trace-only and --trace-not
    QString panelLog;     ///< --panel-log, the path; empty when the panel's log is not read
    ScopeOptions scopes;  ///< of the scope ports
    CardOptions cards;    ///< of the spectral cards
    UnitOptions unit;     ///< of what the unit answers
    LineOptions line;     ///< of recordings and faults

    /// Parses the arguments of the application. Ends the program itself at --help, at --version,
    /// and at arguments that it does not know.
    static Options parse(const QCoreApplication& application);

    /// \return why the options are refused; empty when they are accepted
    QString fault() const;
};
