#include "support/RfbClient.h"

#include <QHostAddress>
#include <QRegion>
#include <QTcpServer>
#include <QThread>
#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace {

constexpr int RetryMs = 50;
constexpr quint8 NoSecurity = 1;
constexpr quint8 LeftButton = 1;
constexpr qint32 RawEncoding = 0;
constexpr int BytesPerPixel = 4;
constexpr qint64 MaxTextLength = 1024 * 1024; // of a name, a reason or a clipboard

// Types of the server's messages.
constexpr quint8 FramebufferUpdate = 0;
constexpr quint8 ColourMap = 1;
constexpr quint8 Bell = 2;
constexpr quint8 CutText = 3;
// Types of the client's messages.
constexpr quint8 SetPixelFormat = 0;
constexpr quint8 SetEncodings = 2;
constexpr quint8 UpdateRequest = 3;
constexpr quint8 Pointer = 5;

template <class Number>
void append(QByteArray& bytes, Number number)
{
    char big[sizeof number];
    qToBigEndian(number, big);
    bytes.append(big, sizeof number);
}

quint16 u16(const QByteArray& bytes, int at)
{
    return qFromBigEndian<quint16>(bytes.constData() + at);
}

quint32 u32(const QByteArray& bytes, int at)
{
    return qFromBigEndian<quint32>(bytes.constData() + at);
}

// Describes the pixels of QImage::Format_RGB32: 32 bits, depth 24, little-endian, red at bit 16.
QByteArray pixelFormat()
{
    return QByteArray::fromHex("20180001"
                               "00ff00ff00ff"
                               "100800"
                               "000000");
}

} // namespace

quint16 RfbClient::freePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

bool RfbClient::connectTo(quint16 port, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    m_error.clear();
    while (m_socket.state() != QAbstractSocket::ConnectedState) {
        m_socket.abort();
        m_socket.connectToHost(QHostAddress::LocalHost, port);
        if (m_socket.waitForConnected(int(deadline.remainingTime()))) {
            break;
        }
        if (deadline.hasExpired()) {
            return fail(QStringLiteral("nobody listens on port %1").arg(port));
        }
        QThread::msleep(RetryMs);
    }
    return shakeHands(deadline) && initialise(deadline);
}

bool RfbClient::shakeHands(QDeadlineTimer deadline)
{
    QByteArray version;
    if (!take(12, deadline, &version)) {
        return false;
    }
    if (!version.startsWith("RFB 003.")) {
        return fail(QStringLiteral("no RFB 3 server"));
    }
    const int offered = version.mid(8, 3).toInt();
    const int minor = offered >= 8 ? 8 : offered == 7 ? 7 : 3;
    m_socket.write("RFB 003.00" + QByteArray::number(minor) + '\n');
    return agreeOnSecurity(minor, deadline);
}

bool RfbClient::agreeOnSecurity(int minorVersion, QDeadlineTimer deadline)
{
    QByteArray bytes;
    if (minorVersion == 3) {
        return take(4, deadline, &bytes) &&
            (u32(bytes, 0) == NoSecurity || fail(QStringLiteral("the server wants a password")));
    }
    if (!take(1, deadline, &bytes) || !take(quint8(bytes.at(0)), deadline, &bytes)) {
        return false;
    }
    if (!bytes.contains(char(NoSecurity))) {
        return fail(QStringLiteral("the server wants a password"));
    }
    m_socket.write(QByteArray(1, char(NoSecurity)));
    if (minorVersion == 7) {
        return true;
    }
    return take(4, deadline, &bytes) &&
        (u32(bytes, 0) == 0 || fail(QStringLiteral("the server refused the connection")));
}

bool RfbClient::initialise(QDeadlineTimer deadline)
{
    m_socket.write(QByteArray(1, '\x01')); // shared
    QByteArray header;
    QByteArray name;
    if (!take(24, deadline, &header)) {
        return false;
    }
    if (u32(header, 20) > MaxTextLength) {
        return fail(QStringLiteral("the server's name is too long"));
    }
    if (!take(u32(header, 20), deadline, &name)) {
        return false;
    }
    m_picture = QImage(u16(header, 0), u16(header, 2), QImage::Format_RGB32);
    m_picture.fill(Qt::black);
    QByteArray setUp;
    append(setUp, SetPixelFormat);
    setUp += QByteArray(3, '\0') + pixelFormat();
    append(setUp, SetEncodings);
    setUp += '\0';
    append(setUp, quint16{1});
    append(setUp, RawEncoding);
    return m_socket.write(setUp) == setUp.size() && m_socket.flush();
}

bool RfbClient::press(QPoint at)
{
    return sendPointer(at, 0) && sendPointer(at, LeftButton);
}

bool RfbClient::release(QPoint at)
{
    return sendPointer(at, 0);
}

bool RfbClient::click(QPoint at)
{
    return press(at) && release(at);
}

bool RfbClient::sendPointer(QPoint at, quint8 buttons)
{
    QByteArray event;
    append(event, Pointer);
    append(event, buttons);
    append(event, quint16(at.x()));
    append(event, quint16(at.y()));
    const bool sent = m_socket.write(event) == event.size();
    m_socket.flush();
    return sent || fail(QStringLiteral("the touch was not sent"));
}

QImage RfbClient::picture(int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    const QRegion whole(m_picture.rect());
    m_error.clear();
    QRegion covered;
    while (whole.subtracted(covered) != QRegion()) {
        requestPicture();
        for (const int before = m_updates; m_updates == before;) {
            if (!readMessage(deadline, &covered)) {
                return {};
            }
        }
    }
    return m_picture.copy();
}

void RfbClient::requestPicture()
{
    QByteArray request;
    append(request, UpdateRequest);
    append(request, quint8{0}); // the whole screen, not only the changes
    append(request, quint16{0});
    append(request, quint16{0});
    append(request, quint16(m_picture.width()));
    append(request, quint16(m_picture.height()));
    m_socket.write(request);
    m_socket.flush();
}

bool RfbClient::readMessage(QDeadlineTimer deadline, QRegion* covered)
{
    QByteArray bytes;
    if (!take(1, deadline, &bytes)) {
        return false;
    }
    switch (quint8(bytes.at(0))) {
    case FramebufferUpdate:
        return readUpdate(deadline, covered);
    case ColourMap:
        return take(5, deadline, &bytes) && take(6 * u16(bytes, 3), deadline, &bytes);
    case Bell:
        return true;
    case CutText:
        return take(7, deadline, &bytes) &&
            (u32(bytes, 3) <= MaxTextLength || fail(QStringLiteral("the clipboard is too long"))) &&
            take(u32(bytes, 3), deadline, &bytes);
    default:
        return fail(QStringLiteral("unknown message %1").arg(quint8(bytes.at(0))));
    }
}

bool RfbClient::readUpdate(QDeadlineTimer deadline, QRegion* covered)
{
    QByteArray header;
    if (!take(3, deadline, &header)) {
        return false;
    }
    m_updates += 1;
    for (int left = u16(header, 1); left > 0; --left) {
        if (!readRectangle(deadline, covered)) {
            return false;
        }
    }
    return true;
}

bool RfbClient::readRectangle(QDeadlineTimer deadline, QRegion* covered)
{
    QByteArray header;
    if (!take(12, deadline, &header)) {
        return false;
    }
    const QRect area(u16(header, 0), u16(header, 2), u16(header, 4), u16(header, 6));
    if (u32(header, 8) != quint32(RawEncoding) ||
        (!area.isEmpty() && !m_picture.rect().contains(area))) {
        return fail(QStringLiteral("a picture of another form than was asked for"));
    }
    const qint64 lineSize = qint64{BytesPerPixel} * area.width();
    QByteArray pixels;
    if (!take(lineSize * area.height(), deadline, &pixels)) {
        return false;
    }
    for (int y = 0; y < area.height(); ++y) {
        uchar* target = m_picture.scanLine(area.y() + y) + qint64{BytesPerPixel} * area.x();
        std::memcpy(target, pixels.constData() + lineSize * y, size_t(lineSize));
    }
    *covered += area;
    return true;
}

bool RfbClient::take(qint64 count, QDeadlineTimer deadline, QByteArray* bytes)
{
    while (m_socket.bytesAvailable() < count) {
        if (!m_socket.waitForReadyRead(int(std::max<qint64>(1, deadline.remainingTime()))) &&
            m_socket.bytesAvailable() < count) {
            return fail(QStringLiteral("%1 of %2 bytes came: %3")
                            .arg(m_socket.bytesAvailable())
                            .arg(count)
                            .arg(m_socket.errorString()));
        }
    }
    *bytes = m_socket.read(count);
    return true;
}

bool RfbClient::fail(const QString& reason)
{
    m_error = reason;
    return false;
}
