#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// One step of a menu file: a message to send, or a time to wait.
struct MenuStep
{
    enum class Kind { Message, Wait };
    Kind kind = Kind::Message;
    QString body;   // Message: the text between STX and EOT, characters 0 to 255
    int waitMs = 0; // Wait: 0 to 600000
};

// A menu file: what the unit sends, one message a line.
//
//     # a comment; blank lines are skipped
//     AK,Tuner CH1,freq,RF Frequency,1,R1:FREQ:,2200 2400,1,,2250.5,0,1
//     wait 500
//     SK,Tuner CH1
//
// A line is UTF-8 or Latin-1 text; blanks before it are skipped, blanks behind it belong to it.
// "\xHH" stands for the byte HH, "\\" for a backslash, as in what the simulator prints. A line that
// is no message is refused with file, line and reason; reading goes on behind it, so that all
// faults are told at once (up to a hundred).
class MenuFile
{
public:
    struct Line
    {
        std::optional<MenuStep> step; // nothing for a comment or a blank line
        QString fault;                // why the line is refused, empty when it is not
    };

    // In: one line without its end. Out: its step or its fault.
    static Line parseLine(const QByteArray& line);

    // In: the text of a file and the name by which faults call it.
    static MenuFile parse(const QByteArray& text, const QString& name);

    // In: a path. A file that cannot be read, or is larger than 16 MB, is one fault.
    static MenuFile load(const QString& path);

    // The menus that are built into the simulator.
    static MenuFile builtIn();

    const QList<MenuStep>& steps() const { return m_steps; }
    // Messages only, waits not counted.
    qsizetype messageCount() const;
    // "FILE:LINE: reason", in the order of the lines; empty when the file is good.
    const QStringList& errors() const { return m_errors; }

private:
    void addError(const QString& error);

    QList<MenuStep> m_steps;
    QStringList m_errors;
    int m_moreErrors = 0;
};
