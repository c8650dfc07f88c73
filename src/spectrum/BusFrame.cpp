#include "spectrum/BusFrame.h"

#include "spectrum/Limits.h"

#include <numeric>

namespace bus {

namespace {

constexpr qsizetype HeaderSize = sizeof SpectrumHeader - 1;
constexpr qsizetype AddressAt = 1;
constexpr qsizetype CommandAt = 5;
constexpr qsizetype FieldSize = 4;

QString text(const QByteArray& bytes, qsizetype from, qsizetype size)
{
    // Quirk: a negative size runs to the end of the buffer. See "Quirks" in docs/architecture.md.
    return QString::fromLatin1(bytes.mid(from, size < 0 ? -1 : size));
}

struct Extent
{
    bool known;
    qsizetype from; // of the data
    qsizetype size; // of the data
};

Extent decimalExtent(const QByteArray& bytes)
{
    constexpr qsizetype From = HeaderSize + 4;
    if (bytes.size() < From) {
        return {false, 0, 0};
    }
    return {true, From, qMax(0, bytes.mid(HeaderSize, 4).toInt())};
}

Extent k7150Extent(const QByteArray& bytes)
{
    constexpr qsizetype From = HeaderSize + 2;
    if (bytes.size() < From) {
        return {false, 0, 0};
    }
    const auto high = static_cast<quint8>(bytes.at(HeaderSize));
    const auto low = static_cast<quint8>(bytes.at(HeaderSize + 1));
    // Quirk: one character more than the length says: the card counts its points only, and the
    // channel number comes before them. See "Quirks" in docs/architecture.md.
    return {true, From, high * 256 + low + 1};
}

} // namespace

char checksum(const QByteArray& bytes)
{
    const auto add = [](quint8 sum, char byte) {
        return static_cast<quint8>(sum + static_cast<quint8>(byte));
    };
    return static_cast<char>(std::accumulate(bytes.begin(), bytes.end(), quint8{0}, add));
}

QByteArray frame(const QString& request, char start, char end, bool withChecksum)
{
    QByteArray bytes = start + request.toLatin1() + end;
    if (withChecksum) {
        bytes += checksum(bytes);
    }
    return bytes;
}

QString requestOf(const QByteArray& frame, bool withChecksum)
{
    const qsizetype around = withChecksum ? 3 : 2;
    return QString::fromLatin1(frame.mid(1, qMax(qsizetype{0}, frame.size() - around)));
}

void ReplyBuffer::clear()
{
    m_bytes.resize(0); // keeps its capacity, so that the next reply needs no allocation
    m_searched = 0;
    m_open = -1;
    m_close = -1;
    m_header = false;
}

bool ReplyBuffer::findHeader()
{
    if (!m_header) {
        // The header may have begun in what was searched before.
        const qsizetype from = qMax(qsizetype{0}, m_searched - (HeaderSize - 1));
        const qsizetype at = m_bytes.indexOf(SpectrumHeader, from);
        m_header = at >= 0;
        if (at > 0) {
            m_bytes.remove(0, at);
        }
    }
    return m_header;
}

ReplyBuffer::Found ReplyBuffer::take(CmdMsg& reply, Layout layout)
{
    if (findHeader()) {
        return takeSpectrum(reply, layout);
    }
    const Found found = takeText(reply);
    m_searched = m_bytes.size();
    return found == Found::NeedMore && m_searched > spectrumLimits::MaxReplyBytes ? dropGarbage()
                                                                                  : found;
}

ReplyBuffer::Found ReplyBuffer::takeSpectrum(CmdMsg& reply, Layout layout)
{
    const Extent extent = layout == Layout::K7150 ? k7150Extent(m_bytes) : decimalExtent(m_bytes);
    if (!extent.known || m_bytes.size() < extent.from + extent.size) {
        return Found::NeedMore;
    }
    reply = CmdMsg(text(m_bytes, AddressAt, FieldSize), text(m_bytes, CommandAt, FieldSize),
        text(m_bytes, extent.from, extent.size));
    // Quirk: what comes behind a reply in the same read is dropped, here and in takeText(). See
    // "Quirks" in docs/architecture.md.
    clear();
    return Found::Spectrum;
}

ReplyBuffer::Found ReplyBuffer::takeText(CmdMsg& reply)
{
    if (m_open < 0) {
        m_open = m_bytes.indexOf('[', m_searched);
    }
    if (m_close < 0) {
        m_close = m_bytes.indexOf("]\r", qMax(qsizetype{0}, m_searched - 1));
    }
    if (m_open < 0 || m_close < 0) {
        return Found::NeedMore;
    }
    // An end before the start gives a negative size, and so does a frame without room for its
    // fields: in both cases text() runs to the end of what was received.
    const qsizetype dataAt = m_open + CommandAt + FieldSize;
    reply = CmdMsg(text(m_bytes, m_open + AddressAt, FieldSize),
        text(m_bytes, m_open + CommandAt, FieldSize), text(m_bytes, dataAt, m_close - dataAt));
    clear();
    return Found::Reply;
}

ReplyBuffer::Found ReplyBuffer::dropGarbage()
{
    // The last bytes may be the beginning of a header.
    const QByteArray tail = m_bytes.right(HeaderSize - 1);
    clear();
    m_bytes = tail;
    return Found::Garbage;
}

} // namespace bus
