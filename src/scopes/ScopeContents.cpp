#include "scopes/ScopeContents.h"

#include "scopes/IqBlockDecoder.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr size_t MaxHeldBlocks = 16; // the plots draw the last of them, the meters measure all

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
    showRange();
    forgetFigures();
}

std::array<PlotContent*, 4> ScopeContents::all()
{
    return {&m_eyeI, &m_eyeQ, &m_constellation, &m_strips};
}

const PlotContent* ScopeContents::upper() const
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
    if (!m_frozen) {
        plot({i, q});
        return;
    }
    m_heldBlocks.push_back({i, q});
    if (m_heldBlocks.size() > MaxHeldBlocks) {
        m_heldBlocks.pop_front();
    }
    showClipping(); // of what is frozen, where "NO DATA" may have stood
}

void ScopeContents::plot(const Block& block)
{
    const double peakI = peakOf(block.i);
    const double peakQ = peakOf(block.q);
    m_range.addPeak(std::max(peakI, peakQ));
    applyRange();
    m_clippedI = peakI >= Clipped;
    m_clippedQ = peakQ >= Clipped;
    showClipping();
    if (m_view == View::Constellation) {
        m_constellation.addBlock(block.i, block.q);
        m_constellationMeter.addBlock(block.i, block.q);
    } else {
        m_eyeI.addBlock(block.i);
        m_eyeQ.addBlock(block.q);
        m_eyeMeter.addBlock(block.i, block.q);
    }
}

void ScopeContents::showClipping()
{
    if (m_view == View::Constellation) {
        m_constellation.setBadge(clipBadge(m_clippedI || m_clippedQ));
    } else {
        m_eyeI.setBadge(clipBadge(m_clippedI));
        m_eyeQ.setBadge(clipBadge(m_clippedQ));
    }
}

void ScopeContents::addRecord(const QByteArray& record)
{
    m_strips.setBadge({});
    if (!m_frozen) {
        m_strips.addRecord(record);
        return;
    }
    m_heldRecords.push_back(record);
    if (m_heldRecords.size() > SdiPlot::Records) {
        m_heldRecords.pop_front();
    }
}

void ScopeContents::setFrozen(bool frozen)
{
    m_frozen = frozen;
    if (frozen) {
        return;
    }
    for (const Block& block : std::exchange(m_heldBlocks, {})) {
        plot(block);
    }
    for (const QByteArray& record : std::exchange(m_heldRecords, {})) {
        m_strips.addRecord(record);
    }
}

void ScopeContents::setPersistence(DensityImage::Persistence persistence)
{
    m_persistence = persistence;
    m_range.setMayShrink(persistence != DensityImage::Persistence::Infinite);
    m_eyeI.setPersistence(persistence);
    m_eyeQ.setPersistence(persistence);
    m_constellation.setPersistence(persistence);
}

void ScopeContents::clear()
{
    for (PlotContent* content : all()) {
        content->clear();
    }
    m_heldBlocks.clear();
    m_heldRecords.clear();
    if (m_persistence == DensityImage::Persistence::Infinite) {
        m_range.fitAnew(); // There is nothing left that a smaller range would lose.
    }
    m_clippedI = m_clippedQ = false;
    forgetFigures();
}

void ScopeContents::setView(View view)
{
    if (m_view != view) {
        m_view = view;
        forgetFigures();
    }
}

void ScopeContents::forgetFigures()
{
    m_constellationMeter.clear();
    m_eyeMeter.clear();
    m_constellation.setIdealPoints({});
    m_eyeI.setInstant({});
    m_eyeQ.setInstant({});
    m_eyeI.setNote({});
    switch (m_view) {
    case View::Constellation:
        m_figures = scopeFigures::withoutValues(scopeFigures::ofConstellation({}));
        break;
    case View::Strips:
        m_figures = scopeFigures::ofRecord({});
        break;
    case View::Eyes:
        m_figures = scopeFigures::ofEyes({});
        break;
    }
}

void ScopeContents::measure()
{
    switch (m_view) {
    case View::Constellation:
        return measureConstellation();
    case View::Strips:
        m_figures = scopeFigures::ofRecord(
            m_strips.records().empty() ? QByteArray() : m_strips.records().back());
        return;
    case View::Eyes:
        return measureEyes();
    }
}

void ScopeContents::measureConstellation()
{
    const ConstellationFigures& found = m_constellationMeter.figures();
    m_figures = scopeFigures::ofConstellation(found);
    m_constellation.setIdealPoints(
        m_marksShown && found.valid ? found.idealPoints : QVector<QPointF>());
}

void ScopeContents::measureEyes()
{
    const EyeFigures& found = m_eyeMeter.figures();
    m_figures = scopeFigures::ofEyes(found);
    const bool certain = m_marksShown && found.symbolPeriodFound;
    const auto instant = [certain](const EyeOpening& eye) {
        return certain && eye.valid ? std::optional<double>(eye.bestInstant) : std::nullopt;
    };
    m_eyeI.setInstant(instant(found.i));
    m_eyeQ.setInstant(instant(found.q));
    const bool triedInVain =
        !found.symbolPeriodFound && m_eyeMeter.blockCount() == EyeMeter::MaxBlocks;
    m_eyeI.setNote(triedInVain ? QStringLiteral("4 samples per symbol assumed") : QString());
    for (EyePlot* eye : {&m_eyeI, &m_eyeQ}) {
        eye->setSamplesPerSymbol(found.samplesPerSymbol);
    }
}

void ScopeContents::setMarksShown(bool shown)
{
    m_marksShown = shown;
    if (!shown) {
        m_constellation.setIdealPoints({});
        m_eyeI.setInstant({});
        m_eyeQ.setInstant({});
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
    showRange();
}

void ScopeContents::showRange()
{
    m_eyeI.setRangeNote(rangeText());
    m_eyeQ.setRangeNote(rangeText());
    m_constellation.setRangeNote(rangeText());
}

QString ScopeContents::rangeText() const
{
    return rangeFixed() ? QStringLiteral("Fixed range") : QStringLiteral("Fitted range");
}

void ScopeContents::applyRange()
{
    m_eyeI.setLimit(m_range.limit());
    m_eyeQ.setLimit(m_range.limit());
    m_constellation.setLimit(m_range.limit());
}
