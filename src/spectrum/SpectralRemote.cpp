#include "spectrum/SpectralRemote.h"

#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumTrace.h"
#include "wire/Log.h"

namespace {

QByteArray number(double value)
{
    return QByteArray::number(value, 'g', 12);
}

} // namespace

SpectralRemote::SpectralRemote(SpectralCard* card, QObject* parent)
    : QObject(parent)
    , m_card(card)
    , m_server("QN740_SPECTRUM_SOCKET", QStringLiteral("spectra"), logSpectrum)
{
    if (m_server.isWanted()) {
        connect(card, &SpectralCard::specUpdate, this, &SpectralRemote::forward);
    }
}

QByteArray SpectralRemote::line(const QByteArray& points, int channel, double centre, double span)
{
    static const QVector<QByteArray> levels = [] {
        QVector<QByteArray> texts;
        for (int byte = 0; byte < 256; ++byte) {
            texts += number(SpectrumTrace::level(static_cast<quint8>(byte)));
        }
        return texts;
    }();
    QByteArray text;
    text.reserve(80 + points.size() * 7);
    text += "{\"channel\":" + QByteArray::number(channel) + ",\"centre\":" + number(centre) +
        ",\"span\":" + number(span) + ",\"levels\":[";
    for (qsizetype i = 0; i < points.size(); ++i) {
        if (i > 0) {
            text += ',';
        }
        text += levels.at(static_cast<quint8>(points.at(i)));
    }
    text += "]}\n";
    return text;
}

void SpectralRemote::forward(const QByteArray& points, int channel)
{
    if (readers() == 0 || m_card == nullptr) {
        return;
    }
    const int span = m_card->getSpan(channel);
    const double width = SpectralCard::m_spanTable.value(span).spanMHz;
    m_server.send(line(points, channel, m_card->centre(channel), width));
}
