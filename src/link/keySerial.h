#pragma once

#include "link/FrameCutter.h"
#include "wire/SerialLine.h"

#include <QObject>
#include <QString>

#include <memory>

/// The serial link to the main unit: collects the bytes of its line and hands on whole messages.
///
/// It does not send; LinkControl writes to port(). One message is handled to its end before the
/// next one is cut, also when its handler opens a modal editor.
class keySerial : public QObject
{
    Q_OBJECT

public:
    keySerial();
    ~keySerial() override;

    /// Looks at the serial ports of the system and does nothing with what it sees.
    void check_serial();

    /// Opens the line at 115200 baud. It is never opened again; a line that is lost stays closed.
    /// \return whether it is open. \param name a device without a directory ("ttyO1")
    bool open_serial(const QString& name);

    /// \return the device name that was opened; empty before.
    QString name() const;

    /// \return the port; nullptr before open_serial().
    QSerialPort* port();

    /// \return whether the line is open.
    bool isOpen() const;

    /// \return whether the line could not be opened because another program has it open.
    bool isTaken() const { return m_line && m_line->isTaken(); }

    /// \return how many bytes the port has that were not taken yet.
    qint64 unread() const;

    /// \return whether a message is being handled. As long as that is so, nothing is taken.
    bool isBusy() const { return m_handling; }

public slots:
    /// Takes what the port has, 1024 bytes at most, and emits the messages that are complete. If
    /// the port has more, the next turn comes from the event loop.
    void serial_data_in();

signals:
    /// Emitted once per message. \param message from its first character to its EOT
    void valid_mess_in(QString message);

    /// Emitted when bytes were taken, whatever they are, before the messages that they complete.
    void bytesReceived();

    /// Emitted when all messages of a turn are handled, before what they have sent leaves.
    void turnEnded();

    /// Emitted when open_serial() has tried to open the line, and when the line is lost.
    void openChanged();

private:
    QByteArray read();
    void takeNextTurn();

    std::unique_ptr<SerialLine> m_line;
    QByteArray m_rest; // what the port still had when the line was lost
    FrameCutter m_buffer;
    bool m_handling = false;
    bool m_turnQueued = false;
};
