#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

/// The program at the other end of a local socket.
///
/// What goes out by send() is written at once as far as the socket takes it; the rest waits here
/// and follows as the other end makes room. Whoever sends looks at unsent() first, so that a
/// program that does not read cannot make this grow. What comes in is told by received().
class LocalPeer : public QObject
{
    Q_OBJECT

public:
    /// What is read in one turn of the event loop when nothing else is said, in bytes.
    static constexpr qsizetype DefaultReadBytes = 4096;

    /// \param socket a connected socket that does not block; closed by the destructor
    /// \param readBytes what is read in one turn of the event loop at most, up to DefaultReadBytes
    explicit LocalPeer(
        int socket, QObject* parent = nullptr, qsizetype readBytes = DefaultReadBytes);
    ~LocalPeer() override;

    /// \return the bytes that wait for room in the socket.
    qint64 unsent() const { return m_unsent.size(); }

    /// Sends a block.
    void send(const QByteArray& block);

signals:
    /// Emitted when bytes have come. \param bytes valid during the signal only
    void received(const QByteArray& bytes);
    /// Emitted when everything that had to wait was sent.
    void sent();
    /// Emitted when the other end has gone. It may be emitted more than once, also by send().
    void gone();

private:
    void read();
    void sendUnsent();

    int m_socket;
    std::size_t m_readBytes;
    QSocketNotifier m_readable;
    QSocketNotifier m_writable;
    QByteArray m_unsent;
};
