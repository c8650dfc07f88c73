#include "spectrum/SpectrumChart.h"

#include "plot/NoData.h"
#include "plot/TickTexts.h"
#include "spectrum/ChartAxes.h"
#include "spectrum/ChartLook.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int MinHeight = 60;

} // namespace

SpectrumChart::SpectrumChart(QWidget* parent)
    : CachedPlot(0, parent)
{
    setMinimumHeight(MinHeight);
    connect(&m_pace, &ReadoutPace::due, this, &SpectrumChart::changeShown);
    connect(&m_watch, &DataWatch::staleChanged, this, &SpectrumChart::changeShown);
    chartLook::apply(*this);
    chartAxes::setUp(*this);
    updateAxes();
}

QStringList SpectrumChart::tickLabels() const
{
    return tickTexts::texts(m_axis.ticks());
}

void SpectrumChart::updateAxes()
{
    chartAxes::setRanges(*this, m_axis, scale());
    chartAxes::setTicks(*this, m_axis, scale());
    updateReadout();
    replot(rpQueuedReplot);
}

void SpectrumChart::resizeEvent(QResizeEvent* event)
{
    chartAxes::setTicks(*this, m_axis, scale());
    QCustomPlot::resizeEvent(event);
    updateReadout();
}

void SpectrumChart::setTitle(const QString& title)
{
    m_title = title;
    m_titleWidth = QFontMetrics(chartLook::font()).horizontalAdvance(m_title);
    updateReadout();
    replot(rpQueuedReplot);
}

void SpectrumChart::setSpan(const SpanInfo& span)
{
    m_axis.setSpan(span);
    m_trace.clear();
    m_over = false;
    m_settings.markers.keepInside(m_axis);
    updateAxes();
    emit settingsChanged();
}

void SpectrumChart::setCentre(double centre)
{
    if (m_axis.setCentre(centre)) {
        m_trace.clear(); // Its levels belong to the old frequencies.
        m_over = false;
        updateAxes();
    }
}

void SpectrumChart::setScale(double referenceLevel, int perDivision)
{
    if (m_settings.scale.set(referenceLevel, perDivision)) {
        updateAxes();
        changeSettings();
    }
}

void SpectrumChart::autoScale()
{
    if (m_trace.size() > 0) {
        const ChartScale fitted = ChartScale::fitted(points().floorLevel(), peak().level);
        setScale(fitted.reference(), fitted.perDivision());
    }
}

void SpectrumChart::setLineColor(const QColor& color)
{
    m_lines.setColor(color);
    m_wholeDue = true;
    schedulePaint();
}

void SpectrumChart::setHMarkers(const QList<double>& levels)
{
    m_hMarkers.setLevels(levels, LowestLevel, HighestLevel);
    replot(rpQueuedReplot);
}

void SpectrumChart::addSpectrum(const QByteArray& points)
{
    m_trace.add(points);
    m_over = m_over || m_trace.over();
    if (!points.isEmpty()) {
        m_watch.setExpecting(m_watch.isExpecting() || !m_pollingKnown);
        m_watch.dataCame();
    }
    if (isVisible()) {
        m_newest = traceRect();
        m_traces |= m_newest;
    } else {
        m_wholeDue = true;
    }
    m_pace.change();
    schedulePaint();
    emit spectrumAdded(points);
}

void SpectrumChart::setPolled(bool polled)
{
    m_pollingKnown = true;
    m_watch.setExpecting(polled, DataWatch::Past::Kept);
}

// Shows at once what has changed beside the trace.
void SpectrumChart::changeShown()
{
    m_wholeDue = true;
    updateReadout();
    schedulePaint();
    emit readoutChanged();
}

void SpectrumChart::changeSettings()
{
    changeShown();
    emit settingsChanged();
}

void SpectrumChart::setAveraging(int depth)
{
    m_trace.setAveraging(depth);
    m_settings.averageKind = m_trace.averageKind();
    m_settings.depth = m_trace.averaging() > 1 ? m_trace.averaging() : m_settings.depth;
    changeSettings();
}

void SpectrumChart::setAverageKind(SpectrumTrace::Average kind)
{
    m_trace.setAverageKind(kind);
    m_settings.averageKind = kind;
    changeSettings();
}

void SpectrumChart::setMaxHold(bool on)
{
    m_trace.setMaxHold(on);
    m_settings.maxHold = on;
    changeSettings();
}

void SpectrumChart::setMinHold(bool on)
{
    m_trace.setMinHold(on);
    m_settings.minHold = on;
    changeSettings();
}

void SpectrumChart::clearHolds()
{
    m_trace.clearHolds();
    changeShown();
}

void SpectrumChart::restartAverage()
{
    m_trace.restart();
    m_wholeDue = true;
    schedulePaint(); // The held lines are gone.
}

void SpectrumChart::setSettings(const ChartSettings& settings)
{
    settings.applyTo(m_trace);
    m_settings = settings;
    m_settings.markers.keepInside(m_axis);
    updateAxes();
    changeSettings();
}

SpectrumChart::Reading SpectrumChart::peak() const
{
    return points().peak();
}

SpectrumChart::Reading SpectrumChart::markerAt(int number) const
{
    const auto offset = markers().offset(number);
    return offset ? points().at(*offset) : Reading();
}

SpectrumChart::Reading SpectrumChart::marker() const
{
    return markerAt(markers().active());
}

void SpectrumChart::setMarkers(const ChartMarkers& markers)
{
    m_settings.markers = markers;
    m_settings.markers.keepInside(m_axis);
    changeSettings();
}

void SpectrumChart::setMarker(double frequency)
{
    setMarkers(markers().moved(frequency - centre()));
}

void SpectrumChart::addMarker(double frequency)
{
    if (m_axis.covers(frequency - centre())) {
        setMarkers(markers().with(frequency - centre()));
    }
}

void SpectrumChart::updateReadout()
{
    m_shownPeak = peak();
    m_readout.update({m_trace.averaging(), m_trace.averageKind() == SpectrumTrace::Average::Log,
                         m_settings.maxHold, m_settings.minHold, scale().text(), m_shownPeak,
                         points().at(markers()), centre(), m_axis.decimals(m_trace.size()), m_over},
        {m_titleWidth, plotRect().width() - chartLook::TitleGap, height()});
    m_over = m_trace.over();
    m_pace.setShown();
    if (chartAxes::setHeadHeight(*this, m_readout.headHeight())) {
        replot(rpQueuedReplot);
    }
}

QString SpectrumChart::readout() const
{
    QStringList texts{m_readout.text()};
    if (stale()) {
        texts += noData::text();
    }
    texts.removeAll(QString());
    return texts.join(QLatin1Char('\n'));
}

QPixmap SpectrumChart::drawFrame()
{
    QPixmap frame(size() * devicePixelRatioF());
    frame.setDevicePixelRatio(devicePixelRatioF());
    frame.fill(chartLook::Background);
    QCPPainter painter(&frame);
    // The plot library has drawn axes, grid and horizontal markers into these at its last replot,
    // which makes new ones. Until then they would only take up memory.
    if (mPaintBuffers.isEmpty()) {
        toPainter(&painter, width(), height());
    }
    for (const auto& buffer : std::as_const(mPaintBuffers)) {
        buffer->draw(&painter);
    }
    mPaintBuffers.clear();
    chartLook::paintHead(painter, plotRect(), m_title);
    return frame;
}

// The part of the plot in which the trace runs, with the pixels to which it is rounded.
QRect SpectrumChart::traceRect() const
{
    const QVector<float>& levels = m_trace.levels();
    if (levels.isEmpty()) {
        return {};
    }
    const QRect plot = plotRect();
    const Scale rows = scale().rows(plot);
    const auto rowOf = [&rows, &plot](float level) {
        return qRound(std::clamp<double>(
            rows.pixel(static_cast<double>(level)), plot.top() - 2, plot.bottom() + 2));
    };
    const int top = rowOf(levels.at(m_trace.peak()));
    const int bottom = rowOf(*std::min_element(levels.cbegin(), levels.cend()));
    return QRect(QPoint(plot.left(), top - 1), QPoint(plot.right(), bottom + 1)) & plot;
}

// The rows of the peak's triangle. A part that crosses it would draw its outline otherwise.
QRect SpectrumChart::peakRect() const
{
    const QRect plot = plotRect();
    if (!m_shownPeak.valid) {
        return {};
    }
    const double row =
        std::clamp<double>(scale().rows(plot).pixel(m_shownPeak.level), plot.top(), plot.bottom());
    const int reach = chartMarks::PeakReach;
    return QRect(plot.left(), qRound(row) - reach, plot.width(), 2 * reach + 1) & plot;
}

// The lines of the holds and the marks of the operator change elsewhere.
bool SpectrumChart::onlyTraceChanges() const
{
    return m_trace.held().isEmpty() && m_trace.heldLow().isEmpty() && markers().count() == 0;
}

// A spectrum changes the plot alone. What is read in the head changes more seldom.
QRect SpectrumChart::changedRect() const
{
    if (m_wholeDue) {
        return rect();
    }
    const QRect part = onlyTraceChanges() ? m_traces | peakRect() : plotRect();
    return part.adjusted(-chartMarks::Reach, 0, chartMarks::Reach, 0) & rect();
}

void SpectrumChart::paintData(QPainter& painter, const QRect& dirty)
{
    // What is not a new spectrum changes the whole, and where the trace runs.
    if (m_wholeDue || dirty == rect()) {
        m_newest = traceRect();
        m_traces |= m_newest;
    }
    // While a paint is still to be asked for, this one may be a picture for somebody else.
    if (!paintIsDue()) {
        m_wholeDue = m_wholeDue && dirty != rect();
        m_traces = m_newest;
    }
    const ChartGeometry geometry = plotGeometry();
    painter.setClipRect(geometry.plot);
    m_lines.paint(painter, m_trace, geometry);
    m_hMarkers.paintNumbers(painter, geometry.plot, geometry.rows);
    // A mark at the edge is whole.
    painter.setClipRect(geometry.plot.adjusted(-chartMarks::Reach, 0, chartMarks::Reach, 0));
    paintMarks(painter, geometry);
    if (stale()) {
        noData::paint(painter, plotRect());
    }
    if (dirty.top() < geometry.plot.top()) {
        painter.setClipping(false);
        m_readout.paint(
            painter, geometry.plot.right(), stale() ? chartLook::OldText : chartLook::Text);
    }
}

ChartGeometry SpectrumChart::plotGeometry() const
{
    const QRect plot = plotRect();
    return {plot, m_axis.scale(plot.left(), plot.right()), scale().rows(plot)};
}

void SpectrumChart::paintMarks(QPainter& painter, const ChartGeometry& geometry) const
{
    if (m_shownPeak.valid) {
        chartMarks::paintPeak(painter, geometry.pixel(m_shownPeak), lineColor(), geometry.plot);
    }
    // The active one lies over the others.
    for (const bool active : {false, true}) {
        for (const auto& marker : markers().all()) {
            const Reading at = points().at(marker.offset);
            if (at.valid && (marker.number == markers().active()) == active) {
                m_markLabels.paintMarker(
                    painter, geometry.pixel(at), geometry.plot, marker.number, active);
            }
        }
    }
    if (m_readout.over()) {
        m_markLabels.paintOver(painter, geometry.pixel(m_shownPeak).x(), geometry.plot);
    }
}

void SpectrumChart::follow(const ChartTouch::Action& action)
{
    if (action.kind == ChartTouch::Kind::Title) {
        emit titleTapped();
    } else if (action.kind != ChartTouch::Kind::Nothing) {
        const double offset = points().inside(plotGeometry().columns.value(action.x) - centre());
        setMarkers(ChartTouch::applied(action, markers(), offset));
    }
}

void SpectrumChart::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    follow(m_touch.press(
        event->position(), ChartTouch::layout(plotGeometry(), m_titleWidth, markers(), centre())));
}

void SpectrumChart::mouseMoveEvent(QMouseEvent* event)
{
    event->accept();
    follow(m_touch.move(event->position()));
}

void SpectrumChart::mouseReleaseEvent(QMouseEvent* event)
{
    event->accept();
    follow(m_touch.release(event->position()));
}
