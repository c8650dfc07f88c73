#pragma once

#include <QLoggingCategory>
#include <QObject>
#include <QSerialPort>
#include <QTimer>

// One serial line of the unit, 8 data bits, no parity, 1 stop bit, no flow control.
//
// Devices are named as on the unit ("ttyO1") and looked up in the directory that the environment
// variable QN740_DEV names (/dev when it is unset), at each opening. A line whose other end goes
// away is closed at the first read, write or resource error and logged once: left open it would
// turn the event loop at full speed. A line with Reopen::EveryTwoSeconds is then tried again until
// it is back.
class SerialLine : public QObject
{
    Q_OBJECT

public:
    enum class Reopen { Never, EveryTwoSeconds };
    using Category = const QLoggingCategory& (*)();

    // category: where the line logs what happens to it (information: not opened; warning: lost).
    explicit SerialLine(Category category, QObject* parent = nullptr);
    ~SerialLine() override;

    // Opens the device for reading and writing. name: the device without a directory. baudRate: in
    // both directions, in bits per second. readBufferSize: in bytes, 0 for no limit. Out: whether
    // it is open; with Reopen::EveryTwoSeconds a line that is not will be tried again.
    bool open(const QString& name, qint32 baudRate, Reopen reopen = Reopen::Never,
        qint64 readBufferSize = 0);

    // Closes the line for good: it is not tried again.
    void close();

    bool isOpen() const { return m_port.isOpen(); }

    // The plain device name given to open(); empty before.
    QString name() const { return m_name; }

    // The port itself, to read, to write and for its readyRead().
    QSerialPort& port() { return m_port; }

    // In: a device name without a directory. Out: the path under which it is opened now.
    static QString devicePath(const QString& name);

signals:
    // The line has been opened: at the first try or at a later one.
    void opened();
    // The other end went away and the line is about to be closed: the last moment to read from
    // port() what came before.
    void losing();
    // The other end went away and the line was closed.
    void lost();

private:
    bool tryToOpen();
    void handleError(QSerialPort::SerialPortError error);

    Category m_category;
    QSerialPort m_port;
    QTimer m_retry;
    QString m_name;
    Reopen m_reopen = Reopen::Never;
};
