#pragma once

#include "sim/menus/MenuStep.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// A menu file: what the unit sends, one message per line.
///
///     # a comment; blank lines are skipped
///     AK,Tuner CH1,freq,RF Frequency,1,R1:FREQ:,2200 2400,1,,2250.5,0,1
///     wait 500
///     SK,Tuner CH1
///
/// A line is UTF-8 or Latin-1 text. Blanks in front of it are skipped, blanks at its end belong to
/// it. "\\xHH" stands for the byte HH and "\\\\" for a backslash, as in what the simulator prints.
/// A line that is not a message is refused with file, line and reason. Reading goes on after it, so
/// that all faults (up to a hundred) are reported at once. A text that begins with "{", or whose
/// name ends in ".json", is a menu file in JSON, see sim/menus/MenuJson.h.
///
/// Two comments are instructions to the check: "# qn740: ignore QN404" silences the next line that
/// is neither blank nor a comment, "# qn740: ignore-file QN204" the whole file.
class MenuFile
{
public:
    /// No menus at all.
    MenuFile() = default;

    /// What one line says.
    struct Line
    {
        std::optional<MenuStep> step; ///< nothing for a comment or a blank line
        QString fault;                ///< why the line is refused; empty when it is accepted
        MenuFault::Kind kind = MenuFault::Kind::None; ///< what kind of fault it is
        QString body{};                               ///< of a message that is refused
    };

    /// Parses one line without its line break.
    static Line parseLine(const QByteArray& line);

    /// Parses the text of a file. \param name of the file, for errors()
    static MenuFile parse(const QByteArray& text, const QString& name);

    /// Reads a file. A file that cannot be read, or is larger than 16 MB, is an error.
    static MenuFile load(const QString& path);

    /// \return the menus that are built into the simulator
    static MenuFile builtIn();

    /// \return the steps in the order of the file
    const QList<MenuStep>& steps() const { return m_content.steps; }
    /// \return all that stands in the file, with every fault
    const MenuContent& content() const { return m_content; }
    /// \return the name of the file, as it was given
    const QString& name() const { return m_name; }
    /// \return the number of messages; waits are not counted
    qsizetype messageCount() const;
    /// \return "FILE:LINE: reason" in the order of the lines, for the first hundred faults; empty
    /// when the file is good. An unknown word whose finding QN101 the file silences is none.
    QStringList errors() const;

private:
    explicit MenuFile(const QString& name, MenuContent content = {});
    static MenuFile unreadable(const QString& name, const QString& reason);

    QString m_name;
    MenuContent m_content;
};
