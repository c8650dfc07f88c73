#pragma once

#include <QByteArray>

// Finds the SDI records of a demodulator's scope port: the start byte 0xFF and the five bytes after
// it.
//
// Its unit of input is one read of the port, because what it finds depends on where a read begins:
// the first byte of every read is passed over unseen, and behind the last one it sees a zero byte.
// A record that is cut by the end of a read so has a zero in place of the byte that begins the next
// one. Kept so: the senders put a byte in front. At most one record comes out of a read, and what
// follows it in that read is discarded.
class SdiDecoder
{
public:
    static constexpr int RecordBytes = 5;
    static constexpr char StartByte = '\xff';

    // In: everything that one read gave. Out: the record that it completes, five bytes; empty when
    // it completes none.
    QByteArray read(const QByteArray& bytes);

    // A start byte has been seen and its record is being collected.
    bool started() const { return m_started; }

private:
    QByteArray m_record;
    bool m_started = false;
};
