#pragma once

#include "sim/scope/ScopeFaults.h"
#include "sim/scope/SignalModel.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class PseudoTerminal;

// A demodulator's scope port: sends what its mode asks for at the pace of a line of 115200 baud,
// 11,520 bytes or 7.5 I/Q blocks a second, or ten SDI records a second. While nobody has the line
// open, or in the mode "off", nothing is sent.
class ScopePort : public QObject
{
    Q_OBJECT

public:
    // As the demodulator is told by its command "DSDM".
    enum Mode { Off = 0, Constellation = 1, EyePattern = 2, Sdi = 3 };

    static constexpr double BytesPerSecond = 11520.0;
    static constexpr int SdiRecordMs = 100;

    // line: the unit's end of the port's line, which must live longer than this.
    ScopePort(PseudoTerminal& line, const SignalSettings& signal, const ScopeFaults& faults,
        quint32 seed, QObject* parent = nullptr);

    // Another number than those of Mode changes nothing.
    void setMode(int mode);
    int mode() const { return m_mode; }

    // What the next block is made of; one that is under way is sent to its end.
    void setSignal(const SignalSettings& signal) { m_signal.setSettings(signal); }

    // Lets this much time go by on the line: what it carries in that time is sent. The port's own
    // timer does so at the pace of the clock.
    void pass(qint64 ms);

    // How many blocks or records have been begun.
    int sentCount() const { return m_count; }

private:
    QByteArray next();

    PseudoTerminal& m_line;
    SignalModel m_signal;
    ScopeFaults m_faults;
    QTimer m_timer;
    QElapsedTimer m_clock;
    QByteArray m_waiting; // of the block under way
    double m_due = 0.0;   // bytes that the line would have carried and that are not sent yet
    qint64 m_lastMs = 0;  // of the clock, when the timer came last
    qint64 m_nowMs = 0;   // that has gone by on the line
    int m_mode = Off;
    int m_count = 0;
};
