#include "app/RemoteWatcher.h"

#include "app/GlassPicture.h"
#include "wire/Log.h"

namespace {

// One or two messages in a turn of the event loop: a program that sends without end keeps neither
// the finger on the glass nor the main unit waiting. The rest stays in the socket.
constexpr qsizetype ReadBytes = 16;

void logIgnoredRequest(const char* reason, int type)
{
    qCDebug(logRemote) << "a request was ignored:" << reason << "type" << type;
}

} // namespace

RemoteWatcher::RemoteWatcher(int socket, const remoteProtocol::Hello& hello, QObject* parent)
    : QObject(parent)
    , m_peer(socket, nullptr, ReadBytes)
{
    connect(&m_peer, &LocalPeer::received, this, &RemoteWatcher::take);
    connect(&m_peer, &LocalPeer::gone, this, &RemoteWatcher::gone);
    connect(&m_peer, &LocalPeer::sent, this, [this] {
        if (m_wants) {
            emit waiting();
        }
    });
    m_peer.send(remoteProtocol::helloMessage(hello));
}

void RemoteWatcher::take(const QByteArray& bytes)
{
    m_cutter.append(bytes);
    while (const auto message = m_cutter.next()) {
        handle(*message);
    }
    if (m_cutter.isBroken()) {
        qCDebug(logRemote) << "a watcher was turned away: a length out of range";
        emit gone();
    }
}

void RemoteWatcher::handle(const remoteProtocol::Message& message)
{
    using remoteProtocol::Type;
    if (message.type == static_cast<quint8>(Type::Want)) {
        const auto whole = remoteProtocol::readWant(message.contents);
        whole ? want(*whole) : logIgnoredRequest("wrong contents", message.type);
    } else if (message.type == static_cast<quint8>(Type::Pointer)) {
        const auto pointer = remoteProtocol::readPointer(message.contents);
        pointer ? emit pointed(*pointer) : logIgnoredRequest("wrong contents", message.type);
    } else {
        logIgnoredRequest("unknown", message.type);
    }
}

void RemoteWatcher::want(bool whole)
{
    m_wantsWhole |= whole;
    m_wants = true;
    if (isWaiting()) {
        emit waiting();
    }
}

void RemoteWatcher::addChanged(const QBitArray& tiles)
{
    if (m_changed.isEmpty()) {
        m_changed = QBitArray(tiles.size());
    }
    m_changed |= tiles;
}

void RemoteWatcher::update(const GlassPicture& picture)
{
    if (!isWaiting()) {
        return;
    }
    if (m_wantsWhole) {
        m_changed = QBitArray(picture.tiles(), true);
    }
    if (m_changed.count(true) == 0) {
        return;
    }
    const QImage& image = picture.image();
    QByteArray block;
    for (const QRect& place : picture.rectangles(m_changed)) {
        const uchar* topLeft =
            image.constScanLine(place.y()) + qsizetype{place.x()} * remoteProtocol::PixelBytes;
        remoteProtocol::appendRectangle(block, place, topLeft, image.bytesPerLine());
    }
    m_changed.fill(false);
    m_wantsWhole = false;
    m_wants = false;
    m_peer.send(block + remoteProtocol::endMessage());
}
