#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

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
///
/// BODY, TEXT and FRAME are printable ASCII: "\\xHH" stands for the byte HH, "\\\\" for a
/// backslash. So a BODY can be pasted into a menu file.
class Printer : public QObject
{
    Q_OBJECT

public:
    /// \param trace whether everything that goes over the line is printed
    explicit Printer(bool trace, QObject* parent = nullptr);

    /// Prints "sim: " and the text.
    void event(const QString& text) const;
    /// Prints what came from the panel. \param text a message without its frame, or text outside
    /// one
    void fromPanel(const QString& text, bool framed) const;
    /// Prints bytes that went to the panel, if \a trace was set.
    void toPanel(const QByteArray& bytes) const;

    /// Prints one line on standard error.
    static void error(const QString& text);

private:
    void traced(bool in, const QString& frame) const;

    bool m_trace;
};
