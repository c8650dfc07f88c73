#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>

// What the simulator tells on standard output, one line at a time and at once:
//
//     sim: ready DIR              the devices are there
//     sim: panel opened ttyO1     and "closed"
//     sim: menus sent
//     panel: BODY                 a message from the panel, without its frame
//     panel (unframed): TEXT      what stood in no frame
//     trace: SECONDS > BODY       with the trace switched on, every message to (>) and from (<) the
//     trace: SECONDS < BODY       panel; seconds since the start
//
// BODY and TEXT are printable ASCII: "\xHH" stands for the byte HH, "\\" for a backslash. So each
// can be pasted into a menu file.
class Printer : public QObject
{
    Q_OBJECT

public:
    explicit Printer(bool trace, QObject* parent = nullptr);

    void event(const QString& text) const;
    void fromPanel(const QString& text, bool framed) const;
    void toPanel(const QString& body) const;

    // Standard error, one line.
    static void error(const QString& text);

private:
    void traced(char direction, const QString& text) const;

    QElapsedTimer m_since;
    bool m_trace;
};
