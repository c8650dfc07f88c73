#include "wire/SerialLine.h"

#include <QFileInfo>

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace {

constexpr int RetryMs = 2000;

bool hungUp(int descriptor)
{
    pollfd state{descriptor, 0, 0};
    return ::poll(&state, 1, 0) > 0 && (state.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
}

// A device that cannot be locked, although its rights would allow it.
bool lockedByAnother(const QSerialPort& port, const QFileInfo& device)
{
    return port.error() == QSerialPort::PermissionError && device.isReadable() &&
        device.isWritable();
}

} // namespace

SerialLine::SerialLine(Category category, QObject* parent, Absence absence)
    : QObject(parent)
    , m_category(category)
    , m_absence(absence)
{
    m_retry.setInterval(RetryMs);
    connect(&m_retry, &QTimer::timeout, this, &SerialLine::tryToOpen);
    connect(&m_port, &QSerialPort::errorOccurred, this, &SerialLine::handleError);
}

SerialLine::~SerialLine()
{
    // The port reports its own closing, at a time when this object is no longer whole.
    m_port.disconnect(this);
}

QString SerialLine::devicePath(const QString& name)
{
    const QString directory = qEnvironmentVariable("QN740_DEV", QStringLiteral("/dev"));
    return directory + QLatin1Char('/') + name;
}

bool SerialLine::open(const QString& name, qint32 baudRate, Reopen reopen, qint64 readBufferSize)
{
    m_name = name;
    m_reopen = reopen;
    m_port.setBaudRate(baudRate);
    m_port.setDataBits(QSerialPort::Data8);
    m_port.setParity(QSerialPort::NoParity);
    m_port.setStopBits(QSerialPort::OneStop);
    m_port.setFlowControl(QSerialPort::NoFlowControl);
    m_port.setReadBufferSize(readBufferSize);
    const bool ok = tryToOpen();
    if (!ok) {
        logAbsence();
    }
    return ok;
}

void SerialLine::logAbsence() const
{
    const QString reason = isAbsent() ? qt_error_string(ENOENT) : m_port.errorString();
    const QString text = QStringLiteral("%1 was not opened: %2").arg(m_name, reason);
    if (m_absence == Absence::IsAFault) {
        qCWarning(m_category).noquote() << text;
    } else {
        qCInfo(m_category).noquote() << text;
    }
}

void SerialLine::close()
{
    m_reopen = Reopen::Never;
    m_retry.stop();
    m_port.close();
}

void SerialLine::write(const QByteArray& bytes)
{
    // What waits in the port comes first. An error is the port's to find and to report.
    const bool waits = !m_port.isOpen() || m_port.bytesToWrite() > 0;
    const ssize_t taken =
        waits ? 0 : ::write(m_port.handle(), bytes.constData(), static_cast<size_t>(bytes.size()));
    if (taken < bytes.size()) {
        m_port.write(taken > 0 ? bytes.mid(taken) : bytes);
    }
}

bool SerialLine::isAbsent() const
{
    return !QFileInfo::exists(devicePath(m_name));
}

bool SerialLine::tryToOpen()
{
    const QString path = devicePath(m_name);
    m_port.setPortName(path);
    // The port would make a lock file and bring it to the disk before it looks for the device.
    const bool ok = !isAbsent() && m_port.open(QIODevice::ReadWrite);
    m_taken = !ok && lockedByAnother(m_port, QFileInfo(path));
    if (ok) {
        m_retry.stop();
        emit opened();
    } else if (m_reopen == Reopen::EveryTwoSeconds && !m_retry.isActive()) {
        m_retry.start();
    }
    return ok;
}

void SerialLine::handleError(QSerialPort::SerialPortError error)
{
    const bool gone = error == QSerialPort::ReadError || error == QSerialPort::WriteError ||
        error == QSerialPort::ResourceError;
    if (!gone || !m_port.isOpen()) {
        return;
    }
    qCWarning(m_category).noquote() << m_name << "was lost:" << reasonOfLoss();
    emit losing();
    m_port.close();
    if (m_reopen == Reopen::EveryTwoSeconds) {
        m_retry.start();
    }
    emit lost();
}

// The port's own text is that of whatever call failed last, which may have nothing to do with it.
QString SerialLine::reasonOfLoss() const
{
    const QFileInfo device(devicePath(m_name));
    if (!device.isSymLink() && !device.exists()) {
        return QStringLiteral("the device is gone");
    }
    if (hungUp(m_port.handle())) {
        return QStringLiteral("the other end has hung up");
    }
    return m_port.errorString();
}
