#include "wire/LocalListener.h"

#include "wire/LocalSocket.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <sys/socket.h>
#include <unistd.h>

LocalListener::LocalListener(const Purpose& purpose, QObject* parent)
    : QObject(parent)
{
    const QString path = qEnvironmentVariable(purpose.variable);
    if (!path.isEmpty()) {
        m_wanted = true;
        listen(QFileInfo(path).absoluteFilePath(), purpose);
    }
}

LocalListener::~LocalListener()
{
    if (isListening()) {
        m_notifier.reset();
        ::close(m_socket);
        QFile::remove(m_path);
    }
}

void LocalListener::listen(const QString& path, const Purpose& purpose)
{
    if (localSocket::isAbandoned(path)) {
        QFile::remove(path);
    }
    if (QFileInfo::exists(path)) {
        qCWarning(purpose.category).noquote()
            << "no" << purpose.contents << "at" << path << ": in use";
        return;
    }
    m_socket = localSocket::listenAt(path, purpose.mode);
    if (m_socket < 0) {
        qCWarning(purpose.category).noquote()
            << "no" << purpose.contents << "at" << path << ':' << qt_error_string(errno);
        return;
    }
    m_path = path;
    m_notifier = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &LocalListener::take);
}

void LocalListener::take()
{
    int socket = -1;
    while ((socket = ::accept4(m_socket, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC)) >= 0) {
        emit connected(socket);
    }
    // One that cannot be taken, for want of a free file, would be announced for ever: it waits for
    // takeLate().
    m_notifier->setEnabled(errno == EAGAIN || errno == EINTR || errno == ECONNABORTED);
}

void LocalListener::takeLate()
{
    if (isListening() && !m_notifier->isEnabled()) {
        take();
    }
}
