#pragma once

#include "spectrum/BusFrame.h"
#include "spectrum/CmdMsg.h"
#include "spectrum/QueueEntry.h"
#include "wire/DropLog.h"
#include "wire/SerialLine.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QStringList>

/// The RS-422 line to a spectral card: one request, one reply.
///
/// sendMessage() queues a request; run() frames and writes it when its turn comes and starts its
/// reply timer. A reply ends the transaction and goes out as messageReceived(). Without a reply the
/// timer ends it, and messageTxSuccess() reports that once; the bus sends nothing again. After a
/// spectrum the next request goes out at once, after a text reply only when the timer runs out or
/// when a new request is queued, because cards need the pause after a text.
///
/// A marker is queued like a request and marks a place between requests: when its turn comes,
/// messageQueueFlag() announces it. When the queue is empty, the status requests take turns.
///
/// Single-threaded: the port, the reply timer and all callers live in the thread of the bus, the
/// GUI thread, so that nothing is locked. Do not call a bus from another thread.
class Rs422Bus : public QObject
{
    Q_OBJECT

public:
    /// How a transaction ended. Only NoReply is emitted.
    enum Results {
        Replied = 0, ///< a reply came
        Refused = 1, ///< the card refused the request
        NoReply = 2, ///< the reply timer ran out before a reply came
    };
    Q_ENUM(Results)

    /// Opens the port at once, and again every two seconds while it is absent. A port that cannot
    /// be opened is not reported: ask isOpen().
    /// \param portName the device without a directory, such as "ttyUSB11".
    /// \param startOfFrame the character in front of every request.
    /// \param endOfFrame the character behind every request.
    /// \param oldProtocol whether a checksum byte follows every request.
    /// \param baudRate in bits per second.
    /// \param parent owns the bus.
    Rs422Bus(const QString& portName, char startOfFrame, char endOfFrame, bool oldProtocol,
        int baudRate, QObject* parent = nullptr);
    ~Rs422Bus() override;

    /// Whether the port is open now.
    bool isOpen() const { return m_line.isOpen(); }
    /// Closes the port for good: it is not tried again.
    void close();
    /// The device that was given to the constructor.
    QString portName() const { return m_line.name(); }

    /// Queues a request, and starts the transaction when none is in progress. A control character
    /// in front of \a msg has the meaning that bus::QueueEntry::fromText() gives it.
    void sendMessage(const QString& msg);
    /// Queues a request with a timeout of its own.
    /// \param msg is sent as it is, control characters included.
    /// \param timeout for the reply in ms, at most bus::MaxReplyMs.
    void sendMessage(const QString& msg, int timeout);
    /// Queues a marker: when its turn comes, messageQueueFlag(flag) is emitted and nothing is sent.
    void setMessageQueFlag(const QString& flag);
    /// Adds requests that are sent in turns whenever nothing else is queued. A request in \a list
    /// may name its own timeout as in bus::QueueEntry::requestFromText().
    void addToStatusQueue(QStringList& list);
    /// The number of queued requests and markers.
    int txCount() const { return static_cast<int>(m_txQueue.size()); }
    /// Whether this request waits to be sent, with or without a timeout of its own.
    bool isWaiting(const QString& request) const;
    /// The request that was sent last, without its framing: the one that a reply belongs to.
    QString lastRequest() const { return bus::requestOf(m_txFrame, m_oldProtocol); }

    /// The character in front of every request.
    char startOfFrame() const { return m_startOfFrame; }
    /// Sets the character in front of every request that is sent from now on.
    void setStartOfFrame(char c) { m_startOfFrame = c; }
    /// The character behind every request.
    char endOFrame() const { return m_endOfFrame; }
    /// Sets the character behind every request that is sent from now on.
    void setEndOFrame(char c) { m_endOfFrame = c; }
    /// Whether a checksum byte follows every request.
    bool isOldProtocol() const { return m_oldProtocol; }
    /// Whether spectra come in the layout of a K7150 (bus::Layout::K7150).
    bool getIsK7150Type() const { return m_k7150Type; }
    /// Sets the layout in which spectra come.
    void setIsK7150Type(bool on) { m_k7150Type = on; }

    /// Starts the next transaction if there is anything to send.
    void run();

    /// Ends the transaction whose reply timer has run out; called by Qt.
    void timerEvent(QTimerEvent* event) override;

public slots:
    /// Reads what the port has received and passes on the reply in it, if there is one.
    void processReadyRead();

signals:
    /// Emitted when a reply has come, also when no request waited for one.
    void messageReceived(CmdMsg message);
    /// Emitted when the turn of a marker has come.
    void messageQueueFlag(QString flag);
    /// Emitted when a transaction ended without a reply.
    /// \param request without its framing.
    /// \param result always NoReply.
    void messageTxSuccess(QString request, Rs422Bus::Results result);
    /// Emitted when the port has been opened, at the first try or after it was absent.
    void opened();

private:
    void enqueue(const bus::QueueEntry& entry);
    void passMarkers();
    void sendNext();
    void start(const bus::QueueEntry& request);
    void write();
    void takeReply(const CmdMsg& message, bool isSpectrum);

    SerialLine m_line;
    bus::ReplyBuffer m_rxBuffer;
    QList<bus::QueueEntry> m_txQueue; // oldest first
    char m_startOfFrame;
    char m_endOfFrame;
    bool m_oldProtocol;
    bool m_awaitingReply = false;
    bool m_starting = false; // inside run()
    int m_replyTimerId = 0;
    bool m_spectrumAnswered = false;      // the request whose timer that is
    QList<bus::QueueEntry> m_statusQueue; // requests only
    int m_statusIndex = 0;
    bool m_k7150Type = false;
    bool m_heard = false; // something has come since the port was opened
    QByteArray m_txFrame; // the last frame written
    DropLog m_queueFull;
    DropLog m_unsent;
    DropLog m_garbage;
};
