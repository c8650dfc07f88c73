#pragma once

#include <QLoggingCategory>
#include <QObject>
#include <QSerialPort>
#include <QTimer>

/// One serial line of the unit: 8 data bits, no parity, 1 stop bit, no flow control.
///
/// Devices are named as on the unit ("ttyO1") and looked up in the directory that the environment
/// variable QN740_DEV names (/dev when it is unset), at each opening. A line whose other end goes
/// away is closed at the first read, write or resource error and logged once: left open it would
/// turn the event loop at full speed. A line with Reopen::EveryTwoSeconds is then tried again until
/// it is back.
class SerialLine : public QObject
{
    Q_OBJECT

public:
    /// What happens when the line cannot be opened, or is lost.
    enum class Reopen {
        Never,          ///< it stays closed
        EveryTwoSeconds ///< it is tried again every two seconds
    };

    /// What it means that the line cannot be opened.
    enum class Absence {
        IsNormal, ///< the device may be missing; logged as information
        IsAFault  ///< the panel cannot do without it; logged as a warning
    };

    /// A logging category, as Q_DECLARE_LOGGING_CATEGORY declares it.
    using Category = const QLoggingCategory& (*)();

    /// \param category where the line logs that it was not opened, or was lost (warning)
    /// \param absence what it means that the line cannot be opened
    explicit SerialLine(
        Category category, QObject* parent = nullptr, Absence absence = Absence::IsNormal);
    ~SerialLine() override;

    /// Opens the device for reading and writing. \return whether it is open; if not, it will be
    /// tried again when \a reopen says so.
    /// \param name the device without a directory
    /// \param baudRate in both directions, in bits per second
    /// \param reopen what happens when it cannot be opened, or is lost later
    /// \param readBufferSize in bytes, 0 for no limit
    bool open(const QString& name, qint32 baudRate, Reopen reopen = Reopen::Never,
        qint64 readBufferSize = 0);

    /// Closes the line for good: it is not tried again.
    void close();

    /// \return whether the line is open.
    bool isOpen() const { return m_port.isOpen(); }

    /// \return whether the last try to open the line failed because another program has it open.
    bool isTaken() const { return m_taken; }

    /// \return the plain device name given to open(); empty before.
    QString name() const { return m_name; }

    /// \return the port itself, to read, to write and for its readyRead().
    QSerialPort& port() { return m_port; }

    /// \return the path under which a device would be opened now. \param name without a directory
    static QString devicePath(const QString& name);

    /// Sends bytes: what the line takes at once goes out before this returns, and the port keeps
    /// the rest until the line takes more. The port alone would wait for the event loop to tell it
    /// that the line takes any, and then that it takes no more: three turns for each request.
    void write(const QByteArray& bytes);

signals:
    /// Emitted when the line has been opened, at the first try or at a later one.
    void opened();
    /// Emitted when the other end went away and the line is about to be closed: the last moment to
    /// read from port() what came before.
    void losing();
    /// Emitted when the other end went away and the line was closed.
    void lost();

private:
    bool isAbsent() const;
    bool tryToOpen();
    void handleError(QSerialPort::SerialPortError error);
    void logAbsence() const;
    QString reasonOfLoss() const;

    Category m_category;
    Absence m_absence;
    QSerialPort m_port;
    QTimer m_retry{this};
    QString m_name;
    Reopen m_reopen = Reopen::Never;
    bool m_taken = false;
};
