#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QImage>
#include <QPoint>
#include <QRegion>
#include <QString>
#include <QTcpSocket>

// Looks at and touches a program that runs with "-platform vnc:size=800x480:port=N", as a person
// with a remote screen does: RFB 3.3 to 3.8, no authentication, raw pictures of 32 bits a pixel.
//
// Every call blocks until it is done, or until its time is over and errorString() says what was
// missing. The program at the other end must be another process.
class RfbClient
{
public:
    static constexpr int DefaultTimeoutMs = 20000;

    RfbClient() = default;
    RfbClient(const RfbClient&) = delete;
    RfbClient& operator=(const RfbClient&) = delete;

    // Out: a TCP port that nobody listens on now.
    static quint16 freePort();

    // Connects to the port on this machine, again and again until the program listens there, and
    // shakes hands. Out: whether that was done in time.
    bool connectTo(quint16 port, int timeoutMs = DefaultTimeoutMs);

    // The size of the other screen; empty before connectTo().
    QSize size() const { return m_picture.size(); }
    // What went wrong last, empty when nothing did.
    QString errorString() const { return m_error; }

    // Touches: the left button goes down or up at a point of the screen. Out: whether it was sent.
    bool press(QPoint at);
    bool release(QPoint at);
    bool click(QPoint at);

    // Out: the whole screen as it is now, a null image when it did not come in time.
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
