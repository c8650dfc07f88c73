#include "spectrum/SpectrumChart.h"

#include "plot/NoData.h"
#include "plot/TickTexts.h"
#include "plot/TraceLine.h"
#include "spectrum/ChartLook.h"
#include "spectrum/ChartMarks.h"
#include "touch/LineColors.h"

#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace {

constexpr int MinHeight = 60;
constexpr int MinRightMargin = 16;
constexpr int ReadoutMs = 250; // Numbers that change faster cannot be read.
constexpr int TapRadius = 24;  // Pixels around the marker that count as it: half a finger.

// The distance of two level ticks in dB that leaves room between their texts.
int levelStep(int height)
{
    return height < 170 ? 40 : height < 330 ? 20 : 10;
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
    setUpAxes();
    updateAxes();
}

void SpectrumChart::setUpAxes()
{
    chartLook::apply(*this);
    axisRect()->setMargins(QMargins(0, chartLook::TitleHeight, MinRightMargin, 0));
    xAxis->setTicker(QSharedPointer<QCPAxisTickerText>::create());
    yAxis->setTicker(QSharedPointer<QCPAxisTickerFixed>::create());
    yAxis->setNumberFormat(QStringLiteral("f"));
    yAxis->setNumberPrecision(0);
    yAxis->setRange(LowestLevel, HighestLevel);
}

QStringList SpectrumChart::tickLabels() const
{
    return tickTexts::texts(m_axis.ticks());
}

void SpectrumChart::updateAxes()
{
    xAxis->setRange(centre() - spanMHz() / 2, centre() + spanMHz() / 2);
    updateTickTexts();
    updateReadout();
    replot(rpQueuedReplot);
}

void SpectrumChart::updateTickTexts()
{
    QStringList labels = tickLabels();
    if (labels.isEmpty()) {
        return; // A span without ticks.
    }
    labels[labels.size() / 2] += QStringLiteral(" MHz");
    const QFontMetrics metrics(chartLook::font());
    int wanted = 0;
    for (const QString& label : labels) {
        wanted += metrics.horizontalAdvance(label + QLatin1Char(' '));
    }
    // A narrow chart keeps its five ticks, but names only the outer ones and the centre.
    for (qsizetype i = 1; wanted > width() - 60 && i < labels.size(); i += 2) {
        labels[i].clear();
    }
    // The outer label reaches beyond the plot.
    const int beyond = metrics.horizontalAdvance(labels.last()) / 2 - 6;
    QMargins margins = axisRect()->margins();
    margins.setRight(qMax(MinRightMargin, beyond));
    axisRect()->setMargins(margins);
    auto ticker = qSharedPointerCast<QCPAxisTickerText>(xAxis->ticker());
    ticker->clear();
    ticker->addTicks(tickPositions(), labels);
    qSharedPointerCast<QCPAxisTickerFixed>(yAxis->ticker())->setTickStep(levelStep(height()));
}

void SpectrumChart::resizeEvent(QResizeEvent* event)
{
    updateTickTexts();
    QCustomPlot::resizeEvent(event);
    updateReadout();
}

void SpectrumChart::setTitle(const QString& title)
{
    m_title = title;
    updateReadout();
    replot(rpQueuedReplot);
}

void SpectrumChart::setSpan(const SpanInfo& span)
{
    m_axis.setSpan(span);
    m_trace.clear();
    m_hasMarker = m_hasMarker && m_axis.covers(m_markerOffset);
    updateAxes();
}

void SpectrumChart::setCentre(double centre)
{
    if (m_axis.setCentre(centre)) {
        m_trace.clear(); // Its levels belong to the old frequencies.
        updateAxes();
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
    if (!points.isEmpty()) {
        m_watch.setExpecting(m_watch.isExpecting() || !m_pollingKnown);
        m_watch.dataCame();
    }
    if (m_readoutTimer.isActive()) {
        m_readoutStale = true;
    } else {
        updateReadout();
        m_readoutTimer.start();
    }
    schedulePaint();
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
}

void SpectrumChart::setAveraging(int depth)
{
    m_trace.setAveraging(depth);
    changeShown();
}

void SpectrumChart::setMaxHold(bool on)
{
    m_trace.setMaxHold(on);
    changeShown();
}

void SpectrumChart::restartAverage()
{
    m_trace.restart();
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

SpectrumChart::Reading SpectrumChart::marker() const
{
    return m_hasMarker ? reading(m_axis.indexAt(centre() + m_markerOffset, m_trace.size()))
                       : Reading();
}

void SpectrumChart::setMarker(double frequency)
{
    m_markerOffset = frequency - centre();
    m_hasMarker = m_axis.covers(m_markerOffset);
    changeShown();
}

void SpectrumChart::clearMarker()
{
    m_hasMarker = false;
    changeShown();
}

void SpectrumChart::updateReadout()
{
    const int titleWidth = QFontMetrics(chartLook::font()).horizontalAdvance(m_title);
    m_shownPeak = peak();
    m_readout.update(
        {m_trace.averaging(), m_trace.maxHold(), m_shownPeak, m_hasMarker, marker(), centre()},
        titleWidth, plotRect().width() - chartLook::TitleGap);
    m_readoutStale = false;
    setHeadHeight(m_readout.headHeight());
}

QString SpectrumChart::readout() const
{
    QStringList texts;
    if (!m_readout.text().isEmpty()) {
        texts += m_readout.text();
    }
    if (stale()) {
        texts += noData::text();
    }
    return texts.join(QLatin1Char('\n'));
}

void SpectrumChart::setHeadHeight(int height)
{
    QMargins margins = axisRect()->margins();
    if (margins.top() != height) {
        margins.setTop(height);
        axisRect()->setMargins(margins);
        replot(rpQueuedReplot);
    }
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
    paintLine(painter, m_trace.held(), m_heldColor);
    paintLine(painter, m_trace.levels(), m_color);
    m_hMarkers.paintNumbers(painter, plotRect(), levelScale());
    paintMarks(painter);
    if (stale()) {
        noData::paint(painter, plotRect());
    }
    painter.setClipping(false);
    m_readout.paint(painter, plotRect().right(), stale() ? chartLook::OldText : chartLook::Text);
}

void SpectrumChart::paintLine(QPainter& painter, const QVector<float>& levels, const QColor& color)
{
    if (levels.isEmpty()) {
        return; // Without touching the points of the other line, which keep their memory.
    }
    traceLine::layOut(levels, plotRect(), levelScale(), m_line);
    painter.setPen(QPen(color, 0));
    painter.drawPolyline(m_line);
}

Scale SpectrumChart::frequencyScale() const
{
    return m_axis.scale(plotRect().left(), plotRect().right());
}

Scale SpectrumChart::levelScale() const
{
    return {LowestLevel, HighestLevel, static_cast<double>(plotRect().bottom()),
        static_cast<double>(plotRect().top())};
}

QPointF SpectrumChart::pixelOf(const Reading& reading) const
{
    return {frequencyScale().pixel(reading.frequency), levelScale().pixel(reading.level)};
}

void SpectrumChart::paintMarks(QPainter& painter) const
{
    if (m_shownPeak.valid) {
        chartMarks::paintPeak(painter, pixelOf(m_shownPeak), m_color);
    }
    const Reading marked = marker();
    if (marked.valid) {
        chartMarks::paintMarker(painter, pixelOf(marked), plotRect());
    }
}

void SpectrumChart::mousePressEvent(QMouseEvent* event)
{
    event->accept();
}

void SpectrumChart::mouseMoveEvent(QMouseEvent* event)
{
    event->accept();
}

void SpectrumChart::mouseReleaseEvent(QMouseEvent* event)
{
    event->accept();
    const QRect plot = plotRect();
    const QPointF at = event->position();
    if (!plot.contains(at.toPoint()) || plot.width() < 2) {
        return;
    }
    const Reading marked = marker();
    if (marked.valid && std::abs(pixelOf(marked).x() - at.x()) <= TapRadius) {
        clearMarker();
        return;
    }
    setMarker(frequencyScale().value(at.x()));
}
