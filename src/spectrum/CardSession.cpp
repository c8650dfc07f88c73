#include "spectrum/CardSession.h"

#include "wire/Log.h"
#include "wire/Message.h"
#include "wire/SpanTable.h"

#include <algorithm>
#include <utility>

namespace {

constexpr char StartOfFrame = '[';
constexpr char EndOfFrame = ']';
constexpr int K7150Baud = 230400;
constexpr int SpectrumTimeoutMs = 2000;
constexpr int UnderWayMs = 2500;
constexpr int PollMs = 50; // 20 spectra per second
constexpr int Passes = 3;
constexpr int MaxTrim = 9; // dB

} // namespace

CardSession::CardSession(const QString& portName, QObject* parent)
    : QObject(parent)
    , m_address(card::address())
{
    m_buses[0] = newBus(portName, card::BaudRate);
    if (m_buses[0]->isOpen()) {
        connectFirstBus();
    }
    // The port may also come later, or come back.
    connect(m_buses[0], &Rs422Bus::opened, this, &CardSession::connectFirstBus);
    setUpTimers();
    connect(m_buses[0], &Rs422Bus::messageQueueFlag, this, &CardSession::takeMarker);
}

void CardSession::setUpTimers()
{
    m_pollTimer.setObjectName(QStringLiteral("pollTimer"));
    m_pollTimer.setTimerType(Qt::PreciseTimer); // a coarse timer may fire early
    m_pollTimer.setInterval(PollMs);
    connect(&m_pollTimer, &QTimer::timeout, this, &CardSession::pollIfDue);
    m_replyDue.setObjectName(QStringLiteral("replyDueTimer"));
    m_replyDue.setTimerType(Qt::PreciseTimer);
    m_replyDue.setSingleShot(true);
    m_replyDue.setInterval(UnderWayMs);
}

Rs422Bus* CardSession::newBus(const QString& portName, int baudRate)
{
    return new Rs422Bus(portName, StartOfFrame, EndOfFrame, true, baudRate, this);
}

Rs422Bus* CardSession::newK7150Bus(const QString& portName)
{
    Rs422Bus* bus = newBus(portName, K7150Baud);
    bus->setIsK7150Type(true);
    return bus;
}

void CardSession::connectFirstBus()
{
    Rs422Bus* bus = m_buses[0];
    connect(bus, &Rs422Bus::messageReceived, this, &CardSession::takeReply, Qt::UniqueConnection);
    connect(
        bus, &Rs422Bus::messageTxSuccess, this, &CardSession::takeTimeout, Qt::UniqueConnection);
    send(card::readName());
    updatePollTimer();
}

void CardSession::setK7150(const QString& port1, const QString& port2, const QString& port3)
{
    m_k7150 = true;
    m_buses[0]->disconnect(this);
    m_buses[0]->close();
    m_buses[0]->deleteLater();
    m_polledChannel = -1;
    forgetWhatWasTold();
    // Quirk: the bus's timeouts are not connected, so that a lost reply of a K7150 is not asked for
    // again at once but by the poll timer. See "Quirks" in docs/architecture.md.
    m_buses[0] = newK7150Bus(port1);
    connect(m_buses[0], &Rs422Bus::messageReceived, this, &CardSession::takeReply);
    connect(m_buses[0], &Rs422Bus::messageQueueFlag, this, &CardSession::takeMarker);
    // A card that comes later, or comes back, does not know the spans that were sent before.
    connect(m_buses[0], &Rs422Bus::opened, this, [this] {
        for (Channel& channel : m_channels) {
            channel.cardTold = false;
        }
        updatePollTimer();
    });
    const std::array<QString, card::Channels> ports{port1, port2, port3};
    for (size_t i = 1; i < m_buses.size(); ++i) {
        if (m_buses.at(i) == nullptr) {
            m_buses.at(i) = newK7150Bus(ports.at(i));
            connect(m_buses.at(i), &Rs422Bus::messageReceived, this, &CardSession::takeSideReply);
        }
    }
    updatePollTimer();
    emit detected(card::k7150Name());
    emit versionKnown(card::k7150Version());
}

void CardSession::forgetWhatWasTold()
{
    for (Channel& channel : m_channels) {
        channel.spanPending = false; // its marker went with the bus
        channel.demodulatorTold = false;
        channel.cardTold = false;
    }
}

void CardSession::setUpCard()
{
    if (!m_k7150) {
        ask(card::readVersion());
        ask(card::readSpans());
        ask(card::readTrims());
        return;
    }
    for (int channel = 0; channel < card::Channels; ++channel) {
        tell(card::demodulatorSpectrumOn(channel + 1));
        tellDemodulator(channel);
        tellCard(channel);
    }
}

void CardSession::tellDemodulatorsAgain()
{
    for (int channel = 0; m_k7150 && channel < card::Channels; ++channel) {
        tellDemodulator(channel);
    }
}

// Asks only once at a time: a card that keeps sending its name must not fill the queue.
void CardSession::ask(const QString& command)
{
    if (!m_buses[0]->isWaiting(card::request(m_address, command))) {
        send(command);
    }
}

void CardSession::tell(const QString& body)
{
    emit demodulatorMessage(wire::frame(body));
}

void CardSession::tellDemodulator(int channel)
{
    const SpanInfo& span = spanTable().at(at(channel).span);
    tell(card::demodulatorSpan(channel + 1, QLatin1String(span.fftParam)));
    at(channel).demodulatorTold = true;
}

// A change that is under way comes first: its marker brings the next one.
void CardSession::tellCard(int channel)
{
    Channel& state = at(channel);
    if (state.spanPending) {
        return;
    }
    state.toldSpan = state.span;
    state.spanPending = true;
    state.cardTold = true;
    send(card::setSpan(channel, state.span));
    m_buses[0]->setMessageQueFlag(card::clearAverage(channel));
}

void CardSession::send(const QString& command, int timeout)
{
    const QString request = card::request(m_address, command);
    if (timeout < 1) {
        m_buses[0]->sendMessage(request);
    } else {
        m_buses[0]->sendMessage(request, timeout);
    }
}

// Moves the counters on to the next shown channel; not at all when all are hidden.
void CardSession::skipHidden()
{
    for (int tried = 0; tried < card::Channels && !isShown(m_nextChannel); ++tried) {
        countOn();
    }
}

void CardSession::countOn()
{
    m_nextChannel = (m_nextChannel + 1) % card::Channels;
    if (m_nextChannel == 0) {
        m_pass = (m_pass + 1) % Passes;
    }
}

void CardSession::poll()
{
    skipHidden();
    if (!isShown(m_nextChannel)) {
        return;
    }
    m_polledChannel = m_nextChannel;
    m_lastChannel = m_nextChannel;
    m_polledStale = false;
    m_polledCommand = card::readSpectrum(m_nextChannel, m_pass);
    countOn();
    m_replyDue.start();
    send(m_polledCommand, SpectrumTimeoutMs);
}

void CardSession::setPolling(bool on)
{
    m_polling = on;
    m_pollTimerWanted = m_pollTimer.isActive();
    updatePollTimer();
}

// The timer runs while there is a channel to be polled and a port to ask on, and is left alone as
// long as that does not change.
void CardSession::updatePollTimer()
{
    const bool anyShown = std::any_of(m_channels.cbegin(), m_channels.cend(),
        [](const Channel& channel) { return channel.shown; });
    const bool wanted = m_polling && anyShown && isOpen();
    if (std::exchange(m_pollTimerWanted, wanted) == wanted) {
        return;
    }
    if (wanted) {
        m_pollTimer.start();
    } else {
        m_pollTimer.stop();
    }
}

bool CardSession::pollUnderWay() const
{
    return m_polledChannel >= 0 &&
        (m_replyDue.isActive() || m_buses[0]->isWaiting(card::request(m_address, m_polledCommand)));
}

void CardSession::pollIfDue()
{
    updatePollTimer(); // The port may have been lost.
    if (!m_polling || !isOpen() || pollUnderWay()) {
        return;
    }
    if (m_k7150) {
        tellSpansBeforePoll();
    }
    poll();
}

// A K7150 cannot be asked for its spans, so it is told them. All demodulators are told at once; the
// card is told each channel before the first spectrum of that channel, because each request that it
// does not answer blocks the bus until its timeout.
void CardSession::tellSpansBeforePoll()
{
    for (int channel = 0; channel < card::Channels; ++channel) {
        if (!at(channel).demodulatorTold) {
            tellDemodulator(channel);
        }
    }
    skipHidden();
    if (isShown(m_nextChannel) && !at(m_nextChannel).cardTold) {
        tellCard(m_nextChannel);
    }
}

void CardSession::takeReply(const CmdMsg& message)
{
    handle(message, true);
}

// A spectrum of another port does not answer the poll, which goes over the first one.
void CardSession::takeSideReply(const CmdMsg& message)
{
    handle(message, false);
}

void CardSession::handle(const CmdMsg& message, bool endsPoll)
{
    if (message.address != m_address) {
        return;
    }
    const QString text = message.data.trimmed();
    if (message.command == card::spectrumWord()) {
        takeSpectrum(message, endsPoll);
    } else if (message.command == card::readName()) {
        m_name = text;
        emit detected(m_name);
        setUpCard();
    } else if (message.command == card::readVersion()) {
        takeVersion(text);
    } else if (message.command == card::readSpans()) {
        takeSpans(text);
    } else if (message.command == card::readTrims()) {
        takeTrims(text);
    }
}

// The older type's spectra do not name their channel: it is that of the request on the line.
int CardSession::requestedChannel() const
{
    const int channel = card::spectrumChannel(m_buses[0]->lastRequest());
    return channel >= 0 ? channel : m_lastChannel;
}

// A K7150 names the channel in the first byte, and the points follow. A reply that begins with a
// point instead belongs to the channel that was asked; the byte behind its points is not one of
// them. On a port that carries no requests, no channel was asked.
int CardSession::takeK7150Channel(QByteArray& points, bool asked)
{
    const int named = points.isEmpty() ? -1 : static_cast<quint8>(points.at(0));
    if (named < card::Channels) {
        points.remove(0, 1);
        return named;
    }
    points.chop(1);
    if (!std::exchange(m_warnedOfNoChannel, true)) {
        qCWarning(logSpectrum) << "the K7150 does not name the channel of a spectrum, its first"
                                  " byte is"
                               << named << ": taken as that of the channel that was asked";
    }
    return asked ? requestedChannel() : -1;
}

void CardSession::takeSpectrum(const CmdMsg& message, bool endsPoll)
{
    QByteArray points = message.data.toLatin1();
    const int channel = m_k7150 ? takeK7150Channel(points, endsPoll) : requestedChannel();
    const bool stale = m_polledStale && channel == m_polledChannel;
    if (endsPoll) {
        m_polledChannel = -1;
        m_polledStale = false;
    }
    // A spectrum that comes before the marker was measured with the span before.
    if (isChannel(channel) && !points.isEmpty() && !stale && !at(channel).spanPending) {
        emit spectrumReceived(points, channel);
    }
}

void CardSession::takeVersion(const QString& version)
{
    emit versionKnown(card::nameAndVersion(m_name, version));
    tell(card::listEntry());
    tell(card::versionEntry(version));
}

void CardSession::takeSpans(const QString& text)
{
    const QVector<int> spans = card::digits(text);
    for (int channel = 0; channel < spans.size(); ++channel) {
        // A span that is just being changed was read before the change.
        if (!at(channel).spanPending) {
            changeSpan(channel, spans.at(channel));
        }
    }
}

void CardSession::takeTrims(const QString& text)
{
    const QVector<int> trims = card::digits(text);
    for (int channel = 0; channel < trims.size(); ++channel) {
        at(channel).trim = trims.at(channel);
    }
}

void CardSession::takeTimeout(const QString& request, Rs422Bus::Results result)
{
    const bool ours = request.left(m_address.size()) == m_address;
    if (ours && result == Rs422Bus::NoReply && card::isSpectrumRequest(request)) {
        // Quirk: at once, and so also when the page has been hidden meanwhile. See "Quirks" in
        // docs/architecture.md.
        m_polledChannel = -1;
        poll();
    }
}

void CardSession::takeMarker(const QString& flag)
{
    const int channel = card::clearAverageChannel(flag);
    if (channel < 0 || !std::exchange(at(channel).spanPending, false)) {
        return;
    }
    emit averageOutdated(channel);
    if (at(channel).toldSpan != at(channel).span) {
        tellCard(channel);
    }
}

int CardSession::span(int channel) const
{
    return isChannel(channel) ? at(channel).span : -1;
}

void CardSession::changeSpan(int channel, int span)
{
    if (span != at(channel).span) {
        at(channel).span = span;
        emit spanChanged(channel, span);
    }
    emit spanConfirmed(channel, span);
}

void CardSession::setSpan(int channel, int span)
{
    if (!isChannel(channel) || span < 0 || span >= spanTable().size()) {
        return;
    }
    changeSpan(channel, span);
    if (m_k7150) {
        tellDemodulator(channel);
    }
    tellCard(channel);
}

int CardSession::trim(int channel) const
{
    return isChannel(channel) ? at(channel).trim : -1;
}

void CardSession::setTrim(int channel, int trim)
{
    if (isChannel(channel) && trim >= 0 && trim <= MaxTrim) {
        at(channel).trim = trim;
        send(card::setTrim(channel, trim));
    }
}

bool CardSession::isShown(int channel) const
{
    return isChannel(channel) && at(channel).shown;
}

void CardSession::setShown(int channel, bool on)
{
    if (isChannel(channel)) {
        at(channel).shown = on;
        updatePollTimer();
    }
}

void CardSession::dropSpectrumUnderWay(int channel)
{
    if (channel == m_polledChannel) {
        m_polledStale = true;
    }
}
