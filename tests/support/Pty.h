#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <map>
#include <memory>

// A real pseudo-terminal: the test holds the master and plays the other end of the line, the code
// under test opens the slave.
class Pty
{
public:
    Pty();
    ~Pty();
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;

    QString slavePath() const { return m_slavePath; }
    int master() const { return m_master; }

    // Writes all bytes, turning the event loop while the line is full. Out: whether all were taken
    // within five seconds.
    bool write(const QByteArray& bytes);

    // The same, and waits until the other end, in this program, has read them. Out: whether it has
    // within five seconds. Nothing may be unread before, and no more than 4,000 bytes are written.
    bool writeUntilRead(const QByteArray& bytes);

    // Everything that has come since the last call of takeReceived().
    QByteArray received();
    QByteArray takeReceived();

    // The other end goes away, as when a plug is pulled.
    void close();

private:
    int m_master = -1;
    QString m_slavePath;
    QByteArray m_received;
};

// A directory that takes the place of /dev for the time of its life: QN740_DEV names it.
class DeviceDirectory
{
public:
    DeviceDirectory();
    ~DeviceDirectory();
    DeviceDirectory(const DeviceDirectory&) = delete;
    DeviceDirectory& operator=(const DeviceDirectory&) = delete;

    // Makes a device of this name, in place of one that may be there, and answers its master side.
    Pty& add(const QString& name);
    void remove(const QString& name);
    QString path() const { return m_directory.path(); }

private:
    QTemporaryDir m_directory;
    std::map<QString, std::unique_ptr<Pty>> m_devices;
};

// STX + body + EOT as bytes.
QByteArray framed(const char* body);
QByteArray framed(const QByteArray& body);
