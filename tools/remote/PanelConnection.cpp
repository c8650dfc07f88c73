#include "tools/remote/PanelConnection.h"

#include "wire/LocalSocket.h"

using remoteProtocol::Type;

PanelConnection::PanelConnection(QString path, QObject* parent)
    : QObject(parent)
    , m_path(std::move(path))
{
    m_retry.setInterval(RetryTime);
    connect(&m_retry, &QTimer::timeout, this, &PanelConnection::tryToConnect);
}

void PanelConnection::watch(bool wanted)
{
    if (!wanted) {
        m_retry.stop();
        close();
    } else if (m_peer == nullptr && !m_retry.isActive()) {
        m_saidDown = false;
        m_retry.start();
        tryToConnect();
    }
}

void PanelConnection::tryToConnect()
{
    if (m_peer != nullptr) {
        sayDown(); // It has not greeted in time; it still may.
        return;
    }
    const int socket = localSocket::connectTo(m_path);
    if (socket < 0) {
        sayDown();
        return;
    }
    m_cutter = remoteProtocol::Cutter(remoteProtocol::MaxPictureBytes);
    m_peer = std::make_unique<LocalPeer>(socket);
    // Queued, because the peer goes with what is called.
    connect(m_peer.get(), &LocalPeer::gone, this, &PanelConnection::lose, Qt::QueuedConnection);
    connect(m_peer.get(), &LocalPeer::received, this, &PanelConnection::take);
}

void PanelConnection::take(const QByteArray& bytes)
{
    m_cutter.append(bytes);
    bool good = true;
    while (const auto message = m_cutter.next()) {
        good = good && handle(*message);
    }
    if (!good || m_cutter.isBroken()) {
        QMetaObject::invokeMethod(this, &PanelConnection::lose, Qt::QueuedConnection);
    }
}

// Answers whether this is what a panel sends.
bool PanelConnection::handle(const remoteProtocol::Message& message)
{
    if (!m_greeted) {
        const auto hello = remoteProtocol::readHello(message.contents);
        if (message.type != static_cast<quint8>(Type::Hello) || !hello) {
            return false;
        }
        m_greeted = true;
        m_retry.stop();
        m_saidDown = false;
        m_viewOnly = hello->viewOnly;
        emit up(*hello);
        m_peer->send(remoteProtocol::wantMessage(true));
    } else if (message.type == static_cast<quint8>(Type::Rectangle)) {
        const auto rectangle = remoteProtocol::readRectangle(message.contents);
        if (!rectangle) {
            return false;
        }
        emit changed(*rectangle);
    } else if (message.type == static_cast<quint8>(Type::End)) {
        emit whole();
        m_peer->send(remoteProtocol::wantMessage(false));
    }
    return true;
}

void PanelConnection::point(const remoteProtocol::Pointer& pointer)
{
    if (!m_greeted || m_viewOnly) {
        return;
    }
    m_peer->send(remoteProtocol::pointerMessage(pointer));
    if (m_peer->unsent() > MaxUnsentBytes) {
        // A finger that was not lifted is lifted by the panel when its connection ends.
        QMetaObject::invokeMethod(this, &PanelConnection::lose, Qt::QueuedConnection);
    }
}

void PanelConnection::lose()
{
    if (m_peer == nullptr) {
        return;
    }
    close();
    m_retry.start();
    sayDown();
}

void PanelConnection::sayDown()
{
    if (!m_saidDown) {
        m_saidDown = true;
        emit down();
    }
}

void PanelConnection::close()
{
    m_peer.reset();
    m_greeted = false;
}
