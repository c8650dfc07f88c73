#pragma once

#include "sim/line/FaultTable.h"

#include <QString>

class QCommandLineParser;

// The options of the command line about recordings, faults and chance: --record, --replay, --fast,
// --fault, --seed.
struct LineOptions
{
    QString record; // paths, empty when not asked for
    QString replay;
    bool fast = false;
    FaultTable faults;
    quint32 seed = 1;
    bool tellSeed = false; // something random was asked for
    QString fault;         // why the options are refused; empty when they are not

    // Adds the options to those that the parser knows.
    static void addTo(QCommandLineParser& parser);
    // In: the parser after its work. It also knows "menu" and "no-menus".
    static LineOptions from(const QCommandLineParser& parser);

    // The faults that there are, for the help.
    static QString faultHelp();
};
