#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <map>
#include <memory>

/// A real pseudo-terminal. The test holds the master and plays the other end of the line; the code
/// under test opens the slave.
class Pty
{
public:
    Pty();
    ~Pty();
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;

    QString slavePath() const { return m_slavePath; }
    int master() const { return m_master; }

    /// Writes all bytes and runs the event loop while the line is full.
    /// \return whether all bytes were taken within five seconds
    bool write(const QByteArray& bytes);

    /// Writes all bytes, at most 4,000, and waits until the other end, which is in this program,
    /// has read them. Everything written before must have been read. \return whether all bytes were
    /// read within five seconds
    bool writeUntilRead(const QByteArray& bytes);

    /// \return everything since the last call of takeReceived()
    QByteArray received();
    /// Like received(), but forgets the bytes afterwards.
    QByteArray takeReceived();

    /// Closes the line, as when a plug is pulled.
    void close();

private:
    bool isHungUp() const;

    int m_master = -1;
    QString m_slavePath;
    QByteArray m_received;
};

/// A directory that the panel uses in place of /dev during the lifetime of the object: QN740_DEV
/// names it.
class DeviceDirectory
{
public:
    DeviceDirectory();
    ~DeviceDirectory();
    DeviceDirectory(const DeviceDirectory&) = delete;
    DeviceDirectory& operator=(const DeviceDirectory&) = delete;

    /// Creates a device of this name and replaces an existing one. \return its master side
    Pty& add(const QString& name);
    void remove(const QString& name);
    QString path() const { return m_directory.path(); }

private:
    QTemporaryDir m_directory;
    std::map<QString, std::unique_ptr<Pty>> m_devices;
};

/// \return STX + body + EOT as bytes
QByteArray framed(const char* body);
QByteArray framed(const QByteArray& body);
