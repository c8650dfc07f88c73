#include "spectrum/SpectrumChart.h"

#include "plot/NoData.h"
#include "plot/TickTexts.h"
#include "plot/TraceLine.h"
#include "spectrum/ChartAxes.h"
#include "spectrum/ChartLook.h"
#include "touch/LineColors.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int MinHeight = 60;
constexpr int ReadoutMs = 250; // Numbers that change faster cannot be read.

// The level below which a tenth of the points lie: noise, unless signals fill nearly all of it.
double floorOf(QVector<float> levels)
{
    const auto tenth = levels.begin() + levels.size() / 10;
    std::nth_element(levels.begin(), tenth, levels.end());
    return static_cast<double>(*tenth);
}

} // namespace

SpectrumChart::SpectrumChart(QWidget* parent)
    : CachedPlot(0, parent)
    , m_color(Qt::yellow)
    , m_heldColor(lineColors::darker(m_color))
{
    setMinimumHeight(MinHeight);
    m_readoutTimer.setSingleShot(true);
    m_readoutTimer.setInterval(ReadoutMs);
    connect(&m_readoutTimer, &QTimer::timeout, this, &SpectrumChart::readoutDue);
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
        const ChartScale fitted = ChartScale::fitted(floorOf(m_trace.levels()), peak().level);
        setScale(fitted.reference(), fitted.perDivision());
    }
}

void SpectrumChart::setLineColor(const QColor& color)
{
    m_color = color;
    m_heldColor = lineColors::darker(color);
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
    m_over = m_over || points.contains('\xff');
    if (!points.isEmpty()) {
        m_watch.setExpecting(m_watch.isExpecting() || !m_pollingKnown);
        m_watch.dataCame();
    }
    if (m_readoutTimer.isActive()) {
        m_readoutStale = true;
    } else {
        updateReadout();
        m_readoutTimer.start();
        emit readoutChanged();
    }
    schedulePaint();
    emit spectrumAdded(points);
}

void SpectrumChart::setPolled(bool polled)
{
    m_pollingKnown = true;
    m_watch.setExpecting(polled, DataWatch::Past::Kept);
}

void SpectrumChart::readoutDue()
{
    if (m_readoutStale) {
        changeShown();
        m_readoutTimer.start();
    }
}

// Shows at once what has changed beside the trace.
void SpectrumChart::changeShown()
{
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
    m_settings.averaging = m_trace.averaging();
    changeSettings();
}

void SpectrumChart::setLogMean(bool on)
{
    m_settings.logMean = on;
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
    m_settings.minHold = on;
    changeSettings();
}

void SpectrumChart::clearHolds()
{
    m_trace.setMaxHold(m_trace.maxHold());
    changeShown();
}

void SpectrumChart::restartAverage()
{
    m_trace.restart();
}

void SpectrumChart::setSettings(const ChartSettings& settings)
{
    if (settings.logMean != m_settings.logMean) {
        setLogMean(settings.logMean);
    }
    if (settings.averaging != m_settings.averaging) {
        setAveraging(settings.averaging);
    }
    if (settings.maxHold != m_settings.maxHold) {
        setMaxHold(settings.maxHold);
    }
    if (settings.minHold != m_settings.minHold) {
        setMinHold(settings.minHold);
    }
    m_settings.markers = settings.markers;
    m_settings.markers.keepInside(m_axis);
    m_settings.scale = settings.scale;
    updateAxes();
    changeSettings();
}

SpectrumChart::Reading SpectrumChart::reading(qsizetype index) const
{
    if (index < 0 || index >= m_trace.size()) {
        return {};
    }
    return {true, m_axis.frequencyAt(index, m_trace.size()),
        static_cast<double>(m_trace.levelAt(index))};
}

SpectrumChart::Reading SpectrumChart::peak() const
{
    return reading(m_trace.peak());
}

double SpectrumChart::binWidth() const
{
    return m_trace.size() > 0 ? spanMHz() / static_cast<double>(m_trace.size()) : 0.0;
}

SpectrumChart::Reading SpectrumChart::readingAt(double offset) const
{
    return reading(m_axis.indexAt(centre() + offset, m_trace.size()));
}

SpectrumChart::Reading SpectrumChart::markerAt(int number) const
{
    const auto offset = markers().offset(number);
    return offset ? readingAt(*offset) : Reading();
}

SpectrumChart::Reading SpectrumChart::marker() const
{
    return markerAt(markers().active());
}

void SpectrumChart::setMarker(double frequency)
{
    const double offset = frequency - centre();
    if (m_axis.covers(offset)) {
        m_settings.markers.move(offset);
    } else {
        m_settings.markers.remove();
    }
    changeSettings();
}

void SpectrumChart::addMarker(double frequency)
{
    if (m_axis.covers(frequency - centre())) {
        m_settings.markers.add(frequency - centre());
        changeSettings();
    }
}

void SpectrumChart::activateMarker(int number)
{
    m_settings.markers.activate(number);
    changeSettings();
}

void SpectrumChart::markerToPeak()
{
    if (const Reading top = peak(); top.valid) {
        setMarker(top.frequency);
    }
}

void SpectrumChart::markerToNextPeak()
{
    if (!marker().valid) {
        markerToPeak();
    }
}

void SpectrumChart::stepMarker(int bins)
{
    const Reading from = marker();
    if (from.valid) {
        const qsizetype size = m_trace.size();
        const qsizetype to = m_axis.indexAt(from.frequency, size) + bins;
        setMarker(m_axis.frequencyAt(qBound(qsizetype{0}, to, size - 1), size));
    }
}

void SpectrumChart::setMarkerDelta(bool on)
{
    ChartMarkers& markers = m_settings.markers;
    markers.setDelta(on);
    if (on && markers.count() == 1 && markers.active() == 1) {
        markers.add(*markers.offset());
    }
    changeSettings();
}

void SpectrumChart::removeMarker()
{
    m_settings.markers.remove();
    changeSettings();
}

void SpectrumChart::clearMarker()
{
    m_settings.markers.clear();
    changeSettings();
}

ChartReadout::Values SpectrumChart::readoutValues() const
{
    ChartReadout::Values values;
    values.averaging = m_settings.averaging;
    values.logMean = m_settings.logMean;
    values.maxHold = m_settings.maxHold;
    values.minHold = m_settings.minHold;
    values.scale = scale().text();
    values.peak = m_shownPeak;
    const Reading first = markerAt(1);
    for (const auto& marker : markers().all()) {
        const bool relative = markers().isRelative(marker.number);
        Reading reading = markerAt(marker.number);
        if (relative) {
            reading.frequency -= first.frequency;
            reading.level -= first.level;
        }
        values.markers += {marker.number, marker.number == markers().active(), relative, reading};
    }
    values.centre = centre();
    values.binWidth = binWidth();
    return values;
}

void SpectrumChart::updateReadout()
{
    m_shownPeak = peak();
    m_shownOver = m_over;
    m_over = false;
    m_readout.update(
        readoutValues(), {m_titleWidth, plotRect().width() - chartLook::TitleGap, height()});
    m_readoutStale = false;
    if (chartAxes::setHeadHeight(*this, m_readout.headHeight())) {
        replot(rpQueuedReplot);
    }
}

QString SpectrumChart::readout() const
{
    QStringList texts;
    if (!m_readout.text().isEmpty()) {
        texts += m_readout.text();
    }
    if (m_shownOver) {
        texts += chartLook::overText();
    }
    if (stale()) {
        texts += noData::text();
    }
    return texts.join(QLatin1Char('\n'));
}

QPixmap SpectrumChart::drawFrame()
{
    QPixmap frame(size() * devicePixelRatioF());
    frame.setDevicePixelRatio(devicePixelRatioF());
    frame.fill(chartLook::Background);
    QCPPainter painter(&frame);
    // The plot library has drawn axes, grid and horizontal markers into these at its last replot.
    for (const auto& buffer : std::as_const(mPaintBuffers)) {
        buffer->draw(&painter);
    }
    chartLook::paintHead(painter, plotRect(), m_title);
    return frame;
}

void SpectrumChart::paintData(QPainter& painter, const QRect& /*dirty*/)
{
    painter.setClipRect(plotRect());
    paintLine(painter, m_trace.held(), QPen(m_heldColor, 0));
    paintLine(painter, m_trace.levels(), QPen(m_color, 0));
    m_hMarkers.paintNumbers(painter, plotRect(), levelScale());
    paintMarks(painter);
    if (stale()) {
        noData::paint(painter, plotRect());
    }
    painter.setClipping(false);
    m_readout.paint(painter, plotRect().right(), stale() ? chartLook::OldText : chartLook::Text);
}

void SpectrumChart::paintLine(QPainter& painter, const QVector<float>& levels, const QPen& pen)
{
    if (levels.isEmpty()) {
        return; // Without touching the points of the other line, which keep their memory.
    }
    traceLine::layOut(levels, plotRect(), levelScale(), m_line);
    painter.setPen(pen);
    painter.drawPolyline(m_line);
}

Scale SpectrumChart::frequencyScale() const
{
    return m_axis.scale(plotRect().left(), plotRect().right());
}

QPointF SpectrumChart::pixelOf(const Reading& reading) const
{
    return {frequencyScale().pixel(reading.frequency), levelScale().pixel(reading.level)};
}

void SpectrumChart::paintMarks(QPainter& painter) const
{
    const QRect plot = plotRect();
    if (m_shownPeak.valid) {
        chartMarks::paintPeak(painter, pixelOf(m_shownPeak), m_color, plot);
    }
    for (const auto& marker : markers().all()) {
        const Reading marked = readingAt(marker.offset);
        const bool active = marker.number == markers().active();
        const auto paint = active ? &chartMarks::paintMarker : &chartMarks::paintOtherMarker;
        if (marked.valid) {
            paint(painter, pixelOf(marked), plot, m_markTexts.numbers.at(marker.number));
        }
    }
    if (m_shownOver) {
        chartMarks::paintOver(painter, pixelOf(m_shownPeak).x(), plot, m_markTexts.over);
    }
}

ChartTouch::Layout SpectrumChart::touchLayout() const
{
    const Scale columns = frequencyScale();
    ChartTouch::Layout layout{plotRect(), plotRect().left() + m_titleWidth, {}};
    for (const auto& marker : markers().all()) {
        layout.markers += {marker.number, columns.pixel(centre() + marker.offset),
            marker.number == markers().active()};
    }
    return layout;
}

void SpectrumChart::follow(const ChartTouch::Action& action)
{
    const double frequency = frequencyScale().value(action.x);
    switch (action.kind) {
    case ChartTouch::Kind::Nothing:
        break;
    case ChartTouch::Kind::Select:
        activateMarker(action.number);
        break;
    case ChartTouch::Kind::Drag:
        m_settings.markers.activate(action.number);
        setMarker(frequency);
        break;
    case ChartTouch::Kind::Tap:
        addMarker(frequency);
        break;
    case ChartTouch::Kind::Title:
        emit titleTapped();
        break;
    }
}

void SpectrumChart::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    follow(m_touch.press(event->position(), touchLayout()));
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
