#pragma once

#include <QObject>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>

class QSerialPort;

/// Has a serial port read less often and in larger pieces while a stream comes.
///
/// A serial adapter hands on what it has every few milliseconds. Each time the program wakes up,
/// which costs more than the decoding of the few bytes. After a read the port is therefore left
/// alone until the next multiple of the period: what comes meanwhile waits in the kernel, which
/// keeps at least 4,096 bytes, 355 ms at 115200 baud. Several ports with one period are read in one
/// turn of the event loop: their multiples are the same, and the first timer that runs out reads
/// all ports whose pause is about to end. The port is then made to read without listening to the
/// line again, because each change between listening and not costs a turn.
///
/// The beginning of a stream is read at once, and so is everything after a read that took a whole
/// block: more comes than expected, or the program is late. No timer runs without data.
class PortPace : public QObject
{
    Q_OBJECT

public:
    /// Bytes since the last silence from which on they are a stream.
    static constexpr qint64 StreamBytes = 1536;
    /// A read of so many bytes or more is followed by the next one at once.
    static constexpr qint64 LargeRead = 1536;
    /// The longest period for which a line at 115200 baud loses nothing, in milliseconds, with
    /// more than half of the kernel's 4,096 bytes left for a busy program.
    static constexpr int MaxPeriodMs = 150;

    /// Creates a pace that leaves \a port, which must live longer, as it is.
    explicit PortPace(QSerialPort& port, QObject* parent = nullptr);
    ~PortPace() override;

    /// Sets the time between two reads of a stream. A pause ends at once.
    /// \param ms in milliseconds, at most MaxPeriodMs; 0 reads everything as soon as it comes.
    void setPeriod(int ms);
    /// \return the time between two reads of a stream in milliseconds, 0 at first.
    int period() const { return m_period; }

    /// To be called after each read. \param bytes how many were read.
    void noteRead(qint64 bytes);

    /// \return whether the port is left alone just now.
    bool isPaused() const { return m_paused; }

private:
    void setReading(bool reading);
    void resume();
    void readNow();
    static void readDue();

    QSerialPort& m_port;
    QPointer<QSocketNotifier> m_notifier; // reports bytes to the port; goes when that is closed
    QTimer m_resume{this};
    int m_period = 0;
    qint64 m_lastReadMs = 0;
    qint64 m_streamed = 0; // bytes since the last silence
    bool m_paused = false;
};
