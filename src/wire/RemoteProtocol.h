#pragma once

#include <QByteArray>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <chrono>
#include <optional>

/// What goes over the socket of QN740_REMOTE_SOCKET, for both ends: docs/remote.md describes it.
///
/// A message is its length (four bytes, of what follows), its type (one byte) and its contents.
/// Numbers are big-endian. A function that reads takes a message's contents and answers nothing
/// when they are not as described.
namespace remoteProtocol {

/// The version of this description, sent in the hello.
inline constexpr quint16 Version = 1;
/// Bytes of a pixel: blue, green, red, and one that is not used.
inline constexpr int PixelBytes = 4;
/// What a message of the panel may be long, without its length.
inline constexpr qsizetype MaxPictureBytes = qsizetype{1024} * 1024;
/// What a message to the panel may be long, without its length.
inline constexpr qsizetype MaxRequestBytes = 16;
/// The widest and highest picture.
inline constexpr int MaxSide = 4096;
/// A coordinate that lies beside every picture: a finger that is lifted there presses nothing.
inline constexpr int Beside = 65535;
/// How often a watcher says again where its finger is, while that is down.
inline constexpr std::chrono::milliseconds RepeatTime{1000};
/// After so long without that, the panel lifts the finger beside the picture.
inline constexpr std::chrono::milliseconds MaxSilence{3000};

/// What a message is.
enum class Type : quint8 {
    Hello = 1,     ///< from the panel, the first message: version, size, format, view-only
    Rectangle = 2, ///< from the panel: a part of the picture has changed
    End = 3,       ///< from the panel: the picture is whole again
    Want = 16,     ///< to the panel: the next change is wanted
    Pointer = 17   ///< to the panel: a finger; said again every RepeatTime while it is down
};

/// The first message of the panel.
struct Hello
{
    QSize size;            ///< of the picture, in pixels
    bool viewOnly = false; ///< whether the panel takes no finger
};

/// A part of the picture.
struct Rectangle
{
    QRect place;       ///< where it is
    QByteArray pixels; ///< from left to right, from top to bottom
};

/// A finger on the picture.
struct Pointer
{
    QPoint at;         ///< where it is, or was lifted; 0 to Beside
    bool down = false; ///< whether it touches
};

/// A message that was cut out of the stream.
struct Message
{
    quint8 type = 0;     ///< a Type, or one that this version does not know
    QByteArray contents; ///< what follows the type
};

/// \return the whole message
///@{
QByteArray helloMessage(const Hello& hello);
QByteArray endMessage();
QByteArray wantMessage(bool whole);
QByteArray pointerMessage(const Pointer& pointer);
///@}

/// Appends the message of a rectangle. \param topLeft its first pixel, blue in the lowest byte of a
/// 32-bit word \param bytesPerLine from a pixel to the one below it
void appendRectangle(
    QByteArray& to, const QRect& place, const uchar* topLeft, qsizetype bytesPerLine);

/// \return what a message's contents say, nothing when they are not as they should be
///@{
std::optional<Hello> readHello(const QByteArray& contents);
std::optional<Rectangle> readRectangle(const QByteArray& contents);
std::optional<Pointer> readPointer(const QByteArray& contents);
///@}

/// \return whether the whole picture is wanted, nothing when the contents are not as they should be
std::optional<bool> readWant(const QByteArray& contents);

/// Cuts messages out of a stream of bytes.
class Cutter
{
public:
    /// \param maxBytes what a message may be long, without its length
    explicit Cutter(qsizetype maxBytes)
        : m_maxBytes(maxBytes)
    {
    }

    /// Adds what has come.
    void append(const QByteArray& bytes) { m_bytes += bytes; }
    /// \return the next message, nothing when it is not whole yet or the stream is broken.
    std::optional<Message> next();
    /// \return whether a length was out of range; nothing that follows can be found.
    bool isBroken() const { return m_broken; }

private:
    qsizetype m_maxBytes;
    QByteArray m_bytes;
    bool m_broken = false;
};

} // namespace remoteProtocol
