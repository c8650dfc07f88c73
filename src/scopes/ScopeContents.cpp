#include "scopes/ScopeContents.h"

#include "scopes/IqBlockDecoder.h"

#include <algorithm>
#include <cmath>

namespace {

// The outermost value that the line can carry: a sample there has been clipped.
constexpr double Clipped = 32767.0 * IqBlockDecoder::Scale;

double peakOf(const QVector<double>& samples)
{
    double peak = 0.0;
    for (const double sample : samples) {
        peak = std::max(peak, std::abs(sample));
    }
    return peak;
}

QString clipBadge(bool clipped)
{
    return clipped ? QStringLiteral("CLIP") : QString();
}

} // namespace

ScopeContents::ScopeContents()
    : m_eyeI(QStringLiteral("I (% FS)"))
    , m_eyeQ(QStringLiteral("Q (% FS)"))
{
}

std::array<PlotContent*, 4> ScopeContents::all()
{
    return {&m_eyeI, &m_eyeQ, &m_constellation, &m_strips};
}

PlotContent* ScopeContents::upper()
{
    switch (m_view) {
    case View::Constellation:
        return &m_constellation;
    case View::Strips:
        return &m_strips;
    case View::Eyes:
        break;
    }
    return &m_eyeI;
}

void ScopeContents::addBlock(const QVector<double>& i, const QVector<double>& q)
{
    const double peakI = peakOf(i);
    const double peakQ = peakOf(q);
    m_range.addPeak(std::max(peakI, peakQ));
    applyRange();
    const bool clippedI = peakI >= Clipped;
    const bool clippedQ = peakQ >= Clipped;
    if (m_view == View::Constellation) {
        m_constellation.setBadge(clipBadge(clippedI || clippedQ));
        m_constellation.addBlock(i, q);
    } else {
        m_eyeI.setBadge(clipBadge(clippedI));
        m_eyeQ.setBadge(clipBadge(clippedQ));
        m_eyeI.addBlock(i);
        m_eyeQ.addBlock(q);
    }
}

void ScopeContents::addRecord(const QByteArray& record)
{
    m_strips.setBadge({});
    m_strips.addRecord(record);
}

void ScopeContents::clear()
{
    for (PlotContent* content : all()) {
        content->clear();
    }
}

void ScopeContents::setBadge(const QString& badge)
{
    for (PlotContent* content : all()) {
        content->setBadge(badge);
    }
}

void ScopeContents::setLineColor(const QColor& color)
{
    for (PlotContent* content : all()) {
        content->setLineColor(color);
    }
}

void ScopeContents::setRangeFixed(bool fixed)
{
    m_range.setFixed(fixed);
    applyRange();
}

void ScopeContents::applyRange()
{
    m_eyeI.setLimit(m_range.limit());
    m_eyeQ.setLimit(m_range.limit());
    m_constellation.setLimit(m_range.limit());
}
