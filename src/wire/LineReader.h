#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

/// One program that reads the lines of a LineServer.
///
/// What goes out by send() is written at once as far as the socket takes it; the rest waits here
/// and follows as the reader makes room. What the reader sends is thrown away.
class LineReader : public QObject
{
    Q_OBJECT

public:
    /// \param socket a connected socket that does not block; closed by the destructor
    explicit LineReader(int socket, QObject* parent = nullptr);
    ~LineReader() override;

    /// \return the bytes that wait for room in the socket.
    qint64 unsent() const { return m_unsent.size(); }

    /// Sends a block.
    void send(const QByteArray& block);

signals:
    /// Emitted when the reader has gone. It may be emitted more than once, also by send().
    void gone();

private:
    void throwAway();
    void sendUnsent();

    int m_socket;
    QSocketNotifier m_readable;
    QSocketNotifier m_writable;
    QByteArray m_unsent;
};
