#pragma once

#include "sim/unit/Confirmations.h"

#include <QString>
#include <QStringList>

class QCommandLineParser;

/// The options of the command line about how the unit behaves: --refuse, --delay, --silent,
/// --quiet.
struct UnitOptions
{
    Confirmations confirmations; ///< of --refuse, --delay and --silent
    QStringList quiet;           ///< of --quiet: the words that the unit does not send by itself
    QString fault;               ///< why the options are refused; empty when they are accepted

    /// Adds the options to those that the parser knows.
    static void addTo(QCommandLineParser& parser);
    /// Reads the options of a parser that has parsed the arguments.
    static UnitOptions from(const QCommandLineParser& parser);

    /// Whether the unit may send a message by itself. \param body without STX and EOT
    bool lets(const QString& body) const;
};
