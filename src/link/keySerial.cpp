#include "link/keySerial.h"

#include "link/Limits.h"
#include "wire/Log.h"
#include "wire/Trace.h"

#include <QDirIterator>
#include <QScopedValueRollback>

namespace {
constexpr qint32 BaudRate = 115200;
constexpr qsizetype MaxBytesPerRead = 1024;
} // namespace

keySerial::keySerial() = default;

keySerial::~keySerial() = default;

void keySerial::check_serial()
{
    // Where they are opened. Asking QSerialPortInfo, which looks at each port's driver and its
    // place on the buses, took a twentieth of the whole start.
    QDirIterator ports(SerialLine::devicePath(QString()), QDir::System);
    while (ports.hasNext()) {
        ports.next();
    }
}

bool keySerial::open_serial(const QString& name)
{
    m_line = std::make_unique<SerialLine>(&logLink, nullptr, SerialLine::Absence::IsAFault);
    const bool ok =
        m_line->open(name, BaudRate, SerialLine::Reopen::Never, linkLimits::MaxBytesWaiting);
    connect(&m_line->port(), &QSerialPort::readyRead, this, &keySerial::serial_data_in);
    connect(m_line.get(), &SerialLine::losing, this, [this] {
        m_rest = m_line->port().readAll();
        takeNextTurn();
    });
    connect(m_line.get(), &SerialLine::lost, this, &keySerial::openChanged);
    m_buffer.clear();
    emit openChanged();
    return ok;
}

QString keySerial::name() const
{
    return m_line ? m_line->name() : QString();
}

QSerialPort* keySerial::port()
{
    return m_line ? &m_line->port() : nullptr;
}

bool keySerial::isOpen() const
{
    return m_line && m_line->isOpen();
}

qint64 keySerial::unread() const
{
    return isOpen() ? m_line->port().bytesAvailable() : m_rest.size();
}

void keySerial::serial_data_in()
{
    if (m_handling || !m_line) {
        return;
    }
    const QByteArray bytes = read();
    if (!bytes.isEmpty()) {
        emit bytesReceived();
    }
    m_buffer.append(bytes);
    {
        const QScopedValueRollback<bool> handling(m_handling, true);
        while (const auto message = m_buffer.next()) {
            qCDebug(logLink).noquote() << wire::TraceLine::now(true, *message).text();
            emit valid_mess_in(*message);
        }
    }
    emit turnEnded();
    takeNextTurn();
}

QByteArray keySerial::read()
{
    if (m_line->isOpen()) {
        return m_line->port().read(MaxBytesPerRead);
    }
    QByteArray bytes = m_rest.left(MaxBytesPerRead);
    m_rest.remove(0, MaxBytesPerRead);
    return bytes;
}

void keySerial::takeNextTurn()
{
    // Bytes that are left are not announced again until others follow them.
    if (m_turnQueued || (m_rest.isEmpty() && unread() == 0)) {
        return;
    }
    m_turnQueued = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_turnQueued = false;
            serial_data_in();
        },
        Qt::QueuedConnection);
}
