// The spectrum page and the messages that concern it.
#include "app/MainWindow.h"

#include "link/keySerial.h"
#include "popups/PopUpKeyBoard.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectralRemote.h"
#include "spectrum/SpectrumChart.h"
#include "wire/Log.h"
#include "wire/SerialLine.h"

#include <QGridLayout>
#include <QPushButton>

namespace {

constexpr int CardBaudRate = 921600;
constexpr int SpanRows = 3;
constexpr int SpanColumns = 4;

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

// In: fields, a position. Out: whether there is a whole number, and the number.
bool readInt(const QStringList& fields, qsizetype at, int& number)
{
    bool ok = false;
    number = fields.value(at).toInt(&ok);
    return ok;
}

} // namespace

// The ports of the older card are three, the card is one. With none of them there, the first is
// waited for.
QString MainWindow::firstCardPort() const
{
    const QStringList ports = cardPorts();
    for (const QString& port : ports) {
        SerialLine line(logSpectrum);
        if (line.open(port, CardBaudRate)) {
            return port;
        }
    }
    return ports.constFirst();
}

void MainWindow::setUpSpectrum()
{
    if (spectralCard != nullptr) {
        return;
    }
    const QStringList ports = cardPorts();
    spectralCard = new SpectralCard(central, 0, noK7150 ? firstCardPort() : ports.constFirst());
    spectralCard->setObjectName(QStringLiteral("spectralCard"));
    connect(spectralCard, &SpectralCard::cardDetected, this,
        [](const QString& name) { qCInfo(logSpectrum).noquote() << "card" << name; });
    connect(spectralCard, &SpectralCard::cardVersionUpdated, this,
        [](const QString& text) { qCInfo(logSpectrum).noquote() << "card" << text; });
    connect(spectralCard, &SpectralCard::updateDemodCh, this, &MainWindow::send_mess);
    new SpectralRemote(spectralCard, spectralCard);
    stack->addWidget(spectralCard);
    views->set(&Views::spectrum, spectralCard);
    if (!noK7150) {
        spectralCard->setK7150(ports.at(0), ports.at(1), ports.at(2));
    }
    spectrumAvailable = true;
    if (views->current() == Views::Scopes) {
        scopesButton->setText(QStringLiteral("Spectrum"));
    }
}

void MainWindow::process_ST(const QStringList& fields)
{
    if (fields.value(0) != QLatin1String("1")) {
        return;
    }
    const bool again = spectralCard != nullptr;
    setUpSpectrum();
    // the second one twice, the third one never, and no frame around them: kept so
    writeToLink(QStringLiteral("D1:SPEN:1"));
    writeToLink(QStringLiteral("D2:SPEN:1"));
    writeToLink(QStringLiteral("D2:SPEN:1"));
    disconnect(spectralCard, &SpectralCard::updateDemodCh, this, &MainWindow::send_mess);
    connect(spectralCard, &SpectralCard::updateDemodCh, this, &MainWindow::send_mess);
    if (again) {
        spectralCard->tellDemodulatorsAgain(); // A main unit that was restarted has forgotten them.
    }
    const QWidget* paxPage = views->paxMenu.widget();
    if (paxPage != nullptr && stack->currentWidget() == paxPage) {
        lendChart(paxDisplayGrid());
    }
}

void MainWindow::lendChart(QGridLayout* place)
{
    if (spectralCard == nullptr || place == nullptr) {
        return;
    }
    if (!spectralCard->getOverRideVisCheck()) {
        m_chartsBefore.clear();
        for (int channel = 0; channel < card::Channels; ++channel) {
            if (spectralCard->chartAreaVisible(channel)) {
                m_chartsBefore += channel;
            }
        }
    }
    place->addWidget(spectralCard->chart(0), 1, 0);
    // the scope above asks for more, the chart would be left with a strip
    place->setRowStretch(0, 3);
    place->setRowStretch(1, 2);
    spectralCard->chart(0)->show();
    spectralCard->SetChartAreaVisible(0, true);
    spectralCard->SetChartAreaVisible(1, false);
    spectralCard->SetChartAreaVisible(2, false);
    spectralCard->setOverRideVisCheck(true);
}

void MainWindow::returnChart()
{
    if (spectralCard == nullptr || !spectralCard->getOverRideVisCheck()) {
        return;
    }
    spectralCard->setOverRideVisCheck(false);
    spectralCard->returnChartToVbox(0);
    for (int channel = 0; channel < card::Channels; ++channel) {
        spectralCard->SetChartAreaVisible(channel, m_chartsBefore.contains(channel));
    }
}

void MainWindow::process_SF_key(const QStringList& fields)
{
    int channel = 0;
    bool isFrequency = false;
    const double frequency = fields.value(1).toDouble(&isFrequency);
    if (readInt(fields, 0, channel) && isFrequency && spectralCard != nullptr) {
        spectralCard->setRf(frequency, channel);
    }
}

void MainWindow::process_SP_key(const QStringList& fields)
{
    int channel = 0;
    int span = 0;
    if (readInt(fields, 0, channel) && readInt(fields, 1, span) && spectralCard != nullptr) {
        spectralCard->setSpanComboBox(channel, span);
    }
}

void MainWindow::process_SH(const QStringList& fields)
{
    int channel = 0;
    int shown = 0;
    if (!readInt(fields, 0, channel) || !readInt(fields, 1, shown) || shown < 0 || shown > 1) {
        return;
    }
    if (!scope_available() && !spectrumAvailable) {
        views->setCurrent(Views::Menus);
        views->show(&Views::menu);
        scopesButton->setText(QStringLiteral("Scopes"));
    }
    if (spectralCard == nullptr || channel < 0 || channel >= card::Channels) {
        return;
    }
    if (spectralCard->getOverRideVisCheck()) {
        // the first chart is lent: this holds when it comes back
        m_chartsBefore.removeAll(channel);
        if (shown == 1) {
            m_chartsBefore += channel;
        }
        return;
    }
    spectralCard->SetChartAreaVisible(channel, shown == 1);
}

void MainWindow::process_LC(const QStringList& fields)
{
    int color = 0;
    int trace = 0; // of all
    const bool hasTrace = fields.size() > 1;
    if (!readInt(fields, 0, color) || (hasTrace && !readInt(fields, 1, trace))) {
        return;
    }
    if (trace < 0) {
        return; // of no trace
    }
    trace -= 1; // the message counts from 1
    if (spectralCard != nullptr) {
        spectralCard->setLineColor(color, trace);
    }
    if (trace >= 0 && trace < card::Channels) {
        setScopeLineColor(color, trace);
    }
}

void MainWindow::process_HM_key(const QStringList& fields)
{
    int channel = 0;
    bool ok = readInt(fields, 0, channel);
    QList<double> levels;
    for (qsizetype i = 1; ok && i < fields.size(); ++i) {
        levels += fields.at(i).toDouble(&ok);
    }
    if (ok && spectralCard != nullptr) {
        spectralCard->setHMarkers(channel, levels);
    }
}

// The span of the chart on the PAX main menu, the first one.
void MainWindow::spanClicked()
{
    if (spectralCard == nullptr) {
        return;
    }
    const QPointer<SpectralCard> card(spectralCard);
    PopUpKeyBoard list;
    const QString choice = list.new_pop_keyboard(spanChoices(spectralCard->getSpanList()),
        QStringLiteral("Span"), SpanRows, SpanColumns, false);
    bool ok = false;
    const int span = choice.toInt(&ok);
    if (ok && card != nullptr) {
        card->setSpanComboBox(0, span);
    }
}
