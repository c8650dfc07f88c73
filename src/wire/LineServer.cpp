#include "wire/LineServer.h"

#include "wire/LocalPeer.h"

#include <unistd.h>

namespace {

constexpr mode_t UserAndGroup = 0660;

} // namespace

LineServer::LineServer(
    const char* variable, const QString& contents, Category category, QObject* parent)
    : QObject(parent)
    , m_listener({variable, contents, UserAndGroup, category})
{
    connect(&m_listener, &LocalListener::connected, this, &LineServer::addReader);
}

LineServer::~LineServer()
{
    for (LocalPeer* reader : std::as_const(m_readers)) {
        reader->disconnect(this);
    }
}

void LineServer::addReader(int socket)
{
    if (m_readers.size() >= MaxReaders) {
        ::close(socket);
        return;
    }
    auto* reader = new LocalPeer(socket, this);
    connect(reader, &LocalPeer::gone, this, [this, reader] { forget(reader); });
    m_readers += reader;
}

void LineServer::forget(LocalPeer* reader)
{
    if (m_readers.removeOne(reader)) {
        reader->deleteLater();
    }
}

qint64 LineServer::backlog() const
{
    qint64 slowest = 0;
    for (const LocalPeer* reader : m_readers) {
        slowest = qMax(slowest, reader->unsent());
    }
    return slowest;
}

void LineServer::send(const QByteArray& block)
{
    m_listener.takeLate();
    const QList<LocalPeer*> readers = m_readers; // a copy, because sending may find one gone
    for (LocalPeer* reader : readers) {
        if (reader->unsent() + block.size() <= MaxBacklogBytes) {
            reader->send(block);
        }
    }
}
