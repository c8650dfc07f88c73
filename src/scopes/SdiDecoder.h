#pragma once

#include <QByteArray>

/// Finds the SDI records on a demodulator's scope port: the start byte 0xFF and the five bytes
/// after it.
///
/// Its unit of input is one read of the port, because what it finds depends on where a read begins:
/// the first byte of every read is skipped, and a zero byte is assumed after the last one. A record
/// that is cut by the end of a read therefore has a zero in place of the byte that begins the next
/// read. At most one record comes out of a read; what follows it in that read is discarded.
///
/// Quirk: that the first byte of a read is skipped and a zero follows the last one is how senders
/// expect it; they put a byte in front. See "Quirks" in docs/architecture.md.
class SdiDecoder
{
public:
    static constexpr int RecordBytes = 5;     ///< Bytes of a record, without the start byte.
    static constexpr char StartByte = '\xff'; ///< Stands in front of each record.

    /// \param bytes everything that one read of the port returned.
    /// \return the record that it completes, five bytes; empty when it completes none.
    QByteArray read(const QByteArray& bytes);

    /// \return whether a start byte has been seen and its record is being collected.
    bool started() const { return m_started; }

private:
    QByteArray m_record;
    bool m_started = false;
};
