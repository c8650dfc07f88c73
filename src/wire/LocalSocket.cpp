#include "wire/LocalSocket.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <optional>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int MaxPendingConnections = 30;

std::optional<sockaddr_un> addressOf(const QString& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    if (static_cast<std::size_t>(name.size()) >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return std::nullopt;
    }
    std::copy(name.cbegin(), name.cend(), address.sun_path);
    return address;
}

const sockaddr* general(const sockaddr_un& address)
{
    return reinterpret_cast<const sockaddr*>(&address);
}

int newSocket()
{
    return ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

// Closes the socket and answers -1 with the errno of what failed before.
int giveUp(int socket)
{
    const int reason = errno;
    ::close(socket);
    errno = reason;
    return -1;
}

} // namespace

bool localSocket::isAbandoned(const QString& path)
{
    struct stat status = {};
    const auto address = addressOf(path);
    if (!address || ::stat(address->sun_path, &status) != 0 || !S_ISSOCK(status.st_mode)) {
        return false;
    }
    const int probe = newSocket();
    // One that is only busy, or that belongs to somebody else, does not refuse.
    const bool isRefused =
        ::connect(probe, general(*address), sizeof *address) != 0 && errno == ECONNREFUSED;
    ::close(probe);
    return isRefused;
}

int localSocket::listenAt(const QString& path, mode_t mode)
{
    const auto address = addressOf(path);
    const int socket = address ? newSocket() : -1;
    if (socket < 0) {
        return -1;
    }
    // From the beginning, with what the process's mask leaves of it; then with all of it.
    ::fchmod(socket, mode);
    const bool isBound = ::bind(socket, general(*address), sizeof *address) == 0;
    if (isBound && ::chmod(address->sun_path, mode) == 0 &&
        ::listen(socket, MaxPendingConnections) == 0) {
        return socket;
    }
    const int failed = giveUp(socket);
    if (isBound) {
        const int reason = errno;
        ::unlink(address->sun_path);
        errno = reason;
    }
    return failed;
}

int localSocket::connectTo(const QString& path)
{
    const auto address = addressOf(path);
    const int socket = address ? newSocket() : -1;
    if (socket >= 0 && ::connect(socket, general(*address), sizeof *address) != 0) {
        return giveUp(socket);
    }
    return socket;
}
