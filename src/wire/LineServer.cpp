#include "wire/LineServer.h"

#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>

#include <sys/stat.h>

namespace {

constexpr int ProbeMs = 100;
constexpr qint64 MaxUnreadBytes = 4096;

// Whether a panel that was killed has left this socket behind, and nobody serves it now.
bool isAbandoned(const QString& path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISSOCK(status.st_mode)) {
        return false;
    }
    QLocalSocket probe;
    probe.connectToServer(path);
    // One that is only busy, or that belongs to somebody else, does not refuse.
    return !probe.waitForConnected(ProbeMs) &&
        probe.error() == QLocalSocket::ConnectionRefusedError;
}

} // namespace

LineServer::LineServer(
    const char* variable, const QString& contents, Category category, QObject* parent)
    : QObject(parent)
{
    connect(&m_server, &QLocalServer::newConnection, this, &LineServer::takeReaders);
    const QString path = qEnvironmentVariable(variable);
    if (!path.isEmpty()) {
        m_wanted = true;
        // QLocalServer would put a relative path into the directory for temporary files.
        listen(QFileInfo(path).absoluteFilePath(), contents, category);
    }
}

LineServer::~LineServer()
{
    for (QLocalSocket* reader : std::as_const(m_readers)) {
        reader->disconnect(this);
        reader->abort();
    }
}

void LineServer::listen(const QString& path, const QString& contents, Category category)
{
    if (isAbandoned(path)) {
        QFile::remove(path);
    }
    // Listening would replace whatever stands there.
    if (QFileInfo::exists(path)) {
        qCWarning(category).noquote() << "no" << contents << "at" << path << ": in use";
        return;
    }
    m_server.setSocketOptions(QLocalServer::UserAccessOption | QLocalServer::GroupAccessOption);
    if (!m_server.listen(path)) {
        qCWarning(category).noquote()
            << "no" << contents << "at" << path << ':' << m_server.errorString();
    }
}

void LineServer::takeReaders()
{
    while (QLocalSocket* reader = m_server.nextPendingConnection()) {
        if (m_readers.size() >= MaxReaders) {
            reader->abort();
            reader->deleteLater();
            continue;
        }
        reader->setReadBufferSize(MaxUnreadBytes);
        connect(reader, &QLocalSocket::readyRead, reader, [reader] { reader->readAll(); });
        connect(reader, &QLocalSocket::disconnected, this, [this, reader] { forget(reader); });
        m_readers += reader;
    }
}

void LineServer::forget(QLocalSocket* reader)
{
    m_readers.removeOne(reader);
    reader->deleteLater();
}

qint64 LineServer::backlog() const
{
    qint64 slowest = 0;
    for (const QLocalSocket* reader : m_readers) {
        slowest = qMax(slowest, reader->bytesToWrite());
    }
    return slowest;
}

void LineServer::send(const QByteArray& block)
{
    const QList<QLocalSocket*> readers =
        m_readers; // a copy, because writing may make a reader disconnect
    for (QLocalSocket* reader : readers) {
        if (reader->bytesToWrite() + block.size() <= MaxBacklogBytes) {
            reader->write(block);
        }
    }
}
