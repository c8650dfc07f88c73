#include "wire/LocalPeer.h"

#include <array>
#include <cerrno>

#include <sys/socket.h>
#include <unistd.h>

namespace {

bool isOnlyLater()
{
    return errno == EAGAIN || errno == EINTR;
}

} // namespace

LocalPeer::LocalPeer(int socket, QObject* parent, qsizetype readBytes)
    : QObject(parent)
    , m_socket(socket)
    , m_readBytes(static_cast<std::size_t>(qBound(qsizetype{1}, readBytes, DefaultReadBytes)))
    , m_readable(socket, QSocketNotifier::Read)
    , m_writable(socket, QSocketNotifier::Write)
{
    m_writable.setEnabled(false);
    connect(&m_readable, &QSocketNotifier::activated, this, &LocalPeer::read);
    connect(&m_writable, &QSocketNotifier::activated, this, &LocalPeer::sendUnsent);
}

LocalPeer::~LocalPeer()
{
    m_readable.setEnabled(false);
    m_writable.setEnabled(false);
    ::close(m_socket);
}

void LocalPeer::read()
{
    std::array<char, DefaultReadBytes> bytes;
    const ssize_t count = ::recv(m_socket, bytes.data(), m_readBytes, 0);
    if (count > 0) {
        emit received(QByteArray::fromRawData(bytes.data(), count));
    } else if (count == 0 || !isOnlyLater()) {
        m_readable.setEnabled(false); // It would announce the end for ever.
        emit gone();
    }
}

void LocalPeer::send(const QByteArray& block)
{
    const bool waits = !m_unsent.isEmpty();
    m_unsent += block;
    if (!waits) {
        sendUnsent();
    }
}

void LocalPeer::sendUnsent()
{
    const ssize_t count = ::send(
        m_socket, m_unsent.constData(), static_cast<std::size_t>(m_unsent.size()), MSG_NOSIGNAL);
    if (count < 0 && !isOnlyLater()) {
        m_unsent.clear();
        m_writable.setEnabled(false);
        emit gone();
        return;
    }
    m_unsent.remove(0, qMax<ssize_t>(count, 0));
    const bool waited = m_writable.isEnabled();
    m_writable.setEnabled(!m_unsent.isEmpty());
    if (m_unsent.isEmpty()) {
        m_unsent = QByteArray(); // Its memory goes with it.
        if (waited) {
            emit sent();
        }
    }
}
