#pragma once

#include "sim/line/FaultTable.h"

#include <QString>

class QCommandLineParser;

/// The options of the command line about recordings, faults and randomness: --record, --replay,
/// --fast, --fault, --seed.
struct LineOptions
{
    QString record;        ///< path; empty when nothing is recorded
    QString replay;        ///< path; empty when nothing is replayed
    bool fast = false;     ///< whether a replay skips the pauses
    FaultTable faults;     ///< of the line, the scope ports and the cards
    quint32 seed = 1;      ///< of everything random
    bool tellSeed = false; ///< whether the seed is printed: something random was asked for
    QString fault;         ///< why the options are refused; empty when they are accepted

    /// Adds the options to those that the parser knows.
    static void addTo(QCommandLineParser& parser);
    /// Reads the options of a parser that has parsed the arguments and also knows "menu" and
    /// "no-menus".
    static LineOptions from(const QCommandLineParser& parser);

    /// \return the lines about the faults for the help
    static QString faultHelp();
};
