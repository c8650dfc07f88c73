#pragma once

#include "wire/LocalPeer.h"
#include "wire/RemoteProtocol.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <memory>

/// The way to the panel's socket, held only while somebody watches.
///
/// While the panel is not there, it is tried again every RetryTime. Each update that has come is
/// answered with the wish for the next one.
class PanelConnection : public QObject
{
    Q_OBJECT

public:
    /// The time from one try to the next.
    static constexpr std::chrono::milliseconds RetryTime{500};
    /// What may wait for a panel that does not read; then the connection is given up.
    static constexpr qint64 MaxUnsentBytes = 4096;

    /// \param path of the panel's socket
    explicit PanelConnection(QString path, QObject* parent = nullptr);

    /// \return whether the panel has said its hello.
    bool isUp() const { return m_greeted; }

    /// Connects, or ends the connection. \param wanted whether somebody watches
    void watch(bool wanted);
    /// Sends a finger, if the panel is there and takes one.
    void point(const remoteProtocol::Pointer& pointer);

signals:
    /// Emitted when the panel is there.
    void up(const remoteProtocol::Hello& hello);
    /// Emitted when the panel has gone, or does not greet at the first try.
    void down();
    /// Emitted for each part of the picture that has changed.
    void changed(const remoteProtocol::Rectangle& rectangle);
    /// Emitted when the picture is whole.
    void whole();

private:
    void tryToConnect();
    void take(const QByteArray& bytes);
    bool handle(const remoteProtocol::Message& message);
    void lose();
    void sayDown();
    void close();

    QString m_path;
    QTimer m_retry;
    std::unique_ptr<LocalPeer> m_peer;
    remoteProtocol::Cutter m_cutter{remoteProtocol::MaxPictureBytes};
    bool m_greeted = false;
    bool m_viewOnly = false;
    bool m_saidDown = false;
};
