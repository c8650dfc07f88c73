#pragma once

#include "wire/LocalListener.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

class LocalPeer;

/// A local socket from which any number of programs, up to MaxReaders, read the same data.
///
/// An environment variable names the socket's path; when it is unset or empty, there is no socket.
/// Data go out in blocks of one or more lines. A reader that does not keep up loses whole blocks:
/// what it has not taken yet is bounded, and a block for which there is no room is dropped for that
/// reader. What readers send is thrown away. The socket is open to the panel's user and group.
class LineServer : public QObject
{
    Q_OBJECT

public:
    /// The number of readers that are served at the same time; further ones are turned away.
    static constexpr int MaxReaders = 8;
    /// A reader's backlog in bytes beyond which blocks are dropped.
    static constexpr qint64 MaxBacklogBytes = qint64{512} * 1024;

    /// What gives the logging category, for example logScopes.
    using Category = LocalListener::Category;

    /// Opens the socket if the environment variable names one. A socket that another program serves
    /// and a file that is no socket are left alone, with a warning.
    /// \param variable name of the environment variable, such as "QN740_SCOPE_SOCKET".
    /// \param contents what can be read there, for the warning: "spectra".
    LineServer(const char* variable, const QString& contents, Category category,
        QObject* parent = nullptr);
    ~LineServer() override;

    /// \return whether the environment variable names a socket, be it open or not.
    bool isWanted() const { return m_listener.isWanted(); }
    /// \return whether readers can connect.
    bool isListening() const { return m_listener.isListening(); }
    /// \return the number of readers that are connected.
    int readers() const { return static_cast<int>(m_readers.size()); }
    /// \return the bytes that the slowest reader has not taken yet.
    qint64 backlog() const;

    /// Sends a block to all readers that have room for it.
    /// \param block whole lines, each with its line feed.
    void send(const QByteArray& block);

private:
    void addReader(int socket);
    void forget(LocalPeer* reader);

    LocalListener m_listener;
    QList<LocalPeer*> m_readers;
};
