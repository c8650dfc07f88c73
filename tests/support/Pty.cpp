#include "support/Pty.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace {
constexpr int MaxWriteMs = 5000;
} // namespace

Pty::Pty()
    : m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
{
    if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0) {
        qFatal("no pseudo-terminal");
    }
    termios settings{};
    ::tcgetattr(m_master, &settings);
    ::cfmakeraw(&settings);
    ::tcsetattr(m_master, TCSANOW, &settings);
    m_slavePath = QString::fromLocal8Bit(::ptsname(m_master));
}

Pty::~Pty()
{
    close();
}

bool Pty::isHungUp() const
{
    pollfd line{m_master, 0, 0};
    return ::poll(&line, 1, 0) == 1 && (line.revents & POLLHUP) != 0;
}

bool Pty::write(const QByteArray& bytes)
{
    QElapsedTimer elapsed;
    elapsed.start();
    qsizetype done = 0;
    while (done < bytes.size() && elapsed.elapsed() < MaxWriteMs) {
        const ssize_t n =
            ::write(m_master, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (n > 0) {
            done += n;
        } else if (isHungUp()) {
            break; // nobody is there who could read more
        } else {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
    }
    return done == bytes.size();
}

bool Pty::writeUntilRead(const QByteArray& bytes)
{
    const int slave = ::open(m_slavePath.toLocal8Bit().constData(), O_RDONLY | O_NOCTTY);
    const auto unread = [slave] {
        int count = -1;
        ::ioctl(slave, FIONREAD, &count);
        return count;
    };
    QElapsedTimer elapsed;
    elapsed.start();
    const auto inTime = [&elapsed] { return elapsed.elapsed() < MaxWriteMs; };
    // The kernel can deliver the bytes late, and the event loop has to run for them to be read.
    const bool written = slave >= 0 && write(bytes);
    while (written && unread() < bytes.size() && inTime()) {
    }
    while (written && unread() > 0 && inTime()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
    const bool read = written && unread() == 0;
    ::close(slave);
    return read;
}

QByteArray Pty::received()
{
    char buffer[4096];
    ssize_t n = 0;
    while (m_master >= 0 && (n = ::read(m_master, buffer, sizeof buffer)) > 0) {
        m_received.append(buffer, n);
    }
    return m_received;
}

QByteArray Pty::takeReceived()
{
    received();
    return std::exchange(m_received, QByteArray());
}

void Pty::close()
{
    if (m_master >= 0) {
        ::close(m_master);
        m_master = -1;
    }
}

DeviceDirectory::DeviceDirectory()
{
    qputenv("QN740_DEV", m_directory.path().toLocal8Bit());
}

DeviceDirectory::~DeviceDirectory()
{
    qunsetenv("QN740_DEV");
}

Pty& DeviceDirectory::add(const QString& name)
{
    remove(name);
    auto pty = std::make_unique<Pty>();
    QFile::link(pty->slavePath(), m_directory.filePath(name));
    return *(m_devices[name] = std::move(pty));
}

void DeviceDirectory::remove(const QString& name)
{
    QFile::remove(m_directory.filePath(name));
    m_devices.erase(name);
}

QByteArray framed(const char* body)
{
    return framed(QByteArray(body));
}

QByteArray framed(const QByteArray& body)
{
    return '\x02' + body + '\x04';
}
