#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

// What the simulator tells on standard output, one line at a time and at once:
//
//     sim: ready DIR              the devices are there
//     sim: panel opened ttyO1     and "closed"
//     sim: menus sent
//     sim: seed N                 when faults or a seed were asked for
//     sim: N of M frames came back     at the end of a replay, and what did not
//     panel: BODY                 a message from the panel, without its frame
//     panel (unframed): TEXT      what stood in no frame
//     trace: SECONDS in FRAME     with the trace switched on, everything that goes into the panel
//     trace: SECONDS out FRAME    and comes out of it, as the panel's own debug log has it
//
// BODY, TEXT and FRAME are printable ASCII: "\xHH" stands for the byte HH, "\\" for a backslash. So
// a BODY can be pasted into a menu file.
class Printer : public QObject
{
    Q_OBJECT

public:
    explicit Printer(bool trace, QObject* parent = nullptr);

    void event(const QString& text) const;
    void fromPanel(const QString& text, bool framed) const;
    void toPanel(const QByteArray& bytes) const;

    // Standard error, one line.
    static void error(const QString& text);

private:
    void traced(bool in, const QString& frame) const;

    bool m_trace;
};
