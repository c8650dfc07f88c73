#pragma once

#include "sim/ScopeBytes.h"
#include "sim/SignalModel.h"

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

    // demodulator: 1 to 3. line: the unit's end of its line, which must live longer than this.
    ScopePort(int demodulator, PseudoTerminal& line, const SignalSettings& signal, int faults,
        quint32 seed, QObject* parent = nullptr);

    int demodulator() const { return m_demodulator; }

    // Another number than those of Mode changes nothing.
    void setMode(int mode);
    int mode() const { return m_mode; }

    // In: the body of a message from the panel. "D2:DSDM:1" sets the mode of demodulator 2.
    void takeCommand(const QString& body);
    // In: the body of a message to the panel. "SM,2,3" tells the mode of demodulator 2.
    void takeMessage(const QString& body);

    // How many blocks or records have been begun.
    int sentCount() const { return m_count; }

private:
    void send();
    QByteArray next();

    int m_demodulator;
    PseudoTerminal& m_line;
    SignalModel m_signal;
    ScopeFaults m_faults;
    QTimer m_timer;
    QElapsedTimer m_clock;
    QByteArray m_waiting; // of the block under way
    double m_due = 0.0;   // bytes that the line would have carried and that are not sent yet
    qint64 m_lastMs = 0;
    int m_mode = Off;
    int m_count = 0;
};
