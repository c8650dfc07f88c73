#include "wire/RemoteProtocol.h"

#include <QtEndian>

namespace remoteProtocol {

namespace {

constexpr QLatin1String Magic("QN740");
constexpr quint8 BlueGreenRed = 1;
constexpr quint8 ViewOnly = 1;
constexpr quint8 Whole = 1;
constexpr quint8 Down = 1;

constexpr qsizetype LengthBytes = 4;
constexpr qsizetype HelloBytes = 13; // the magic word, version, width, height, format, flags
constexpr qsizetype PlaceBytes = 8;
constexpr qsizetype PointerBytes = 5;

template <class Number>
void put(QByteArray& to, Number value)
{
    const Number bytes = qToBigEndian(value);
    to.append(reinterpret_cast<const char*>(&bytes), sizeof bytes);
}

template <class Number>
Number get(const QByteArray& from, qsizetype at)
{
    return qFromBigEndian<Number>(from.constData() + at);
}

void putPlace(QByteArray& to, int number)
{
    put(to, static_cast<quint16>(qBound(0, number, Beside)));
}

int getPlace(const QByteArray& from, qsizetype at)
{
    return get<quint16>(from, at);
}

void putHead(QByteArray& to, Type type, qsizetype contentsBytes)
{
    put(to, static_cast<quint32>(contentsBytes + 1));
    put(to, static_cast<quint8>(type));
}

} // namespace

QByteArray helloMessage(const Hello& hello)
{
    QByteArray message;
    putHead(message, Type::Hello, HelloBytes);
    message += Magic.data();
    put(message, Version);
    putPlace(message, hello.size.width());
    putPlace(message, hello.size.height());
    put(message, BlueGreenRed);
    put(message, hello.viewOnly ? ViewOnly : quint8{0});
    return message;
}

QByteArray endMessage()
{
    QByteArray message;
    putHead(message, Type::End, 0);
    return message;
}

QByteArray wantMessage(bool whole)
{
    QByteArray message;
    putHead(message, Type::Want, 1);
    put(message, whole ? Whole : quint8{0});
    return message;
}

QByteArray pointerMessage(const Pointer& pointer)
{
    QByteArray message;
    putHead(message, Type::Pointer, PointerBytes);
    put(message, pointer.down ? Down : quint8{0});
    putPlace(message, pointer.at.x());
    putPlace(message, pointer.at.y());
    return message;
}

void appendRectangle(
    QByteArray& to, const QRect& place, const uchar* topLeft, qsizetype bytesPerLine)
{
    const qsizetype lineBytes = qsizetype{PixelBytes} * place.width();
    putHead(to, Type::Rectangle, PlaceBytes + lineBytes * place.height());
    for (const int number : {place.x(), place.y(), place.width(), place.height()}) {
        putPlace(to, number);
    }
    for (int y = 0; y < place.height(); ++y) {
        const qsizetype at = to.size();
        to.resize(at + lineBytes);
        // Blue first, whatever the byte order of this machine.
        qToLittleEndian<quint32>(topLeft + y * bytesPerLine, place.width(), to.data() + at);
    }
}

std::optional<Hello> readHello(const QByteArray& contents)
{
    const qsizetype at = Magic.size();
    if (contents.size() != HelloBytes || !contents.startsWith(Magic.data()) ||
        get<quint16>(contents, at) != Version || get<quint8>(contents, at + 6) != BlueGreenRed) {
        return std::nullopt;
    }
    const QSize size(getPlace(contents, at + 2), getPlace(contents, at + 4));
    if (size.isEmpty() || size.width() > MaxSide || size.height() > MaxSide) {
        return std::nullopt;
    }
    return Hello{size, (get<quint8>(contents, at + 7) & ViewOnly) != 0};
}

std::optional<Rectangle> readRectangle(const QByteArray& contents)
{
    if (contents.size() < PlaceBytes) {
        return std::nullopt;
    }
    const QRect place(
        getPlace(contents, 0), getPlace(contents, 2), getPlace(contents, 4), getPlace(contents, 6));
    const qint64 pixelBytes = qint64{PixelBytes} * place.width() * place.height();
    if (place.isEmpty() || contents.size() - PlaceBytes != pixelBytes) {
        return std::nullopt;
    }
    return Rectangle{place, contents.mid(PlaceBytes)};
}

std::optional<bool> readWant(const QByteArray& contents)
{
    if (contents.size() != 1) {
        return std::nullopt;
    }
    return (get<quint8>(contents, 0) & Whole) != 0;
}

std::optional<Pointer> readPointer(const QByteArray& contents)
{
    if (contents.size() != PointerBytes) {
        return std::nullopt;
    }
    return Pointer{
        {getPlace(contents, 1), getPlace(contents, 3)}, (get<quint8>(contents, 0) & Down) != 0};
}

std::optional<Message> Cutter::next()
{
    if (m_broken || m_bytes.size() < LengthBytes) {
        return std::nullopt;
    }
    const qsizetype length = get<quint32>(m_bytes, 0);
    if (length < 1 || length > m_maxBytes) {
        m_broken = true;
        m_bytes.clear();
        return std::nullopt;
    }
    if (m_bytes.size() < LengthBytes + length) {
        return std::nullopt;
    }
    Message message{get<quint8>(m_bytes, LengthBytes), m_bytes.mid(LengthBytes + 1, length - 1)};
    m_bytes.remove(0, LengthBytes + length);
    return message;
}

} // namespace remoteProtocol
