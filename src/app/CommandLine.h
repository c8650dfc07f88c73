#pragma once

#include <QString>
#include <QStringList>

/// The exit statuses of the panel beside that of the event loop.
enum class ExitStatus {
    Ended = 0,       ///< it was told to end by a signal, or has printed its help or version
    FaultFound = 1,  ///< the self-test has found a fault
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
        SelfTest,    ///< look at the board and end
        ShowTouch,   ///< show the page that draws where it is touched
        Refuse       ///< print text() on standard error and end with ExitStatus::WrongOption
    };

    /// Reads the arguments. Those of Qt itself, such as "-platform vnc", are passed over.
    /// \param arguments without the program's name
    explicit CommandLine(const QStringList& arguments);

    /// \return what is to be done.
    Action action() const { return m_action; }
    /// \return what is to be printed, without a line feed at its end; empty when there is
    /// something else to be done.
    const QString& text() const { return m_text; }
    /// \return the value of Qt's option "-platform", else of the environment's QT_QPA_PLATFORM.
    const QString& platform() const { return m_platform; }

private:
    void decide(Action action, const QString& text);
    // How many arguments from here on are one option that the panel can be started with; 0: none.
    qsizetype lengthOfOption(const QStringList& arguments, qsizetype i);

    Action m_action = Action::Run;
    QString m_text;
    QString m_platform = qEnvironmentVariable("QT_QPA_PLATFORM");
};
