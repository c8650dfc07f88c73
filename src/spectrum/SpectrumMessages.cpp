#include "spectrum/SpectrumMessages.h"

#include "spectrum/FrequencyAxis.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectralRemote.h"
#include "touch/LineColors.h"
#include "wire/Commands.h"
#include "wire/Log.h"
#include "wire/Message.h"
#include "wire/SerialLine.h"
#include "wire/SpanTable.h"

namespace {

QStringList cardPorts()
{
    return {QStringLiteral("ttyUSB11"), QStringLiteral("ttyUSB12"), QStringLiteral("ttyUSB13")};
}

// What the operator chooses a span from: "0 1 MHz:1 3 MHz:..."
QString spanChoices(const QStringList& labels)
{
    QStringList items;
    for (qsizetype i = 0; i < labels.size(); ++i) {
        items += QString::number(i) + QLatin1Char(' ') + labels.at(i).trimmed();
    }
    return items.join(QLatin1Char(':'));
}

void logText(const QString& text)
{
    qCInfo(logSpectrum).noquote() << "card" << text;
}

} // namespace

SpectrumMessages::SpectrumMessages(bool olderCard, QWidget* pageParent, QObject* parent)
    : QObject(parent)
    , m_olderCard(olderCard)
    , m_pageParent(pageParent)
{
}

// There are three ports, but one card of the older type. When none of them opens, the first one is
// tried again until it does.
QString SpectrumMessages::firstPort() const
{
    const QStringList ports = cardPorts();
    for (const QString& port : ports) {
        SerialLine line(logSpectrum);
        if (line.open(port, card::BaudRate)) {
            return port;
        }
    }
    return ports.constFirst();
}

void SpectrumMessages::setUp()
{
    if (m_card != nullptr) {
        return;
    }
    const QStringList ports = cardPorts();
    m_card = new SpectralCard(m_pageParent, 0, m_olderCard ? firstPort() : ports.constFirst());
    m_card->setObjectName(QStringLiteral("spectralCard"));
    connect(m_card, &SpectralCard::cardDetected, this, &logText);
    connect(m_card, &SpectralCard::cardVersionUpdated, this, &logText);
    connect(m_card, &SpectralCard::updateDemodCh, this, &SpectrumMessages::response);
    new SpectralRemote(m_card, m_card);
    m_loan.setCard(m_card);
    emit pageMade(m_card);
    if (!m_olderCard) {
        m_card->setK7150(ports.at(0), ports.at(1), ports.at(2));
    }
}

void SpectrumMessages::start(const QStringList& fields)
{
    if (fields.value(0) != QLatin1String("1")) {
        if (!fields.isEmpty()) {
            wire::logIgnored(logSpectrum(), wire::word::ST, QStringLiteral("only 1 starts it"));
        }
        return;
    }
    const bool again = m_card != nullptr;
    setUp();
    // Quirk: the second demodulator's text is sent twice and the third's never, and none of them
    // has frame characters; main units rely on it. See "Quirks" in docs/architecture.md.
    for (const int demodulator : {1, 2, 2}) {
        emit unframedResponse(card::demodulatorSpectrumOn(demodulator));
    }
    if (again) {
        m_card->tellDemodulatorsAgain(); // A main unit that was restarted has forgotten them.
    }
    emit started();
}

bool SpectrumMessages::hasPage(QLatin1String word) const
{
    if (m_card == nullptr) {
        wire::logIgnored(logSpectrum(), word, QStringLiteral("no spectrum yet"));
    }
    return m_card != nullptr;
}

bool SpectrumMessages::hasChannel(QLatin1String word, int channel) const
{
    const bool isChannel = channel >= 0 && channel < card::Channels;
    if (hasPage(word) && !isChannel) {
        wire::logIgnored(logSpectrum(), word, QStringLiteral("no channel %1").arg(channel));
    }
    return m_card != nullptr && isChannel;
}

void SpectrumMessages::setFrequency(const QStringList& fields)
{
    int channel = 0;
    bool isFrequency = false;
    const double frequency = fields.value(1).toDouble(&isFrequency);
    if (!wire::readInt(fields, 0, channel) || !isFrequency ||
        !hasChannel(wire::word::SF, channel)) {
        return;
    }
    if (!FrequencyAxis::canBeCentre(frequency)) {
        wire::logIgnored(
            logSpectrum(), wire::word::SF, QStringLiteral("no frequency ") + fields.value(1));
    }
    m_card->setRf(frequency, channel);
}

void SpectrumMessages::setSpan(const QStringList& fields)
{
    int channel = 0;
    int span = 0;
    if (wire::readInt(fields, 0, channel) && wire::readInt(fields, 1, span) &&
        hasChannel(wire::word::SP, channel)) {
        if (span < 0 || span >= spanTable().size()) {
            wire::logIgnored(logSpectrum(), wire::word::SP, QStringLiteral("no span %1").arg(span));
        }
        m_card->setSpanComboBox(channel, span);
    }
}

void SpectrumMessages::setChartShown(const QStringList& fields)
{
    int channel = 0;
    int shown = 0;
    if (!wire::readInt(fields, 0, channel) || !wire::readInt(fields, 1, shown)) {
        return;
    }
    if (shown != 0 && shown != 1) {
        wire::logIgnored(logSpectrum(), wire::word::SH, QStringLiteral("neither 0 nor 1"));
        return;
    }
    if (m_card == nullptr) {
        emit pageMissed();
    }
    if (hasChannel(wire::word::SH, channel)) {
        m_loan.setShown(channel, shown == 1);
    }
}

// Returns why a colour changes nothing; empty when it does. The number is the trace's, 0 for all.
QString SpectrumMessages::whyLineColorIgnored(int color, int number) const
{
    if (!lineColors::color(color).isValid()) {
        return QStringLiteral("no colour %1").arg(color);
    }
    if (number < 0 || number > card::Channels) {
        return QStringLiteral("no trace %1").arg(number);
    }
    return number == 0 && m_card == nullptr ? QStringLiteral("no spectrum yet") : QString();
}

void SpectrumMessages::setLineColor(const QStringList& fields)
{
    int color = 0;
    int number = 0; // of the trace, 0 for all charts
    const bool hasTrace = fields.size() > 1;
    if (!wire::readInt(fields, 0, color) || (hasTrace && !wire::readInt(fields, 1, number))) {
        return;
    }
    const QString ignored = whyLineColorIgnored(color, number);
    if (!ignored.isEmpty()) {
        wire::logIgnored(logSpectrum(), wire::word::LC, ignored);
        return;
    }
    const int trace = number - 1;
    if (m_card != nullptr) {
        m_card->setLineColor(color, trace);
    }
    if (trace >= 0) {
        emit lineColorSet(color, trace);
    }
}

void SpectrumMessages::setMarkers(const QStringList& fields)
{
    int channel = 0;
    bool ok = wire::readInt(fields, 0, channel);
    QList<double> levels;
    for (qsizetype i = 1; ok && i < fields.size(); ++i) {
        levels += fields.at(i).toDouble(&ok);
    }
    if (ok && hasChannel(wire::word::HM, channel)) {
        m_card->setHMarkers(channel, levels);
    }
}

void SpectrumMessages::chooseSpan()
{
    if (m_card != nullptr) {
        emit choiceWanted(spanChoices(m_card->getSpanList()));
    }
}

void SpectrumMessages::applyChoice(const QString& choice)
{
    bool ok = false;
    const int span = choice.toInt(&ok);
    if (ok && m_card != nullptr) {
        m_card->setSpanComboBox(0, span);
    }
}
