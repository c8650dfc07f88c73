#pragma once

#include "sim/scope/ScopeFaults.h"
#include "sim/scope/SignalModel.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class PseudoTerminal;

/// A demodulator's scope port.
///
/// It sends what its mode asks for at the pace of a line of 115200 baud: 11,520 bytes or 7.5 I/Q
/// blocks per second, or ten SDI records per second. In the mode Off, and while nobody has the line
/// open, it sends nothing.
class ScopePort : public QObject
{
    Q_OBJECT

public:
    /// What the port sends, with the numbers of the demodulator's command "DSDM".
    enum Mode { Off = 0, Constellation = 1, EyePattern = 2, Sdi = 3 };

    static constexpr double BytesPerSecond = 11520.0; ///< of the line
    static constexpr int SdiRecordMs = 100;           ///< from one SDI record to the next

    /// \param line the unit's end of the port's line; must live longer than this
    /// \param seed of the signal's symbols and noise
    ScopePort(PseudoTerminal& line, const SignalSettings& signal, const ScopeFaults& faults,
        quint32 seed, QObject* parent = nullptr);

    /// Sets the mode. A number that is not in Mode changes nothing.
    void setMode(int mode);
    /// \return the mode, one of Mode
    int mode() const { return m_mode; }

    /// Sets the signal from the next block on. A block that has begun is sent to its end.
    void setSignal(const SignalSettings& signal) { m_signal.setSettings(signal); }

    /// Sends what the line carries in \a ms milliseconds. The port's own timer calls this at the
    /// pace of the clock.
    void pass(qint64 ms);

    /// \return how many blocks or records have begun
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
