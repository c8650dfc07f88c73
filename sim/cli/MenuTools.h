#pragma once

#include <QString>
#include <QStringList>

/// The options that do something with menu files instead of playing the unit.
struct MenuTools
{
    bool isCheck = false;  ///< --check
    bool isStrict = false; ///< --strict
    QString format;        ///< --format: "text" or "json"
    QString exportAs;      ///< --export: "json", "menu" or "dot"; empty when nothing is exported
    QStringList files;     ///< what to check or to export

    /// \return whether one of these options was given.
    bool isAsked() const { return isCheck || !exportAs.isEmpty(); }

    /// \return why the options are refused; empty when they are accepted.
    QString fault() const;

    /// Does what the options say. \return the exit status
    int run() const;
};
