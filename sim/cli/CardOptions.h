#pragma once

#include "sim/unit/UnitPorts.h"

#include <QString>

class QCommandLineParser;

/// The options of the command line about the spectral cards: --card, --card-points,
/// --card-level.
struct CardOptions
{
    CardPortSettings ports; ///< what the options ask for
    QString fault;          ///< why the options are refused; empty when they are accepted

    /// Adds the options to those that the parser knows.
    static void addTo(QCommandLineParser& parser);
    /// Reads the options of a parser that has parsed the arguments.
    static CardOptions from(const QCommandLineParser& parser);
};
