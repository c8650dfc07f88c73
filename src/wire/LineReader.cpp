#include "wire/LineReader.h"

#include <array>
#include <cerrno>

#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr std::size_t ThrownAwayBytes = 4096; // per turn of the event loop

bool isOnlyLater()
{
    return errno == EAGAIN || errno == EINTR;
}

} // namespace

LineReader::LineReader(int socket, QObject* parent)
    : QObject(parent)
    , m_socket(socket)
    , m_readable(socket, QSocketNotifier::Read)
    , m_writable(socket, QSocketNotifier::Write)
{
    m_writable.setEnabled(false);
    connect(&m_readable, &QSocketNotifier::activated, this, &LineReader::throwAway);
    connect(&m_writable, &QSocketNotifier::activated, this, &LineReader::sendUnsent);
}

LineReader::~LineReader()
{
    m_readable.setEnabled(false);
    m_writable.setEnabled(false);
    ::close(m_socket);
}

void LineReader::throwAway()
{
    std::array<char, ThrownAwayBytes> bytes;
    const ssize_t count = ::recv(m_socket, bytes.data(), bytes.size(), 0);
    if (count == 0 || (count < 0 && !isOnlyLater())) {
        m_readable.setEnabled(false); // It would announce the end for ever.
        emit gone();
    }
}

void LineReader::send(const QByteArray& block)
{
    const bool waits = !m_unsent.isEmpty();
    m_unsent += block;
    if (!waits) {
        sendUnsent();
    }
}

void LineReader::sendUnsent()
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
    if (m_unsent.isEmpty()) {
        m_unsent = QByteArray(); // Its memory goes with it.
    }
    m_writable.setEnabled(!m_unsent.isEmpty());
}
