#include "spectrum/Rs422Bus.h"

#include "spectrum/Limits.h"
#include "wire/Log.h"
#include "wire/Message.h"

#include <QTimerEvent>

#include <algorithm>
#include <utility>

namespace {

constexpr int DrainMs = 50;

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
    , m_queueFull(&logSpectrum,
          QStringLiteral("%1: %2 requests wait, further ones are lost")
              .arg(portName)
              .arg(spectrumLimits::MaxQueued))
    , m_unsent(&logSpectrum,
          QStringLiteral("%1: the card does not read: %2 bytes wait and are dropped")
              .arg(portName)
              .arg(spectrumLimits::MaxUnsentBytes))
    , m_garbage(&logSpectrum,
          QStringLiteral("%1: %2 bytes without the end of a reply were dropped")
              .arg(portName)
              .arg(spectrumLimits::MaxReplyBytes))
{
    qRegisterMetaType<CmdMsg>();
    connect(&m_line, &SerialLine::opened, this, &Rs422Bus::opened);
    connect(&m_line.port(), &QSerialPort::readyRead, this, &Rs422Bus::processReadyRead);
    connect(&m_line, &SerialLine::lost, this, [this] { m_heard = false; });
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
    enqueue(bus::QueueEntry::fromText(msg));
}

void Rs422Bus::sendMessage(const QString& msg, int timeout)
{
    enqueue(bus::QueueEntry::timedRequest(msg, timeout));
}

void Rs422Bus::setMessageQueFlag(const QString& flag)
{
    enqueue(bus::QueueEntry::marker(flag));
}

void Rs422Bus::enqueue(const bus::QueueEntry& entry)
{
    if (m_txQueue.size() >= spectrumLimits::MaxQueued) {
        m_queueFull.add();
        return;
    }
    m_txQueue.append(entry);
    if (!m_awaitingReply) {
        run();
    }
}

void Rs422Bus::addToStatusQueue(QStringList& list)
{
    for (const QString& text : std::as_const(list)) {
        if (m_statusQueue.size() >= spectrumLimits::MaxQueued) {
            m_queueFull.add();
            continue; // so that each is counted
        }
        m_statusQueue.append(bus::QueueEntry::requestFromText(text));
    }
}

bool Rs422Bus::isWaiting(const QString& request) const
{
    return std::any_of(
        m_txQueue.cbegin(), m_txQueue.cend(), [&request](const bus::QueueEntry& entry) {
            return entry.kind() != bus::QueueEntry::Kind::Marker && entry.text() == request;
        });
}

void Rs422Bus::run()
{
    // Writing may wait for the line, and a reply that comes meanwhile must not start another
    // transaction.
    if (m_starting) {
        return;
    }
    m_starting = true;
    passMarkers();
    sendNext();
    m_starting = false;
}

// Announces the markers that stand before the next request.
void Rs422Bus::passMarkers()
{
    while (!m_txQueue.isEmpty() && m_txQueue.constFirst().kind() == bus::QueueEntry::Kind::Marker) {
        const QString flag = m_txQueue.takeFirst().text();
        // What is queued by the receiver of the signal waits for its turn.
        m_awaitingReply = true;
        emit messageQueueFlag(flag);
        m_awaitingReply = false;
    }
}

void Rs422Bus::sendNext()
{
    if (!m_txQueue.isEmpty()) {
        start(m_txQueue.takeFirst());
    } else if (!m_statusQueue.isEmpty()) {
        const bus::QueueEntry request = m_statusQueue.at(m_statusIndex);
        m_statusIndex = (m_statusIndex + 1) % static_cast<int>(m_statusQueue.size());
        start(request);
    }
}

void Rs422Bus::start(const bus::QueueEntry& request)
{
    m_txFrame = bus::frame(request.text(), m_startOfFrame, m_endOfFrame, m_oldProtocol);
    write();
    m_awaitingReply = true;
    // Spectra come all the time, and the timer of each would wake the panel up for nothing.
    if (std::exchange(m_spectrumAnswered, false)) {
        killTimer(m_replyTimerId);
    }
    m_replyTimerId = startTimer(request.timeoutMs(), Qt::PreciseTimer);
}

void Rs422Bus::write()
{
    QSerialPort& port = m_line.port();
    drain(port);
    if (!port.isOpen()) {
        return; // The reply timer ends the transaction, as for any request without a reply.
    }
    if (port.bytesToWrite() > spectrumLimits::MaxUnsentBytes) {
        port.clear(QSerialPort::Output);
        m_unsent.add();
    }
    // Before a card has answered, the owner may close the port in this turn, and nothing is sent.
    if (m_heard) {
        m_line.write(m_txFrame);
    } else {
        port.write(m_txFrame);
    }
    qCDebug(logSpectrum).noquote() << portName() << "out" << printable(m_txFrame);
}

void Rs422Bus::processReadyRead()
{
    QSerialPort& port = m_line.port();
    m_heard = true;
    while (port.bytesAvailable() > 0) {
        // Not readAll(), which makes room for 64 KiB first.
        const QByteArray bytes = port.read(port.bytesAvailable());
        qCDebug(logSpectrum).noquote() << portName() << "in " << printable(bytes);
        m_rxBuffer.append(bytes);
        CmdMsg message;
        using Found = bus::ReplyBuffer::Found;
        const auto layout = m_k7150Type ? bus::Layout::K7150 : bus::Layout::Decimal;
        const Found found = m_rxBuffer.take(message, layout);
        if (found == Found::Reply || found == Found::Spectrum) {
            takeReply(message, found == Found::Spectrum);
        } else if (found == Found::Garbage) {
            m_garbage.add();
        }
    }
}

void Rs422Bus::takeReply(const CmdMsg& message, bool isSpectrum)
{
    const bool answered = m_awaitingReply;
    emit messageReceived(message);
    if (answered) {
        m_awaitingReply = false;
        m_spectrumAnswered = isSpectrum && m_replyTimerId != 0;
    }
    // Quirk: after a text the next request waits for the reply timer, a pause that cards need. See
    // "Quirks" in docs/architecture.md.
    // A reply without a request may have made the owner send one, which is under way now.
    if (isSpectrum && !m_awaitingReply) {
        run();
    }
}

void Rs422Bus::timerEvent(QTimerEvent* event)
{
    const int id = event->timerId();
    killTimer(id);
    // The timer of a transaction that was answered before the next one began ends nothing.
    if (id != m_replyTimerId) {
        return;
    }
    m_replyTimerId = 0;
    m_spectrumAnswered = false;
    // Quirk: without checksums an answered transaction is reported as lost, too. See "Quirks" in
    // docs/architecture.md.
    if (m_awaitingReply || !m_oldProtocol) {
        m_awaitingReply = true; // What the owner queues now waits for run() below.
        emit messageTxSuccess(lastRequest(), NoReply);
    }
    m_awaitingReply = false;
    m_rxBuffer.clear();
    run();
}
