#include "spectrum/Rs422Bus.h"

#include "wire/Log.h"
#include "wire/Message.h"

#include <QTimerEvent>

#include <algorithm>
#include <utility>

namespace {

constexpr QChar Marker{0x07};
constexpr QChar OwnTimeout{0x08};
constexpr int ReplyMs = 450;
constexpr int LongestReplyMs = 10000;
constexpr int DrainMs = 50;
// a line that takes nothing for minutes must not fill the memory with requests
constexpr qint64 MostUnsent = 4096;

QString printable(const QByteArray& bytes)
{
    return wire::toPrintable(QString::fromLatin1(bytes));
}

void drain(QSerialPort& port)
{
    if (port.isOpen() && port.bytesToWrite() > 0) {
        port.waitForBytesWritten(DrainMs);
    }
}

} // namespace

Rs422Bus::Rs422Bus(const QString& portName, char startOfFrame, char endOfFrame, bool oldProtocol,
    int baudRate, QObject* parent)
    : QObject(parent)
    , m_line(logSpectrum)
    , m_startOfFrame(startOfFrame)
    , m_endOfFrame(endOfFrame)
    , m_oldProtocol(oldProtocol)
{
    qRegisterMetaType<CmdMsg>();
    connect(&m_line, &SerialLine::opened, this, &Rs422Bus::opened);
    connect(&m_line.port(), &QSerialPort::readyRead, this, &Rs422Bus::processReadyRead);
    m_line.open(portName, baudRate, SerialLine::Reopen::EveryTwoSeconds);
    drain(m_line.port());
}

Rs422Bus::~Rs422Bus()
{
    m_line.disconnect(this);
    m_line.port().disconnect(this);
    m_line.close();
}

void Rs422Bus::close()
{
    m_line.close();
}

void Rs422Bus::sendMessage(const QString& msg)
{
    {
        const QMutexLocker lock(&m_txMutex);
        m_txQueue.append(msg);
    }
    if (!m_awaitingReply) {
        run();
    }
}

void Rs422Bus::sendMessage(const QString& msg, int timeout)
{
    sendMessage(OwnTimeout + QString::number(timeout) + QLatin1Char(' ') + msg);
}

void Rs422Bus::setMessageQueFlag(const QString& flag)
{
    sendMessage(Marker + flag);
}

void Rs422Bus::addToStatusQueue(QStringList& list)
{
    m_statusQueue += list;
}

bool Rs422Bus::isWaiting(const QString& request) const
{
    return std::any_of(m_txQueue.cbegin(), m_txQueue.cend(), [&](const QString& queued) {
        const bool timed = queued.startsWith(OwnTimeout);
        return (timed ? queued.section(QLatin1Char(' '), 1) : queued) == request;
    });
}

void Rs422Bus::run()
{
    // writing may wait for the line, and a reply that comes meanwhile must not start another
    if (m_starting) {
        return;
    }
    m_starting = true;
    QString request;
    if (takeRequest(request)) {
        start(request);
    }
    m_starting = false;
}

bool Rs422Bus::takeRequest(QString& request)
{
    while (!m_txQueue.isEmpty()) {
        request = m_txQueue.takeFirst();
        if (!request.startsWith(Marker)) {
            return true;
        }
        passMarker(request);
    }
    if (m_statusQueue.isEmpty()) {
        return false;
    }
    request = m_statusQueue.at(m_statusIndex);
    m_statusIndex = (m_statusIndex + 1) % static_cast<int>(m_statusQueue.size());
    return true;
}

void Rs422Bus::passMarker(const QString& marker)
{
    // what is queued meanwhile waits for its turn
    m_awaitingReply = true;
    emit messageQueueFlag(marker.mid(1));
    m_awaitingReply = false;
}

void Rs422Bus::start(const QString& queued)
{
    QString request = queued;
    int timeout = ReplyMs;
    if (queued.startsWith(OwnTimeout)) {
        // a timeout that is no number counts as 0
        timeout = qBound(0, queued.mid(1).section(QLatin1Char(' '), 0, 0).toInt(), LongestReplyMs);
        request = queued.mid(1).section(QLatin1Char(' '), 1);
    }
    m_txFrame = bus::frame(request, m_startOfFrame, m_endOfFrame, m_oldProtocol);
    write();
    m_awaitingReply = true;
    m_replyTimerId = startTimer(timeout, Qt::PreciseTimer);
}

void Rs422Bus::write()
{
    QSerialPort& port = m_line.port();
    drain(port);
    if (!port.isOpen()) {
        return; // ends by its timer like any request without a reply
    }
    if (port.bytesToWrite() > MostUnsent) {
        port.clear(QSerialPort::Output);
    }
    port.write(m_txFrame);
    qCDebug(logSpectrum).noquote() << portName() << "out" << printable(m_txFrame);
}

void Rs422Bus::processReadyRead()
{
    QSerialPort& port = m_line.port();
    while (port.bytesAvailable() > 0) {
        const QByteArray bytes = port.readAll();
        qCDebug(logSpectrum).noquote() << portName() << "in " << printable(bytes);
        m_rxBuffer.append(bytes);
        CmdMsg message;
        using Found = bus::ReplyBuffer::Found;
        const auto layout = m_k7150Type ? bus::Layout::K7150 : bus::Layout::Decimal;
        const Found found = m_rxBuffer.take(message, layout);
        if (found != Found::Reply && found != Found::Spectrum) {
            continue;
        }
        const bool answered = m_awaitingReply;
        emit messageReceived(message);
        if (answered) {
            m_awaitingReply = false;
        }
        // a reply that nobody asked for may have made the owner ask for something
        if (found == Found::Spectrum && !m_awaitingReply) {
            run();
        }
    }
}

void Rs422Bus::timerEvent(QTimerEvent* event)
{
    const int id = event->timerId();
    killTimer(id);
    // of a transaction that was answered before the next one began
    if (id != m_replyTimerId) {
        return;
    }
    m_replyTimerId = 0;
    // without checksums every transaction is reported, also an answered one: kept so
    if (m_awaitingReply || !m_oldProtocol) {
        m_awaitingReply = true; // what the owner queues now waits for run() below
        emit messageTxSuccess(lastRequest(), NoReply);
    }
    m_awaitingReply = false;
    m_rxBuffer.clear();
    run();
}
