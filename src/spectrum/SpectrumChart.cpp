#include "spectrum/SpectrumChart.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int TitleHeight = 20;
constexpr int TitleGap = 6;
constexpr int LineHeight = 15;
constexpr int RightMargin = 16;
constexpr int TextPixels = 12;
constexpr int ReadoutMs = 250; // numbers that change faster cannot be read
constexpr int TapRadius = 24;  // pixels around the marker that count as it: half a finger
constexpr int MostDecimals = 4;
constexpr qsizetype MostHMarkers = 64;
constexpr double Symbol = 5.0; // half the width of a marker, in pixels

const QColor Background(0, 0, 0);
const QColor Grid(0x38, 0x38, 0x38);
const QColor Axis(0x80, 0x80, 0x80);
const QColor Text(0xd8, 0xd8, 0xd8);
const QColor Level(0xff, 0x80, 0x40);
const QColor Marked(0xff, 0xff, 0xff);

QFont chartFont()
{
    QFont font;
    font.setPixelSize(TextPixels);
    return font;
}

// the fewest decimals with which all positions are written exactly
int decimals(const QVector<double>& positions)
{
    for (int count = 0; count < MostDecimals; ++count) {
        const double scale = std::pow(10.0, count);
        const bool exact =
            std::all_of(positions.begin(), positions.end(), [scale](double position) {
                return std::abs(position * scale - std::round(position * scale)) < 1e-6 * scale;
            });
        if (exact) {
            return count;
        }
    }
    return MostDecimals;
}

QStaticText preparedText(const QString& text)
{
    QStaticText prepared(text);
    prepared.setTextFormat(Qt::PlainText);
    prepared.setPerformanceHint(QStaticText::AggressiveCaching);
    prepared.prepare(QTransform(), chartFont());
    return prepared;
}

QString readingText(const QString& pattern, const SpectrumChart::Reading& reading)
{
    return pattern.arg(reading.frequency, 0, 'f', 3).arg(reading.level, 0, 'f', 1);
}

} // namespace

SpectrumChart::SpectrumChart(QWidget* parent)
    : QCustomPlot(parent)
    , m_span(spanTable().first())
    , m_color(Qt::yellow)
{
    // the library sets it, and modal dialogs show wrong over such a widget on some platforms
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setMinimumHeight(60);
    m_paintTimer.setObjectName(QStringLiteral("paintTimer"));
    m_paintTimer.setSingleShot(true);
    m_readoutTimer.setSingleShot(true);
    m_readoutTimer.setInterval(ReadoutMs);
    connect(&m_paintTimer, &QTimer::timeout, this, qOverload<>(&QWidget::update));
    connect(&m_readoutTimer, &QTimer::timeout, this, &SpectrumChart::readoutDue);
    // before, not after: a replot paints the widget before it says that it is done
    connect(this, &QCustomPlot::beforeReplot, this, [this] { m_frameStale = true; });
    setUpAxes();
    updateAxes();
}

void SpectrumChart::setUpAxes()
{
    setBackground(QBrush(Background));
    setFont(chartFont());
    axisRect()->setAutoMargins(QCP::msLeft | QCP::msBottom);
    axisRect()->setMargins(QMargins(0, TitleHeight, RightMargin, 0));
    axisRect()->setupFullAxesBox(false);
    for (QCPAxis* axis : {xAxis, yAxis, xAxis2, yAxis2}) {
        axis->setBasePen(QPen(Axis, 0));
        axis->setTickPen(QPen(Axis, 0));
        axis->setSubTicks(false);
        axis->setTickLabelColor(Text);
        axis->setTickLabelFont(chartFont());
        axis->grid()->setPen(QPen(Grid, 0));
        axis->grid()->setZeroLinePen(QPen(Grid, 0));
    }
    xAxis2->setTicks(false);
    yAxis2->setTicks(false);
    xAxis->setTicker(QSharedPointer<QCPAxisTickerText>::create());
    yAxis->setTicker(QSharedPointer<QCPAxisTickerFixed>::create());
    yAxis->setNumberFormat(QStringLiteral("f"));
    yAxis->setNumberPrecision(0);
    yAxis->setRange(LowestLevel, HighestLevel);
}

QVector<double> SpectrumChart::tickPositions() const
{
    QVector<double> positions = m_span.ticks;
    for (double& position : positions) {
        position += m_centre - SpanCentreMHz;
    }
    return positions;
}

QStringList SpectrumChart::tickLabels() const
{
    const QVector<double> positions = tickPositions();
    const int count = decimals(positions);
    QStringList labels;
    for (const double position : positions) {
        labels += QString::number(position, 'f', count);
    }
    return labels;
}

void SpectrumChart::updateAxes()
{
    xAxis->setRange(m_centre - m_span.spanMHz / 2, m_centre + m_span.spanMHz / 2);
    updateTickTexts();
    updateReadout();
    replot(rpQueuedReplot);
}

void SpectrumChart::updateTickTexts()
{
    QStringList labels = tickLabels();
    if (labels.isEmpty()) {
        return; // a span without ticks
    }
    labels[labels.size() / 2] += QStringLiteral(" MHz");
    const QFontMetrics metrics(chartFont());
    int wanted = 0;
    for (const QString& label : labels) {
        wanted += metrics.horizontalAdvance(label + QLatin1Char(' '));
    }
    // a narrow chart keeps its five ticks, but names the outer ones and the centre only
    for (qsizetype i = 1; wanted > width() - 60 && i < labels.size(); i += 2) {
        labels[i].clear();
    }
    // the outer label reaches beyond the plot
    const int beyond = metrics.horizontalAdvance(labels.last()) / 2 - 6;
    QMargins margins = axisRect()->margins();
    margins.setRight(qMax(RightMargin, beyond));
    axisRect()->setMargins(margins);
    auto ticker = qSharedPointerCast<QCPAxisTickerText>(xAxis->ticker());
    ticker->clear();
    ticker->addTicks(tickPositions(), labels);
    const int step = height() < 170 ? 40 : height() < 330 ? 20 : 10;
    qSharedPointerCast<QCPAxisTickerFixed>(yAxis->ticker())->setTickStep(step);
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
    m_span = span;
    m_trace.clear();
    m_hasMarker = m_hasMarker && std::abs(m_markerOffset) <= m_span.spanMHz / 2;
    updateAxes();
}

void SpectrumChart::setCentre(double centre)
{
    if (!std::isfinite(centre) || centre <= 0.0 || centre > MostMHz || centre == m_centre) {
        return;
    }
    m_centre = centre;
    m_trace.clear(); // its levels belong to the other frequencies
    updateAxes();
}

void SpectrumChart::setLineColor(const QColor& color)
{
    m_color = color;
    schedulePaint();
}

void SpectrumChart::setHMarkers(const QList<double>& levels)
{
    clearItems();
    m_hMarkers.clear();
    m_hLabels.clear();
    for (const double level : levels) {
        if (!(level >= LowestLevel && level <= HighestLevel) || m_hMarkers.size() >= MostHMarkers) {
            continue;
        }
        m_hMarkers += level;
        auto* line = new QCPItemStraightLine(this);
        line->setPen(QPen(Level, 0, Qt::DashLine));
        line->setAntialiased(false);
        line->point1->setTypeY(QCPItemPosition::ptPlotCoords);
        line->point1->setTypeX(QCPItemPosition::ptAxisRectRatio);
        line->point2->setTypeX(QCPItemPosition::ptAxisRectRatio);
        line->point1->setCoords(0, level);
        line->point2->setCoords(1, level);
        m_hLabels += preparedText(QString::number(level, 'f', 1));
    }
    replot(rpQueuedReplot);
}

void SpectrumChart::addSpectrum(const QByteArray& points)
{
    m_trace.add(points);
    if (m_readoutTimer.isActive()) {
        m_readoutStale = true;
    } else {
        updateReadout();
        m_readoutTimer.start();
    }
    schedulePaint();
}

void SpectrumChart::readoutDue()
{
    if (m_readoutStale) {
        updateReadout();
        schedulePaint();
        m_readoutTimer.start();
    }
}

void SpectrumChart::setAveraging(int depth)
{
    m_trace.setAveraging(depth);
    updateReadout();
    schedulePaint();
}

void SpectrumChart::setMaxHold(bool on)
{
    m_trace.setMaxHold(on);
    updateReadout();
    schedulePaint();
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
    const double steps = static_cast<double>(qMax(qsizetype{1}, m_trace.size() - 1));
    const double part = m_trace.size() == 1 ? 0.5 : static_cast<double>(index) / steps;
    return {true, m_centre + (part - 0.5) * m_span.spanMHz,
        static_cast<double>(m_trace.levels().at(index))};
}

qsizetype SpectrumChart::indexAt(double frequency) const
{
    const double part = (frequency - m_centre) / m_span.spanMHz + 0.5;
    const auto last = m_trace.size() - 1;
    return qBound(
        qsizetype{0}, qRound64(part * static_cast<double>(last)), qMax(last, qsizetype{0}));
}

SpectrumChart::Reading SpectrumChart::peak() const
{
    return reading(m_trace.peak());
}

SpectrumChart::Reading SpectrumChart::marker() const
{
    return m_hasMarker ? reading(indexAt(m_centre + m_markerOffset)) : Reading();
}

void SpectrumChart::setMarker(double frequency)
{
    m_markerOffset = frequency - m_centre;
    m_hasMarker = std::abs(m_markerOffset) <= m_span.spanMHz / 2;
    updateReadout();
    schedulePaint();
}

void SpectrumChart::clearMarker()
{
    m_hasMarker = false;
    updateReadout();
    schedulePaint();
}

// What the read-out says, and the same with the widest numbers it may come to show, so that the
// lines do not jump when a number gets longer.
QVector<SpectrumChart::Part> SpectrumChart::readoutParts() const
{
    QVector<Part> parts;
    if (m_trace.averaging() > 1) {
        const QString text = QStringLiteral("Avg %1").arg(m_trace.averaging());
        parts += {text, text};
    }
    if (m_trace.maxHold()) {
        parts += {QStringLiteral("Max Hold"), QStringLiteral("Max Hold")};
    }
    const Reading widest{true, m_centre, -100.0};
    const QString peakPattern = QStringLiteral("Peak %1 MHz %2 dB");
    const Reading highest = peak();
    parts += {highest.valid ? readingText(peakPattern, highest) : QString(),
        readingText(peakPattern, widest)};
    if (m_hasMarker) {
        const QString pattern = QStringLiteral("Marker %1 MHz %2 dB");
        const Reading marked = marker();
        parts +=
            {marked.valid ? readingText(pattern, marked) : QString(), readingText(pattern, widest)};
    }
    return parts;
}

void SpectrumChart::updateReadout()
{
    const QFontMetrics metrics(chartFont());
    const QString gap(QLatin1String("   "));
    const int room = plotRect().width() - TitleGap;
    QStringList lines(QString{});
    QString widest;
    for (const Part& part : readoutParts()) {
        const QString longer = widest.isEmpty() ? part.widest : widest + gap + part.widest;
        const bool fits = widest.isEmpty() || metrics.horizontalAdvance(longer) <= room;
        if (!fits) {
            lines += QString();
        }
        widest = fits ? longer : part.widest;
        QString& line = lines.last();
        line += line.isEmpty() || part.text.isEmpty() ? part.text : gap + part.text;
    }
    const int beside = metrics.horizontalAdvance(m_title) + 2 * TitleGap;
    m_besideTitle = lines.size() == 1 && metrics.horizontalAdvance(widest) + beside <= room;
    lines.removeAll(QString());
    m_readoutText = lines.join(QLatin1Char('\n'));
    m_readoutLines.clear();
    for (const QString& text : std::as_const(lines)) {
        m_readoutLines += preparedText(text);
    }
    m_readoutStale = false;
    setHeadHeight(TitleHeight +
        (m_besideTitle ? 0 : static_cast<int>(qMax(qsizetype{1}, lines.size())) * LineHeight));
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

void SpectrumChart::schedulePaint()
{
    if (isVisible() && !m_paintTimer.isActive()) {
        m_paintTimer.start(static_cast<int>(m_lastPaintMs));
    }
}

QRect SpectrumChart::plotRect() const
{
    return axisRect()->rect();
}

void SpectrumChart::composeFrame()
{
    m_frame = QPixmap(size() * devicePixelRatioF());
    m_frame.setDevicePixelRatio(devicePixelRatioF());
    m_frame.fill(Background);
    QCPPainter painter(&m_frame);
    for (const auto& buffer : std::as_const(mPaintBuffers)) {
        buffer->draw(&painter);
    }
    painter.setFont(chartFont());
    painter.setPen(Text);
    const QRect plot = plotRect();
    const QFontMetrics metrics(chartFont());
    const QRect level(0, 1, qMax(0, plot.left() - 4), TitleHeight);
    painter.drawText(level, Qt::AlignRight | Qt::AlignTop, QStringLiteral("dB"));
    const QRect head(plot.left() + TitleGap, 0, plot.width() - TitleGap, TitleHeight);
    painter.drawText(head, Qt::AlignLeft | Qt::AlignVCenter,
        metrics.elidedText(m_title, Qt::ElideRight, head.width()));
    m_frameStale = false;
}

void SpectrumChart::paintEvent(QPaintEvent* event)
{
    QElapsedTimer elapsed;
    elapsed.start();
    if (m_frameStale) {
        composeFrame();
    }
    QPainter painter(this);
    const QRect dirty = event->rect();
    if (devicePixelRatioF() == 1.0) {
        painter.drawPixmap(dirty, m_frame, dirty);
    } else {
        painter.drawPixmap(0, 0, m_frame);
    }
    painter.setClipRect(plotRect());
    paintLine(painter, m_trace.held(), m_color.darker(200));
    paintLine(painter, m_trace.levels(), m_color);
    paintHLabels(painter);
    paintPeak(painter);
    paintMarker(painter);
    painter.setClipping(false);
    paintReadout(painter);
    m_lastPaintMs = elapsed.elapsed();
}

void SpectrumChart::paintLine(QPainter& painter, const QVector<float>& levels, const QColor& color)
{
    const QRect plot = plotRect();
    const qsizetype count = levels.size();
    if (count == 0 || plot.isEmpty()) {
        return;
    }
    const double bottom = plot.bottom();
    const double perDB = (plot.height() - 1) / (HighestLevel - LowestLevel);
    const auto y = [bottom, perDB](float level) {
        return bottom - (static_cast<double>(level) - LowestLevel) * perDB;
    };
    const double step =
        static_cast<double>(plot.width() - 1) / static_cast<double>(qMax(qsizetype{1}, count - 1));
    m_line.clear();
    if (count <= qsizetype{2} * plot.width()) {
        m_line.reserve(count + 1);
        for (qsizetype i = 0; i < count; ++i) {
            m_line.append(QPointF(plot.left() + static_cast<double>(i) * step, y(levels.at(i))));
        }
    } else {
        // more points than pixels: each column shows its lowest and its highest one
        const qsizetype columns = plot.width();
        m_line.reserve(2 * columns);
        for (qsizetype column = 0; column < columns; ++column) {
            const auto from = levels.cbegin() + column * count / columns;
            const auto to = levels.cbegin() + (column + 1) * count / columns;
            const auto [low, high] = std::minmax_element(from, to);
            const double x = plot.left() + static_cast<double>(column);
            // in the order in which they came, so that the columns join
            m_line.append(QPointF(x, y(low < high ? *low : *high)));
            m_line.append(QPointF(x, y(low < high ? *high : *low)));
        }
    }
    if (count == 1) {
        m_line = {
            QPointF(plot.left(), y(levels.first())), QPointF(plot.right(), y(levels.first()))};
    }
    painter.setPen(QPen(color, 0));
    painter.drawPolyline(m_line);
}

QPointF SpectrumChart::pixelOf(const Reading& reading) const
{
    const QRect plot = plotRect();
    const double part = (reading.frequency - m_centre) / m_span.spanMHz + 0.5;
    const double height = (reading.level - LowestLevel) / (HighestLevel - LowestLevel);
    return {plot.left() + part * (plot.width() - 1), plot.bottom() - height * (plot.height() - 1)};
}

// Over the trace, which may run along the marked level, on a ground of its own; above the line,
// below it at the top.
void SpectrumChart::paintHLabels(QPainter& painter) const
{
    constexpr int Gap = 3;
    const QRect plot = plotRect();
    painter.setFont(chartFont());
    painter.setPen(Level);
    for (qsizetype i = 0; i < m_hLabels.size(); ++i) {
        const QSize size = m_hLabels.at(i).size().toSize();
        const double height = (m_hMarkers.at(i) - LowestLevel) / (HighestLevel - LowestLevel);
        const int line = plot.bottom() - qRound(height * (plot.height() - 1));
        const bool above = line - size.height() > plot.top();
        const QPoint at(plot.right() - Gap - size.width(), above ? line - size.height() : line + 1);
        // a little wider than the figures; they do not reach down to the marker, which stays whole
        painter.fillRect(QRect(at, size).adjusted(-Gap, 0, 1, -2), Background);
        painter.drawStaticText(at, m_hLabels.at(i));
    }
}

void SpectrumChart::paintPeak(QPainter& painter) const
{
    const Reading highest = peak();
    if (!highest.valid) {
        return;
    }
    const QPointF tip = pixelOf(highest) - QPointF(0, 2);
    painter.setPen(QPen(m_color, 0));
    painter.setBrush(Text);
    painter.drawConvexPolygon(
        QPolygonF({tip, tip + QPointF(-Symbol, -2 * Symbol), tip + QPointF(Symbol, -2 * Symbol)}));
}

void SpectrumChart::paintMarker(QPainter& painter) const
{
    const Reading marked = marker();
    if (!marked.valid) {
        return;
    }
    const QPointF at = pixelOf(marked);
    painter.setPen(QPen(Marked, 0, Qt::DotLine));
    painter.drawLine(QPointF(at.x(), plotRect().top()), QPointF(at.x(), plotRect().bottom()));
    painter.setPen(QPen(Marked, 0));
    painter.setBrush(Qt::NoBrush);
    painter.drawConvexPolygon(QPolygonF({at + QPointF(0, -Symbol), at + QPointF(Symbol, 0),
        at + QPointF(0, Symbol), at + QPointF(-Symbol, 0)}));
}

// beside the title where there is room, otherwise in lines of its own between title and plot
void SpectrumChart::paintReadout(QPainter& painter) const
{
    const QFontMetrics metrics(chartFont());
    painter.setFont(chartFont());
    painter.setPen(Text);
    const int right = plotRect().right();
    int y = m_besideTitle ? (TitleHeight - metrics.height()) / 2 : TitleHeight - 2;
    for (const QStaticText& line : m_readoutLines) {
        painter.drawStaticText(QPointF(right - line.size().width(), y), line);
        y += LineHeight;
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
    const double part = (at.x() - plot.left()) / (plot.width() - 1);
    setMarker(m_centre + (part - 0.5) * m_span.spanMHz);
}
