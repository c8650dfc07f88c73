#include "spectrum/ChartLoan.h"

#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumChart.h"

#include <QGridLayout>

namespace {

// The scope above asks for more height; without these the chart would be left with a strip.
constexpr int ScopeStretch = 3;
constexpr int ChartStretch = 2;

} // namespace

void ChartLoan::setCard(SpectralCard* card)
{
    m_card = card;
}

bool ChartLoan::isLent() const
{
    return m_card != nullptr && m_card->getOverRideVisCheck();
}

void ChartLoan::lendTo(QGridLayout* place)
{
    if (m_card == nullptr || place == nullptr) {
        return;
    }
    if (!isLent()) {
        m_shown.clear();
        for (int channel = 0; channel < card::Channels; ++channel) {
            if (m_card->chartAreaVisible(channel)) {
                m_shown += channel;
            }
        }
        m_enlarged = m_card->enlarged();
    }
    m_card->setEnlarged(-1); // The chart leaves its keys and its waterfall behind.
    place->addWidget(m_card->chart(0), 1, 0);
    place->setRowStretch(0, ScopeStretch);
    place->setRowStretch(1, ChartStretch);
    m_card->chart(0)->show();
    for (int channel = 0; channel < card::Channels; ++channel) {
        m_card->SetChartAreaVisible(channel, channel == 0);
    }
    m_card->setOverRideVisCheck(true);
}

void ChartLoan::takeBack()
{
    if (!isLent()) {
        return;
    }
    m_card->setOverRideVisCheck(false);
    m_card->returnChartToVbox(0);
    for (int channel = 0; channel < card::Channels; ++channel) {
        m_card->SetChartAreaVisible(channel, m_shown.contains(channel));
    }
    m_card->setEnlarged(m_enlarged);
}

void ChartLoan::setShown(int channel, bool shown)
{
    if (m_card == nullptr) {
        return;
    }
    if (!isLent()) {
        m_card->SetChartAreaVisible(channel, shown);
        return;
    }
    m_shown.removeAll(channel);
    if (shown) {
        m_shown += channel;
    }
}
