#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QImage>
#include <QPoint>
#include <QRegion>
#include <QString>
#include <QTcpSocket>

/// A remote screen, which shows and touches a program that runs with "-platform
/// vnc:size=800x480:port=N". It speaks RFB 3.3 to 3.8 (RFC 6143) without authentication and with
/// raw pictures of 32 bits per pixel.
///
/// Every call blocks until it is done or until a timeout. After a timeout errorString() says what
/// was missing. The program at the other end must be another process.
class RfbClient
{
public:
    /// The longest time that a call blocks.
    static constexpr int DefaultTimeoutMs = 20000;

    RfbClient() = default;
    RfbClient(const RfbClient&) = delete;
    RfbClient& operator=(const RfbClient&) = delete;

    /// \return a TCP port that nobody listens on now
    static quint16 freePort();

    /// Connects to the port on this machine and does the handshake. It tries again until the
    /// program listens. \return whether this succeeded in time
    bool connectTo(quint16 port, int timeoutMs = DefaultTimeoutMs);

    /// \return the size of the other screen; empty before connectTo()
    QSize size() const { return m_picture.size(); }
    /// \return the last error, empty when there was none
    QString errorString() const { return m_error; }

    /// Presses the left button at a point of the screen. \return whether the message was sent
    bool press(QPoint at);
    /// Releases the left button at a point of the screen. \return whether the message was sent
    bool release(QPoint at);
    /// Presses and releases the left button. \return whether the message was sent
    bool click(QPoint at);

    /// \return the whole screen as it is now; a null image when it did not come in time
    QImage picture(int timeoutMs = DefaultTimeoutMs);

private:
    bool shakeHands(QDeadlineTimer deadline);
    bool agreeOnSecurity(int minorVersion, QDeadlineTimer deadline);
    bool initialise(QDeadlineTimer deadline);
    void requestPicture();
    bool readMessage(QDeadlineTimer deadline, QRegion* covered);
    bool readUpdate(QDeadlineTimer deadline, QRegion* covered);
    bool readRectangle(QDeadlineTimer deadline, QRegion* covered);
    bool sendPointer(QPoint at, quint8 buttons);
    bool take(qint64 count, QDeadlineTimer deadline, QByteArray* bytes);
    bool fail(const QString& reason);

    QTcpSocket m_socket;
    QImage m_picture;
    QString m_error;
    int m_updates = 0;
};
