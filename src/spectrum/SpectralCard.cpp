#include "spectrum/SpectralCard.h"

#include "spectrum/CardSession.h"
#include "spectrum/SpectrumArea.h"
#include "spectrum/SpectrumChart.h"
#include "touch/LineColors.h"

#include <QComboBox>
#include <QVBoxLayout>

#include <utility>

namespace {

const char* const Look =
    "QComboBox {background-color: #919191; color: black; border: 2px solid yellow; border-radius: 4px; padding-left: 6px;} "
    "QComboBox QAbstractItemView {background-color: #919191; color: black; selection-background-color: #4169e1; selection-color: white;} "
    "QPushButton {background-color: #919191; color: black; border: 2px solid yellow; border-radius: 4px; font-size: 15px;} "
    "QPushButton:checked {background-color: green; color: white;} "
    "QPushButton:pressed {background-color: #4169e1; color: white;}";

} // namespace

const QVector<SpectralCard::SPANINFO> SpectralCard::m_spanTable = spanTable();

SpectralCard::SpectralCard(QWidget* parent, int window, const QString& portName)
    : QWidget(parent)
{
    QPalette black = palette();
    black.setColor(QPalette::Window, Qt::black);
    setPalette(black);
    setAutoFillBackground(true);
    setStyleSheet(QLatin1String(Look));
    initCharts();
    WindowName(window == 0 ? QStringLiteral("SpectralCard CH.1/CH.2/CMB.1")
                           : QStringLiteral("SpectralCard CH.3/CH.4/CMB.2"));
    m_session = std::make_unique<CardSession>(portName, this);
    connectSession();
    connectCombos();
}

// The session goes first: it may still speak while the charts are torn down.
SpectralCard::~SpectralCard()
{
    m_session.reset();
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
        connect(area, &SpectrumArea::enlargeWanted, this,
            [this, channel](bool enlarged) { setEnlarged(enlarged ? channel : -1); });
        m_areas += area;
    }
}

void SpectralCard::connectSession()
{
    const CardSession* session = m_session.get();
    connect(session, &CardSession::detected, this, &SpectralCard::cardDetected);
    connect(session, &CardSession::versionKnown, this, &SpectralCard::cardVersionUpdated);
    connect(session, &CardSession::demodulatorMessage, this, &SpectralCard::updateDemodCh);
    connect(session, &CardSession::spectrumReceived, this,
        [this](const QByteArray& points, int channel) {
            chart(channel)->addSpectrum(points);
            emit specUpdate(points, channel);
        });
    connect(session, &CardSession::spanChanged, this, [this](int channel, int span) {
        m_areas.at(channel)->setSpan(m_spanTable.at(span));
        emit spanChanged(channel, span);
    });
    connect(session, &CardSession::spanConfirmed, this,
        [this](int channel, int span) { m_areas.at(channel)->spanBox()->setCurrentIndex(span); });
    connect(session, &CardSession::averageOutdated, this,
        [this](int channel) { chart(channel)->restartAverage(); });
}

void SpectralCard::connectCombos()
{
    const auto box = [this](int channel) { return m_areas.at(channel)->spanBox(); };
    connect(box(0), &QComboBox::activated, this, &SpectralCard::cboSpan1_SelectedIndexChanged);
    connect(box(1), &QComboBox::activated, this, &SpectralCard::cboSpan2_SelectedIndexChanged);
    connect(box(2), &QComboBox::activated, this, &SpectralCard::cboSpan3_SelectedIndexChanged);
}

bool SpectralCard::isOpen() const
{
    return m_session->isOpen();
}

void SpectralCard::sendSerialCmd(const QString& command, int timeout)
{
    m_session->send(command, timeout);
}

void SpectralCard::sendSerialCmd(const QString& command)
{
    m_session->send(command);
}

void SpectralCard::UpdateCmds()
{
    m_session->poll();
}

void SpectralCard::setK7150(const QString& port1, const QString& port2, const QString& port3)
{
    m_session->setK7150(port1, port2, port3);
}

bool SpectralCard::k7150Type() const
{
    return m_session->isK7150();
}

void SpectralCard::initSA()
{
    m_session->setUpCard();
}

void SpectralCard::tellDemodulatorsAgain()
{
    m_session->tellDemodulatorsAgain();
}

void SpectralCard::CommSpectral_Command(const CmdMsg& message)
{
    m_session->takeReply(message);
}

void SpectralCard::ComPortTimeOut(const QString& request, Rs422Bus::Results result)
{
    m_session->takeTimeout(request, result);
}

void SpectralCard::queFlag(const QString& flag)
{
    m_session->takeMarker(flag);
}

void SpectralCard::timerTimeOut()
{
    m_session->pollIfDue();
}

int SpectralCard::getSpan(int channel) const
{
    return m_session->span(channel);
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
    if (CardSession::isChannel(channel)) {
        const QComboBox* box = m_areas.at(channel)->spanBox();
        for (int i = 0; i < box->count(); ++i) {
            items += box->itemText(i);
        }
    }
    return items;
}

void SpectralCard::chooseFromBox(int channel)
{
    SetSpan(channel, m_areas.at(channel)->spanBox()->currentIndex());
}

void SpectralCard::cboSpan1_SelectedIndexChanged()
{
    chooseFromBox(0);
}

void SpectralCard::cboSpan2_SelectedIndexChanged()
{
    chooseFromBox(1);
}

void SpectralCard::cboSpan3_SelectedIndexChanged()
{
    chooseFromBox(2);
}

void SpectralCard::setSpanComboBox(int channel, int span)
{
    SetSpan(channel, span);
}

void SpectralCard::SetSpan(int channel, int span)
{
    m_session->setSpan(channel, span);
}

void SpectralCard::setRf(double rf, int channel)
{
    if (!CardSession::isChannel(channel)) {
        return;
    }
    const double before = centre(channel);
    m_areas.at(channel)->setCentre(rf);
    if (before != centre(channel)) {
        m_session->dropSpectrumUnderWay(channel);
    }
}

double SpectralCard::centre(int channel) const
{
    return CardSession::isChannel(channel) ? chart(channel)->centre() : 0.0;
}

void SpectralCard::setHMarkers(int channel, const QList<double>& levels)
{
    if (CardSession::isChannel(channel)) {
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
    m_session->setTrim(channel, trim);
}

int SpectralCard::trim(int channel) const
{
    return m_session->trim(channel);
}

SpectrumChart* SpectralCard::chart(int channel) const
{
    return CardSession::isChannel(channel) ? m_areas.at(channel)->chart() : nullptr;
}

void SpectralCard::returnChartToVbox(int channel)
{
    if (CardSession::isChannel(channel)) {
        m_areas.at(channel)->takeChartBack();
    }
}

void SpectralCard::SetChartAreaName(int channel, const QString& name)
{
    if (CardSession::isChannel(channel)) {
        m_areas.at(channel)->setName(name);
    }
}

void SpectralCard::SetChartAreaVisible(int channel, bool on)
{
    if (CardSession::isChannel(channel)) {
        m_session->setShown(channel, on);
        m_areas.at(channel)->setLeftOut(!on);
        setEnlarged(m_enlarged);
        showAreas();
    }
}

void SpectralCard::setEnlarged(int channel)
{
    const int next = chartAreaVisible(channel) ? channel : -1;
    if (next != m_enlarged) {
        m_enlarged = next;
        showAreas();
    }
}

// Areas are hidden before others are shown, so that the page never asks for more than its height.
void SpectralCard::showAreas()
{
    const auto hasRoom = [this](int channel) {
        return chartAreaVisible(channel) && (m_enlarged == -1 || m_enlarged == channel);
    };
    for (const bool room : {false, true}) {
        for (int channel = 0; channel < card::Channels; ++channel) {
            if (hasRoom(channel) == room) {
                m_areas.at(channel)->setEnlarged(m_enlarged == channel);
                m_areas.at(channel)->setVisible(room);
            }
        }
    }
}

bool SpectralCard::chartAreaVisible(int channel) const
{
    return m_session->isShown(channel);
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
    pollWhenNeeded();
}

void SpectralCard::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    pollWhenNeeded();
}

void SpectralCard::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    pollWhenNeeded();
}

void SpectralCard::pollWhenNeeded()
{
    const bool polled = isVisible() || m_overRideVisCheck;
    m_session->setPolling(polled);
    for (SpectrumArea* area : std::as_const(m_areas)) {
        area->setPolled(polled);
    }
}
