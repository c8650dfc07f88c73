#include "support/LineEnd.h"

#include <fcntl.h>
#include <unistd.h>
#include <utility>

LineEnd::LineEnd(const QString& path)
    : m_fd(::open(path.toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
{
}

LineEnd::~LineEnd()
{
    close();
}

void LineEnd::close()
{
    if (m_fd >= 0) {
        ::close(std::exchange(m_fd, -1));
    }
}

bool LineEnd::write(const QByteArray& bytes) const
{
    return ::write(m_fd, bytes.constData(), static_cast<size_t>(bytes.size())) == bytes.size();
}

QByteArray LineEnd::read(int limit) const
{
    QByteArray bytes(limit, Qt::Uninitialized);
    const ssize_t count = ::read(m_fd, bytes.data(), static_cast<size_t>(limit));
    bytes.truncate(count < 0 ? 0 : count);
    return bytes;
}

const QByteArray& LineEnd::received()
{
    m_received += read();
    return m_received;
}
