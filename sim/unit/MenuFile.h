#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// One step of a menu file: a message to send, or a time to wait. Bytes that are no message are
/// only typed.
struct MenuStep
{
    /// What the step does.
    enum class Kind { Message, Wait, Raw };
    Kind kind = Kind::Message; ///< which of the other members counts
    QString body;              ///< of a message, without STX and EOT, or the bytes of Raw;
                               ///< characters 0 to 255
    int waitMs = 0;            ///< of a wait, 0 to 600000
};

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
/// that all faults (up to a hundred) are reported at once.
class MenuFile
{
public:
    /// What one line says.
    struct Line
    {
        std::optional<MenuStep> step; ///< nothing for a comment or a blank line
        QString fault;                ///< why the line is refused; empty when it is accepted
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
    const QList<MenuStep>& steps() const { return m_steps; }
    /// \return the number of messages; waits are not counted
    qsizetype messageCount() const;
    /// \return "FILE:LINE: reason" in the order of the lines; empty when the file is good
    const QStringList& errors() const { return m_errors; }

private:
    void addError(const QString& error);

    QList<MenuStep> m_steps;
    QStringList m_errors;
    int m_moreErrors = 0;
};
