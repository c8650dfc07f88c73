#pragma once

#include <QString>
#include <QStringList>

/// The exit statuses of the panel beside that of the event loop.
enum class ExitStatus {
    Ended = 0,       ///< it was told to end by a signal, or has printed its help or version
    WrongOption = 2, ///< an option is unknown
    LineIsTaken = 3, ///< another panel has the main unit's line open
    NoScreen = 4,    ///< there is no screen, or no way to draw on it
    OutOfMemory = 5  ///< there was no memory left
};

/// What the panel was started with, read before there is a screen, so that help, version and a
/// wrong option need none.
class CommandLine
{
public:
    /// What is to be done.
    enum class Action {
        Run,         ///< start the panel
        ShowVersion, ///< print text()
        ShowHelp,    ///< print text()
        Refuse       ///< print text() on standard error and end with ExitStatus::WrongOption
    };

    /// Reads the arguments. Those of Qt itself, such as "-platform vnc", are passed over.
    /// \param arguments without the program's name
    explicit CommandLine(const QStringList& arguments);

    /// \return what is to be done.
    Action action() const { return m_action; }
    /// \return what is to be printed, without a line feed at its end; empty for Action::Run.
    const QString& text() const { return m_text; }

private:
    void decide(Action action, const QString& text);

    Action m_action = Action::Run;
    QString m_text;
};
