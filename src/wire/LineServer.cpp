#include "wire/LineServer.h"

#include "wire/LineReader.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <optional>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int MaxPendingReaders = 30;
constexpr mode_t UserAndGroup = 0660;

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

// Whether a panel that was killed has left this socket behind, and nobody serves it now.
bool isAbandoned(const QString& path)
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

// Makes a socket at the path and listens there. Answers -1 and sets errno when that fails.
int listenAt(const QString& path)
{
    const auto address = addressOf(path);
    const int socket = address ? newSocket() : -1;
    if (socket < 0) {
        return -1;
    }
    // From the beginning, with what the process's mask leaves of it; then with all of it.
    ::fchmod(socket, UserAndGroup);
    const bool isBound = ::bind(socket, general(*address), sizeof *address) == 0;
    if (isBound && ::chmod(address->sun_path, UserAndGroup) == 0 &&
        ::listen(socket, MaxPendingReaders) == 0) {
        return socket;
    }
    const int reason = errno;
    ::close(socket);
    if (isBound) {
        ::unlink(address->sun_path);
    }
    errno = reason;
    return -1;
}

} // namespace

LineServer::LineServer(
    const char* variable, const QString& contents, Category category, QObject* parent)
    : QObject(parent)
{
    const QString path = qEnvironmentVariable(variable);
    if (!path.isEmpty()) {
        m_wanted = true;
        listen(QFileInfo(path).absoluteFilePath(), contents, category);
    }
}

LineServer::~LineServer()
{
    for (LineReader* reader : std::as_const(m_readers)) {
        reader->disconnect(this);
    }
    if (isListening()) {
        m_notifier.reset();
        ::close(m_socket);
        QFile::remove(m_path);
    }
}

void LineServer::listen(const QString& path, const QString& contents, Category category)
{
    if (isAbandoned(path)) {
        QFile::remove(path);
    }
    if (QFileInfo::exists(path)) {
        qCWarning(category).noquote() << "no" << contents << "at" << path << ": in use";
        return;
    }
    m_socket = listenAt(path);
    if (m_socket < 0) {
        qCWarning(category).noquote()
            << "no" << contents << "at" << path << ':' << qt_error_string(errno);
        return;
    }
    m_path = path;
    m_notifier = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &LineServer::takeReaders);
}

void LineServer::takeReaders()
{
    int socket = -1;
    while ((socket = ::accept4(m_socket, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC)) >= 0) {
        addReader(socket);
    }
    // One that cannot be taken, for want of a free file, would be announced for ever: it waits for
    // the next block.
    m_notifier->setEnabled(errno == EAGAIN || errno == EINTR || errno == ECONNABORTED);
}

void LineServer::addReader(int socket)
{
    if (m_readers.size() >= MaxReaders) {
        ::close(socket);
        return;
    }
    auto* reader = new LineReader(socket, this);
    connect(reader, &LineReader::gone, this, [this, reader] { forget(reader); });
    m_readers += reader;
}

void LineServer::forget(LineReader* reader)
{
    if (m_readers.removeOne(reader)) {
        reader->deleteLater();
    }
}

qint64 LineServer::backlog() const
{
    qint64 slowest = 0;
    for (const LineReader* reader : m_readers) {
        slowest = qMax(slowest, reader->unsent());
    }
    return slowest;
}

void LineServer::send(const QByteArray& block)
{
    if (isListening() && !m_notifier->isEnabled()) {
        takeReaders();
    }
    const QList<LineReader*> readers = m_readers; // a copy, because sending may find one gone
    for (LineReader* reader : readers) {
        if (reader->unsent() + block.size() <= MaxBacklogBytes) {
            reader->send(block);
        }
    }
}
