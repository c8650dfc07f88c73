#pragma once

#include "wire/LocalPeer.h"
#include "wire/RemoteProtocol.h"

#include <QBitArray>
#include <QObject>

class GlassPicture;

/// A program that looks at the panel from afar: what it wants, and what of the picture it has not
/// got yet.
///
/// It gets one update for each that it asks for, and only when it has taken the one before. So what
/// waits for it is one picture at most, and one that does not read costs nothing. What it sends and
/// makes no sense is ignored with a line in the log; one whose messages cannot be told apart any
/// more is turned away.
class RemoteWatcher : public QObject
{
    Q_OBJECT

public:
    /// Greets the program. \param socket connected to it; closed by the destructor
    RemoteWatcher(int socket, const remoteProtocol::Hello& hello, QObject* parent = nullptr);

    /// \return whether an update is wanted and there is room for it.
    bool isWaiting() const { return m_wants && m_peer.unsent() == 0; }
    /// \return the bytes that it has not taken yet.
    qint64 unsent() const { return m_peer.unsent(); }

    /// Notes that these tiles of the picture have changed.
    void addChanged(const QBitArray& tiles);
    /// Sends what has changed, if there is anything and the program is waiting.
    void update(const GlassPicture& picture);

signals:
    /// Emitted when isWaiting() has become true.
    void waiting();
    /// Emitted when a finger has come.
    void pointed(const remoteProtocol::Pointer& pointer);
    /// Emitted when the program has gone. It may be emitted more than once.
    void gone();

private:
    void take(const QByteArray& bytes);
    void handle(const remoteProtocol::Message& message);
    void want(bool whole);

    LocalPeer m_peer;
    remoteProtocol::Cutter m_cutter{remoteProtocol::MaxRequestBytes};
    QBitArray m_changed; // tiles that it has not got; empty as long as it has got none
    bool m_wantsWhole = true;
    bool m_wants = false;
};
