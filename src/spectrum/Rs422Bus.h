#pragma once

#include "spectrum/BusFrame.h"
#include "spectrum/CmdMsg.h"
#include "wire/SerialLine.h"

#include <QByteArray>
#include <QMutex>
#include <QObject>
#include <QStringList>

// The RS-422 line to a spectral card: one request, one reply.
//
// A request is queued by sendMessage(), framed and written by run() when its turn comes, and then
// its reply timer runs. A reply ends the transaction and goes out as messageReceived(); without one
// the timer ends it and messageTxSuccess() says so, once; nothing is sent again. After a spectrum
// the next request goes out at once, after a text reply only when the timer runs out or a new
// request is queued: cards need the pause after a text, so kept so.
//
// When the queue is empty, the status requests take turns. Two control characters at the head of a
// queued text are for the bus itself: 0x07 marks a place in the queue, 0x08 gives a request a
// timeout of its own.
//
// Everything happens in the thread of the bus.
class Rs422Bus : public QObject
{
    Q_OBJECT

public:
    // How a transaction ended without a reply. Only NoReply is emitted.
    enum Results { Replied = 0, Refused = 1, NoReply = 2 };
    Q_ENUM(Results)

    // Opens the port at once, and again every two seconds when it is not there or goes away.
    // portName: the device without a directory. startOfFrame, endOfFrame: around every request.
    // oldProtocol: a checksum byte follows each request. baudRate: in bits per second.
    Rs422Bus(const QString& portName, char startOfFrame, char endOfFrame, bool oldProtocol,
        int baudRate, QObject* parent = nullptr);
    ~Rs422Bus() override;

    bool isOpen() const { return m_line.isOpen(); }
    // For good: the port is not tried again.
    void close();
    QString portName() const { return m_line.name(); }

    // Queues a request, and starts the transaction when none is in progress.
    void sendMessage(const QString& msg);
    // timeout: for the reply, in ms, 10000 at most (450 without it).
    void sendMessage(const QString& msg, int timeout);
    // Queues a marker: when its turn comes, messageQueueFlag(flag) is emitted, nothing is sent.
    void setMessageQueFlag(const QString& flag);
    // These requests are sent in turns whenever nothing else is queued.
    void addToStatusQueue(QStringList& list);
    int txCount() const { return static_cast<int>(m_txQueue.size()); }
    // Whether this request waits to be sent, with or without a timeout of its own.
    bool isWaiting(const QString& request) const;
    // The request that was sent last, without its framing: the one that a reply belongs to.
    QString lastRequest() const { return bus::requestOf(m_txFrame, m_oldProtocol); }

    char startOfFrame() const { return m_startOfFrame; }
    void setStartOfFrame(char c) { m_startOfFrame = c; }
    char endOFrame() const { return m_endOfFrame; }
    void setEndOFrame(char c) { m_endOfFrame = c; }
    bool isOldProtocol() const { return m_oldProtocol; }
    bool getIsK7150Type() const { return m_k7150Type; }
    void setIsK7150Type(bool on) { m_k7150Type = on; }

    // Starts the next transaction if there is anything to send.
    void run();

    // The reply timer has run out.
    void timerEvent(QTimerEvent* event) override;

public slots:
    void processReadyRead();

signals:
    void messageReceived(CmdMsg message);
    void messageQueueFlag(QString flag);
    // A transaction ended without a reply. request: without its framing.
    void messageTxSuccess(QString request, Rs422Bus::Results result);
    // The port has been opened, at the first try or after it was away.
    void opened();

private:
    bool takeRequest(QString& request);
    void passMarker(const QString& marker);
    void start(const QString& request);
    void write();

    SerialLine m_line;
    bus::ReplyBuffer m_rxBuffer;
    QStringList m_txQueue; // oldest first
    QMutex m_txMutex;      // guards appending to m_txQueue
    char m_startOfFrame;
    char m_endOfFrame;
    bool m_oldProtocol;
    bool m_awaitingReply = false;
    bool m_starting = false; // inside run()
    int m_replyTimerId = 0;
    QStringList m_statusQueue;
    int m_statusIndex = 0;
    bool m_k7150Type = false;
    QByteArray m_txFrame; // the last frame written
};
