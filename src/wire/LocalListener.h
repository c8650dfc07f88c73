#pragma once

#include <QLoggingCategory>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>

#include <sys/types.h>

/// A local socket where programs connect, from when it is made until its end.
///
/// An environment variable names the socket's path; when it is unset or empty, there is no socket.
/// One that a killed program has left behind is replaced. A socket that another program serves and
/// a file that is no socket are left alone, with a warning.
class LocalListener : public QObject
{
    Q_OBJECT

public:
    /// What gives the logging category, for example logScopes.
    using Category = const QLoggingCategory& (*)();

    /// What the socket is for.
    struct Purpose
    {
        const char* variable; ///< the environment variable that names it: "QN740_SCOPE_SOCKET"
        QString contents;     ///< what can be read there, for the warning: "spectra"
        mode_t mode;          ///< the permissions of the socket's file
        Category category;    ///< of the warning
    };

    /// Opens the socket if the environment variable names one.
    explicit LocalListener(const Purpose& purpose, QObject* parent = nullptr);
    ~LocalListener() override;

    /// \return whether the environment variable names a socket, be it open or not.
    bool isWanted() const { return m_wanted; }
    /// \return whether programs can connect.
    bool isListening() const { return m_notifier != nullptr; }

    /// Takes a program that could not be taken when it came, for want of a free file.
    void takeLate();

signals:
    /// Emitted for each program that connects. \param socket does not block; the receiver owns it
    void connected(int socket);

private:
    void listen(const QString& path, const Purpose& purpose);
    void take();

    QString m_path;
    int m_socket = -1;
    std::unique_ptr<QSocketNotifier> m_notifier; // while programs can connect
    bool m_wanted = false;
};
