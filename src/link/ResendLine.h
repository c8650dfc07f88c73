#pragma once

#include "link/ResendCutter.h"
#include "wire/SerialLine.h"

#include <QObject>
#include <QString>

/// The line "ttyUSB4", on which finished messages come in that the panel passes on to the main
/// unit.
///
/// What the port has goes through a ResendCutter; each whole message leaves by received(), so that
/// the link mode finds a command whole. A line that is not there, or goes away, is tried again
/// every two seconds.
class ResendLine : public QObject
{
    Q_OBJECT

public:
    /// Does not open the line yet.
    explicit ResendLine(QObject* parent = nullptr);
    ~ResendLine() override;

    /// Opens "ttyUSB4" at 115200 baud, now or as soon as it is there.
    void open();

public slots:
    /// Reads everything that the port has and emits the messages that are complete.
    void read();

    /// An error of the port other than NoError makes what follows the beginning of another message.
    void takeError(QSerialPort::SerialPortError error);

signals:
    /// Emitted when a message is complete. \param message with its frame characters
    void received(const QString& message);

private:
    ResendCutter m_cutter;
    SerialLine* m_line;
};
