#pragma once

#include "spectrum/CmdMsg.h"

#include <QByteArray>

/// The frames and the queue of the RS-422 bus. No port, no timer, no widget.
///
/// Request: start character, text, end character, checksum byte.
/// Spectrum reply: "[0190RFFT", the length, that many bytes of any value; nothing behind them.
/// Text reply: "[", four characters address, four characters command, data, "]\r".
namespace bus {

/// How a spectrum reply gives its length.
enum class Layout {
    Decimal, ///< four decimal digits, then that many bytes
    K7150,   ///< two bytes, the high one first, then one byte more than they say
};

/// The bytes that every spectrum reply starts with.
///
/// Quirk: replies of other addresses are never spectra, they are read as text. See "Quirks" in
/// docs/architecture.md.
constexpr char SpectrumHeader[] = "[0190RFFT";

/// \return the 8-bit wrapping sum of all bytes.
char checksum(const QByteArray& bytes);

/// Frames a request. Characters above 255 become "?".
/// \param request the text to send.
/// \param start the character in front of it.
/// \param end the character behind it.
/// \param withChecksum whether a checksum byte follows.
/// \return the bytes to write.
QByteArray frame(const QString& request, char start, char end, bool withChecksum);

/// The inverse of frame().
/// \return the request without its framing.
QString requestOf(const QByteArray& frame, bool withChecksum);

/// The bytes received since the last reply. It is filled piece by piece and asked after each piece;
/// every byte is searched once, however small the pieces are.
class ReplyBuffer
{
public:
    /// What take() found.
    enum class Found {
        NeedMore, ///< no complete reply yet
        Reply,    ///< a text reply; the buffer is empty now: what came behind it is dropped
        Spectrum, ///< a spectrum; the buffer is empty now
        Garbage,  ///< more bytes than any reply has and no reply among them; they were dropped
    };

    /// Adds bytes as they come from the port.
    void append(const QByteArray& bytes) { m_bytes.append(bytes); }

    /// Looks for a reply in what has come so far.
    /// \param reply is set when the result is Found::Reply or Found::Spectrum.
    /// \param layout in which the card sends its spectra.
    Found take(CmdMsg& reply, Layout layout);

    /// Drops all bytes.
    void clear();
    /// The number of bytes that wait for the rest of their reply.
    qsizetype size() const { return m_bytes.size(); }

private:
    bool findHeader();
    Found takeSpectrum(CmdMsg& reply, Layout layout);
    Found takeText(CmdMsg& reply);
    Found dropGarbage();

    QByteArray m_bytes;
    qsizetype m_searched = 0; // bytes that the searches have seen
    qsizetype m_open = -1;    // the first "["
    qsizetype m_close = -1;   // the first "]\r"
    bool m_header = false;    // the buffer starts with the spectrum header
};

} // namespace bus
