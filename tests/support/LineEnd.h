#pragma once

#include <QByteArray>
#include <QString>

/// The panel's end of a line whose other end is the code under test. It opens a path without Qt's
/// serial port and reads and writes plain bytes.
class LineEnd
{
public:
    /// Opens a terminal. Check isOpen() afterwards.
    explicit LineEnd(const QString& path);
    ~LineEnd();
    LineEnd(const LineEnd&) = delete;
    LineEnd& operator=(const LineEnd&) = delete;

    bool isOpen() const { return m_fd >= 0; }
    void close();

    /// \return whether all bytes were taken at once
    bool write(const QByteArray& bytes) const;

    /// \return the bytes that can be read now, at most \a limit of them
    QByteArray read(int limit = 65536) const;

    /// \return all bytes since the start, including those that can be read now
    const QByteArray& received();

private:
    int m_fd = -1;
    QByteArray m_received;
};
