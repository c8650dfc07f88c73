#pragma once

#include <QByteArray>
#include <QString>

// The panel's end of a line whose other end is played by the code under test: opens a path without
// Qt's serial port, reads and writes plain bytes.
class LineEnd
{
public:
    // path: a terminal; isOpen() tells whether it could be opened.
    explicit LineEnd(const QString& path);
    ~LineEnd();
    LineEnd(const LineEnd&) = delete;
    LineEnd& operator=(const LineEnd&) = delete;

    bool isOpen() const { return m_fd >= 0; }
    void close();

    // Out: whether all bytes were taken at once.
    bool write(const QByteArray& bytes) const;

    // Out: what is there now, at most `most` bytes of it.
    QByteArray read(int most = 65536) const;

    // Everything read since the start, with what is there now.
    const QByteArray& received();

private:
    int m_fd = -1;
    QByteArray m_received;
};
