#include "link/ResendLine.h"

#include "wire/Log.h"

namespace {
constexpr qint32 BaudRate = 115200;
} // namespace

ResendLine::ResendLine(QObject* parent)
    : QObject(parent)
    , m_line(new SerialLine(logScopes, this))
{
    connect(&m_line->port(), &QSerialPort::readyRead, this, &ResendLine::read);
    connect(&m_line->port(), &QSerialPort::errorOccurred, this, &ResendLine::takeError);
}

ResendLine::~ResendLine()
{
    m_line->port().disconnect(this); // closing the port may report an error
}

void ResendLine::open()
{
    m_line->open(QStringLiteral("ttyUSB4"), BaudRate, SerialLine::Reopen::EveryTwoSeconds);
}

void ResendLine::read()
{
    const auto messages = m_cutter.take(QString::fromLatin1(m_line->port().readAll()));
    for (const QString& message : messages) {
        emit received(message);
    }
}

void ResendLine::takeError(QSerialPort::SerialPortError error)
{
    if (error != QSerialPort::NoError) {
        m_cutter.clear();
    }
}
