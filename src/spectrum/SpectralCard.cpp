#include "spectrum/SpectralCard.h"

#include "spectrum/SpectrumArea.h"
#include "spectrum/SpectrumChart.h"
#include "touch/LineColors.h"
#include "wire/Log.h"
#include "wire/Message.h"

#include <QComboBox>
#include <QVBoxLayout>

#include <utility>

namespace {

constexpr char StartOfFrame = '[';
constexpr char EndOfFrame = ']';
constexpr int CardBaud = 921600;
constexpr int K7150Baud = 230400;
constexpr int SpectrumTimeoutMs = 2000;
constexpr int UnderWayMs = 2500;
constexpr int PollMs = 50; // 20 spectra a second
constexpr int Passes = 3;
constexpr int HighestTrim = 9;

const char* const Look =
    "QComboBox {background-color: #919191; color: black; border: 2px solid yellow; border-radius: 4px; padding-left: 6px;} "
    "QComboBox QAbstractItemView {background-color: #919191; color: black; selection-background-color: #4169e1;} "
    "QPushButton {background-color: #919191; color: black; border: 2px solid yellow; border-radius: 4px; font-size: 15px;} "
    "QPushButton:checked {background-color: green; color: white;} "
    "QPushButton:pressed {background-color: #4169e1;}";

} // namespace

const QVector<SpectralCard::SPANINFO> SpectralCard::m_spanTable = spanTable();

SpectralCard::SpectralCard(QWidget* parent, int window, const QString& portName)
    : QWidget(parent)
    , m_address(card::address())
{
    QPalette black = palette();
    black.setColor(QPalette::Window, Qt::black);
    setPalette(black);
    setAutoFillBackground(true);
    setStyleSheet(QLatin1String(Look));
    initCharts();
    WindowName(window == 0 ? QStringLiteral("SpectralCard CH.1/CH.2/CMB.1")
                           : QStringLiteral("SpectralCard CH.3/CH.4/CMB.2"));

    m_buses[0] = newBus(portName, CardBaud);
    if (m_buses[0]->isOpen()) {
        busOpened();
    }
    // a port that comes later, or comes back
    connect(m_buses[0], &Rs422Bus::opened, this, &SpectralCard::busOpened);
    connectCombos();
    m_timer.setObjectName(QStringLiteral("pollTimer"));
    m_timer.setTimerType(Qt::PreciseTimer); // a coarse one comes early
    m_timer.setInterval(PollMs);
    m_replyDue.setObjectName(QStringLiteral("replyDueTimer"));
    m_replyDue.setTimerType(Qt::PreciseTimer);
    m_replyDue.setSingleShot(true);
    m_replyDue.setInterval(UnderWayMs);
    connect(&m_timer, &QTimer::timeout, this, &SpectralCard::timerTimeOut);
    connect(m_buses[0], &Rs422Bus::messageQueueFlag, this, &SpectralCard::queFlag);
}

SpectralCard::~SpectralCard()
{
    // bus and charts may still speak while they are torn down
    for (Rs422Bus* bus : m_buses) {
        if (bus != nullptr) {
            bus->disconnect(this);
        }
    }
}

void SpectralCard::initCharts()
{
    if (!m_areas.isEmpty()) {
        return;
    }
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    const QVector<QColor> colours = {lineColor(5), lineColor(3), lineColor(1)};
    for (int channel = 0; channel < card::Channels; ++channel) {
        auto* area = new SpectrumArea(channel, this);
        area->setLineColor(colours.at(channel));
        layout->addWidget(area, 1);
        m_areas += area;
        m_shown.at(static_cast<size_t>(channel)) = true;
    }
}

void SpectralCard::connectCombos()
{
    const auto box = [this](int channel) { return m_areas.at(channel)->spanBox(); };
    connect(box(0), &QComboBox::activated, this, &SpectralCard::cboSpan1_SelectedIndexChanged);
    connect(box(1), &QComboBox::activated, this, &SpectralCard::cboSpan2_SelectedIndexChanged);
    connect(box(2), &QComboBox::activated, this, &SpectralCard::cboSpan3_SelectedIndexChanged);
}

Rs422Bus* SpectralCard::newBus(const QString& portName, int baudRate)
{
    return new Rs422Bus(portName, StartOfFrame, EndOfFrame, true, baudRate, this);
}

Rs422Bus* SpectralCard::newK7150Bus(const QString& portName)
{
    Rs422Bus* bus = newBus(portName, K7150Baud);
    // and not its timeouts: after a lost reply it is the timer that asks again
    connect(bus, &Rs422Bus::messageReceived, this, &SpectralCard::CommSpectral_Command);
    bus->setIsK7150Type(true);
    return bus;
}

void SpectralCard::busOpened()
{
    Rs422Bus* bus = m_buses[0];
    connect(bus, &Rs422Bus::messageReceived, this, &SpectralCard::CommSpectral_Command,
        Qt::UniqueConnection);
    connect(bus, &Rs422Bus::messageTxSuccess, this, &SpectralCard::ComPortTimeOut,
        Qt::UniqueConnection);
    sendSerialCmd(card::readName());
}

void SpectralCard::setK7150(const QString& port1, const QString& port2, const QString& port3)
{
    m_k7150Type = true;
    if (m_buses[0] != nullptr) {
        m_buses[0]->disconnect(this);
        m_buses[0]->close();
        m_buses[0]->deleteLater();
    }
    m_askedChannel = -1;
    m_averageClearPending.fill(false); // their markers went with the bus
    m_demodulatorTold.fill(false);
    m_cardTold.fill(false);
    m_buses[0] = newK7150Bus(port1);
    connect(m_buses[0], &Rs422Bus::messageQueueFlag, this, &SpectralCard::queFlag);
    // a card that comes later, or comes back, has not heard what was said before
    connect(m_buses[0], &Rs422Bus::opened, this, [this] { m_cardTold.fill(false); });
    if (m_buses[1] == nullptr) {
        m_buses[1] = newK7150Bus(port2);
    }
    if (m_buses[2] == nullptr) {
        m_buses[2] = newK7150Bus(port3);
    }
    emit cardDetected(card::k7150Name());
    emit cardVersionUpdated(card::k7150Version());
}

void SpectralCard::initSA()
{
    if (!m_k7150Type) {
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

// a card that says its name all the time must not fill the queue
void SpectralCard::ask(const QString& command)
{
    if (!m_buses[0]->isWaiting(card::request(m_address, command))) {
        sendSerialCmd(command);
    }
}

void SpectralCard::tellDemodulator(int channel)
{
    const SPANINFO& span = m_spanTable.at(getSpan(channel));
    tell(card::demodulatorSpan(channel + 1, QLatin1String(span.fftParam)));
    m_demodulatorTold.at(static_cast<size_t>(channel)) = true;
}

// A change that is under way comes first: its marker brings the next one.
void SpectralCard::tellCard(int channel)
{
    const auto at = static_cast<size_t>(channel);
    if (m_averageClearPending.at(at)) {
        return;
    }
    m_toldSpans.at(at) = getSpan(channel);
    m_averageClearPending.at(at) = true;
    m_cardTold.at(at) = true;
    sendSerialCmd(card::setSpan(channel, getSpan(channel)));
    m_buses[0]->setMessageQueFlag(card::clearAverage(channel));
}

void SpectralCard::tell(const QString& body)
{
    emit updateDemodCh(wire::frame(body));
}

void SpectralCard::sendSerialCmd(const QString& command, int timeout)
{
    if (m_buses[0] == nullptr) {
        return;
    }
    const QString request = card::request(m_address, command);
    if (timeout < 1) {
        m_buses[0]->sendMessage(request);
    } else {
        m_buses[0]->sendMessage(request, timeout);
    }
}

void SpectralCard::sendSerialCmd(const QString& command)
{
    sendSerialCmd(command, 0);
}

// Moves the counters on to the next shown channel; to none when all are hidden.
void SpectralCard::skipHidden()
{
    for (int tried = 0; tried < card::Channels && !chartAreaVisible(m_channel); ++tried) {
        countOn();
    }
}

void SpectralCard::countOn()
{
    m_channel = static_cast<quint8>((m_channel + 1) % card::Channels);
    if (m_channel == 0) {
        m_pass = static_cast<quint8>((m_pass + 1) % Passes);
    }
}

void SpectralCard::UpdateCmds()
{
    skipHidden();
    if (!chartAreaVisible(m_channel)) {
        return;
    }
    m_askedChannel = m_channel;
    m_lastChannel = m_channel;
    m_askedStale = false;
    m_askedCommand = card::readSpectrum(m_channel, m_pass);
    countOn();
    m_replyDue.start();
    sendSerialCmd(m_askedCommand, SpectrumTimeoutMs);
}

bool SpectralCard::pollUnderWay() const
{
    return m_askedChannel >= 0 &&
        (m_replyDue.isActive() || m_buses[0]->isWaiting(card::request(m_address, m_askedCommand)));
}

void SpectralCard::timerTimeOut()
{
    const bool wanted = isVisible() || m_overRideVisCheck;
    if (!wanted || !isOpen() || pollUnderWay()) {
        return;
    }
    if (m_k7150Type) {
        tellSpansBeforePoll();
    }
    UpdateCmds();
}

// A K7150 is not asked for its spans, so it is told them: all demodulators at once, the card each
// channel before its first spectrum, because a card that does not answer takes its time each time.
void SpectralCard::tellSpansBeforePoll()
{
    for (int channel = 0; channel < card::Channels; ++channel) {
        if (!m_demodulatorTold.at(static_cast<size_t>(channel))) {
            tellDemodulator(channel);
        }
    }
    skipHidden();
    if (chartAreaVisible(m_channel) && !m_cardTold.at(m_channel)) {
        tellCard(m_channel);
    }
}

void SpectralCard::CommSpectral_Command(const CmdMsg& message)
{
    if (message.address != m_address) {
        return;
    }
    const QString text = message.data.trimmed();
    if (message.command == QLatin1String("RFFT")) {
        takeSpectrum(message);
    } else if (message.command == card::readName()) {
        m_name = text;
        emit cardDetected(m_name);
        initSA();
    } else if (message.command == card::readVersion()) {
        emit cardVersionUpdated(card::nameAndVersion(m_name, text));
        tell(card::listEntry());
        tell(card::versionEntry(text));
    } else if (message.command == card::readSpans()) {
        takeSpans(text);
    } else if (message.command == card::readTrims()) {
        takeTrims(text);
    }
}

// The older type's spectra do not name their channel: it is that of the request on the line.
int SpectralCard::askedChannel() const
{
    const int channel = card::spectrumChannel(m_buses[0]->lastRequest());
    return channel >= 0 ? channel : m_lastChannel;
}

void SpectralCard::takeSpectrum(const CmdMsg& message)
{
    QByteArray points = message.data.toLatin1();
    int channel = askedChannel();
    if (m_k7150Type) {
        channel = points.isEmpty() ? -1 : static_cast<quint8>(points.at(0));
        points.remove(0, 1);
    }
    const bool stale = m_askedStale && channel == m_askedChannel;
    // a spectrum of another port does not answer the poll, which goes over the first one
    if (sender() == nullptr || sender() == m_buses[0]) {
        m_askedChannel = -1;
        m_askedStale = false;
    }
    // one that comes before the marker was measured with the span before
    if (!isChannel(channel) || points.isEmpty() || stale ||
        m_averageClearPending.at(static_cast<size_t>(channel))) {
        return;
    }
    m_areas.at(channel)->chart()->addSpectrum(points);
    emit specUpdate(points, channel);
}

void SpectralCard::takeSpans(const QString& text)
{
    const QVector<int> spans = card::digits(text);
    for (int channel = 0; channel < spans.size(); ++channel) {
        // one that is just being changed was read before the change
        if (!m_averageClearPending.at(static_cast<size_t>(channel))) {
            showSpan(channel, spans.at(channel));
        }
    }
}

void SpectralCard::takeTrims(const QString& text)
{
    const QVector<int> trims = card::digits(text);
    for (int channel = 0; channel < trims.size(); ++channel) {
        m_trims.at(static_cast<size_t>(channel)) = trims.at(channel);
    }
}

void SpectralCard::ComPortTimeOut(const QString& request, Rs422Bus::Results result)
{
    const bool ours = request.left(m_address.size()) == m_address;
    if (ours && result == Rs422Bus::NoReply && request.mid(4, 4) == QLatin1String("RFFT")) {
        m_askedChannel = -1;
        UpdateCmds();
    }
}

void SpectralCard::queFlag(const QString& flag)
{
    const int channel = card::clearAverageChannel(flag);
    if (channel < 0) {
        return;
    }
    const auto at = static_cast<size_t>(channel);
    const bool told = std::exchange(m_averageClearPending.at(at), false);
    if (!told) {
        return;
    }
    m_areas.at(channel)->chart()->restartAverage();
    if (m_toldSpans.at(at) != m_spans.at(at)) {
        tellCard(channel);
    }
}

int SpectralCard::getSpan(int channel) const
{
    return isChannel(channel) ? m_spans.at(static_cast<size_t>(channel)) : -1;
}

QStringList SpectralCard::getSpanList() const
{
    QStringList labels;
    for (const SPANINFO& span : m_spanTable) {
        labels += QLatin1String(span.label);
    }
    return labels;
}

QVector<double> SpectralCard::spanTicks(int span) const
{
    return m_spanTable.value(span).ticks;
}

QStringList SpectralCard::cboSpanItems(int channel) const
{
    QStringList items;
    for (int i = 0; isChannel(channel) && i < m_areas.at(channel)->spanBox()->count(); ++i) {
        items += m_areas.at(channel)->spanBox()->itemText(i);
    }
    return items;
}

void SpectralCard::cboSpan1_SelectedIndexChanged()
{
    SetSpan(0, m_areas.at(0)->spanBox()->currentIndex());
}

void SpectralCard::cboSpan2_SelectedIndexChanged()
{
    SetSpan(1, m_areas.at(1)->spanBox()->currentIndex());
}

void SpectralCard::cboSpan3_SelectedIndexChanged()
{
    SetSpan(2, m_areas.at(2)->spanBox()->currentIndex());
}

void SpectralCard::setSpanComboBox(int channel, int span)
{
    SetSpan(channel, span);
}

void SpectralCard::showSpan(int channel, int span)
{
    if (span != getSpan(channel)) {
        m_spans.at(static_cast<size_t>(channel)) = span;
        m_areas.at(channel)->chart()->setSpan(m_spanTable.at(span));
        emit spanChanged(channel, span);
    }
    m_areas.at(channel)->spanBox()->setCurrentIndex(span);
}

void SpectralCard::SetSpan(int channel, int span)
{
    if (!isChannel(channel) || span < 0 || span >= m_spanTable.size()) {
        return;
    }
    showSpan(channel, span);
    if (m_k7150Type) {
        tellDemodulator(channel);
    }
    tellCard(channel);
}

void SpectralCard::setRf(double rf, int channel)
{
    if (!isChannel(channel)) {
        return;
    }
    const double before = centre(channel);
    m_areas.at(channel)->setCentre(rf);
    // the spectrum that is being measured is still of the frequency before
    if (channel == m_askedChannel && before != centre(channel)) {
        m_askedStale = true;
    }
}

double SpectralCard::centre(int channel) const
{
    return isChannel(channel) ? m_areas.at(channel)->chart()->centre() : 0.0;
}

void SpectralCard::setHMarkers(int channel, const QList<double>& levels)
{
    if (isChannel(channel)) {
        m_areas.at(channel)->setHMarkers(levels);
    }
}

QColor SpectralCard::lineColor(int colour)
{
    return lineColors::color(colour);
}

void SpectralCard::setLineColor(int colour, int trace)
{
    const QColor color = lineColor(colour);
    for (int channel = 0; color.isValid() && channel < card::Channels; ++channel) {
        if (trace == channel || trace == -1) {
            m_areas.at(channel)->setLineColor(color);
        }
    }
}

void SpectralCard::setTrim(int channel, int trim)
{
    if (isChannel(channel) && trim >= 0 && trim <= HighestTrim) {
        m_trims.at(static_cast<size_t>(channel)) = trim;
        sendSerialCmd(card::setTrim(channel, trim));
    }
}

int SpectralCard::trim(int channel) const
{
    return isChannel(channel) ? m_trims.at(static_cast<size_t>(channel)) : -1;
}

SpectrumChart* SpectralCard::chart(int channel) const
{
    return isChannel(channel) ? m_areas.at(channel)->chart() : nullptr;
}

void SpectralCard::returnChartToVbox(int channel)
{
    if (isChannel(channel)) {
        m_areas.at(channel)->takeChartBack();
    }
}

void SpectralCard::SetChartAreaName(int channel, const QString& name)
{
    if (isChannel(channel)) {
        m_areas.at(channel)->setName(name);
    }
}

void SpectralCard::SetChartAreaVisible(int channel, bool on)
{
    if (isChannel(channel)) {
        m_shown.at(static_cast<size_t>(channel)) = on;
        m_areas.at(channel)->setVisible(on);
    }
}

bool SpectralCard::chartAreaVisible(int channel) const
{
    return isChannel(channel) && m_shown.at(static_cast<size_t>(channel));
}

void SpectralCard::WindowName(const QString& name)
{
    setWindowTitle(name);
    for (SpectrumArea* area : std::as_const(m_areas)) {
        area->setName(name);
    }
}

void SpectralCard::setOverRideVisCheck(bool on)
{
    m_overRideVisCheck = on;
    runTimerWhenNeeded();
}

void SpectralCard::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    runTimerWhenNeeded();
}

void SpectralCard::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    runTimerWhenNeeded();
}

void SpectralCard::runTimerWhenNeeded()
{
    const bool needed = isVisible() || m_overRideVisCheck;
    if (needed && !m_timer.isActive()) {
        m_timer.start();
    } else if (!needed) {
        m_timer.stop();
    }
}
