#pragma once

#include "sim/cli/HeldLines.h"
#include "sim/cli/TraceWords.h"

#include <QByteArray>
#include <QObject>
#include <QString>

class PanelLog;

/// Prints what happens on standard output, line by line and at once:
///
///     sim: ready DIR                   the devices are there
///     sim: panel opened ttyO1          and "closed"
///     sim: menus sent
///     sim: seed N                      when faults or a seed were asked for
///     sim: N of M frames came back     at the end of a replay, and which did not
///     panel: BODY                      a message from the panel, without its frame
///     panel (unframed): TEXT           text outside frames
///     trace: SECONDS in FRAME          with --trace, everything that goes to the panel
///     trace: SECONDS out FRAME         and comes from it, as in the panel's own debug log
///     ignored: REASON                  with the panel's log, why the panel ignored a message
///
/// BODY, TEXT and FRAME are printable ASCII: "\\xHH" stands for the byte HH, "\\\\" for a
/// backslash. So a BODY can be pasted into a menu file.
///
/// With the panel's log, a traced message to the panel, and what comes after it, waits until the
/// panel says that it has taken the message. So the reason stands directly behind it.
class Printer : public QObject
{
    Q_OBJECT

public:
    /// What is printed of the messages.
    struct Trace
    {
        bool on = false;  ///< whether everything that goes over the line is printed
        TraceWords words; ///< of it
    };

    /// \param trace what is printed of what goes over the line
    explicit Printer(const Trace& trace, QObject* parent = nullptr);
    ~Printer() override;

    /// Prints what the panel says, too. \param log must live longer than this
    void follow(const PanelLog& log);

    /// Prints "sim: " and the text.
    void event(const QString& text);
    /// Prints what came from the panel. \param text a message without its frame, or text outside
    /// one
    void fromPanel(const QString& text, bool framed);
    /// Prints bytes that went to the panel, if they are traced.
    void toPanel(const QByteArray& bytes);

    /// Prints one line on standard error.
    static void error(const QString& text);

private:
    void print(const QString& line, const QString& frame = QString());
    void took(const QString& frame);
    void ignored(const QString& reason);

    const Trace m_trace;
    HeldLines m_held;
    bool m_followsPanel = false;
    QString m_taken;         // the message that the panel took last
    bool m_isBehind = false; // its line stands further up already
};
