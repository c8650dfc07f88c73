#include "scopes/PlotView.h"

#include "plot/NoData.h"

#include <QPainter>

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

constexpr int MinPauseMs = 33; // 30 paints a second
constexpr int TickFontPixels = 16;
constexpr int LabelFontPixels = 16;
constexpr int BadgeFontPixels = 15;
constexpr int NoteFontPixels = 14;
constexpr int AxisLine = 2; // Pixels, with the space beside it.

// Margins of the data area in pixels, wide enough for "-0.75" and a label.
constexpr int LeftMargin = 70;
constexpr int TopMargin = 13;   // Half of a tick label, which is left out if it does not fit.
constexpr int RightMargin = 17; // Half of "100".
constexpr int TickMargin = 26;
constexpr int LabelMargin = 20;

constexpr QRgb AxisColor = 0xffc8c8c8;
constexpr QRgb TextColor = 0xfff0f0f0;
constexpr QRgb GridColor = 0xff4a4a4a;
constexpr QRgb ZeroColor = 0xff808080;
constexpr QRgb BadgeColor = 0xffffd000;
constexpr QRgb NoteColor = 0xffffd000;

QFont pixelFont(const QFont& base, int pixels)
{
    QFont font(base);
    font.setPixelSize(pixels);
    return font;
}

} // namespace

PlotView::PlotView(QWidget* parent)
    : CachedPlot(MinPauseMs, parent)
    , m_xTicker(new QCPAxisTickerFixed)
    , m_yTicker(new QCPAxisTickerFixed)
{
    setUpLook();
    dropFirstReplot();
}

// The plot library has just queued a replot. It would draw axes and labels into buffers of its own
// that nobody shows, at the start of the panel: the frame is drawn when the plot is first painted.
void PlotView::dropFirstReplot()
{
    mReplotting = true;
    QMetaObject::invokeMethod(
        this, [this] { mReplotting = false; }, Qt::QueuedConnection);
}

void PlotView::setUpLook()
{
    setBackground(QBrush(Qt::black));
    axisRect()->setAutoMargins(QCP::msNone);
    xAxis->setTicker(m_xTicker);
    yAxis->setTicker(m_yTicker);
    for (QCPAxis* axis : {xAxis, yAxis}) {
        axis->setBasePen(QPen(QColor::fromRgb(AxisColor), 1));
        axis->setTickPen(QPen(QColor::fromRgb(AxisColor), 1));
        axis->setSubTicks(false);
        axis->setTickLength(0, 4);
        axis->setTickLabelColor(QColor::fromRgb(TextColor));
        axis->setLabelColor(QColor::fromRgb(TextColor));
        axis->setTickLabelFont(pixelFont(font(), TickFontPixels));
        axis->setLabelFont(pixelFont(font(), LabelFontPixels));
        axis->setTickLabelPadding(2);
        axis->setLabelPadding(1);
        axis->setNumberFormat(QStringLiteral("g"));
        axis->setNumberPrecision(4);
        axis->grid()->setPen(QPen(QColor::fromRgb(GridColor), 1));
        axis->grid()->setZeroLinePen(QPen(QColor::fromRgb(ZeroColor), 1));
    }
    for (QCPAxis* axis : {xAxis2, yAxis2}) {
        axis->setVisible(true);
        axis->setTicks(false);
        axis->setTickLabels(false);
        axis->setBasePen(QPen(QColor::fromRgb(AxisColor), 1));
    }
}

void PlotView::setContent(PlotContent* content)
{
    if (m_content != content) {
        m_content = content;
        m_contentSize = QSize();
        setFrameStale();
        update();
        updateGeometry();
    }
}

void PlotView::setStale(bool stale)
{
    if (m_stale != stale) {
        m_stale = stale;
        update(); // The badge may stand outside the data.
    }
}

void PlotView::setFrozen(bool frozen)
{
    if (m_frozen != frozen) {
        m_frozen = frozen;
        update();
    }
}

QString PlotView::frozenText()
{
    return QStringLiteral("FROZEN");
}

int PlotView::frameHeight() const
{
    const bool label = m_content != nullptr && !m_content->axes().xLabel.isEmpty();
    return TopMargin + TickMargin + (label ? LabelMargin : 0);
}

QSize PlotView::minimumSizeHint() const
{
    return {LeftMargin + RightMargin + 20, frameHeight() + 20};
}

void PlotView::resizeEvent(QResizeEvent* /*event*/)
{
    // Not the base class' own, which would draw a picture of its own that nobody sees.
    setFrameStale();
}

// Places the data area inside this widget, square and in the middle where the axes ask for that.
void PlotView::layOutArea()
{
    const int bottom = TickMargin + (m_axes.xLabel.isEmpty() ? 0 : LabelMargin);
    QMargins margins(LeftMargin, TopMargin, RightMargin, bottom);
    if (m_axes.square) {
        const int spareX = width() - margins.left() - margins.right();
        const int spareY = height() - margins.top() - margins.bottom();
        const int tooWide = std::max(0, spareX - spareY);
        const int tooHigh = std::max(0, spareY - spareX);
        margins += QMargins(tooWide / 2, tooHigh / 2, tooWide - tooWide / 2, tooHigh - tooHigh / 2);
    }
    axisRect()->setMargins(margins);
}

void PlotView::applyAxes()
{
    m_axes = m_content != nullptr ? m_content->axes() : PlotAxes();
    m_xTicker->setTickStep(m_axes.xStep > 0.0 ? m_axes.xStep : 1.0);
    m_yTicker->setTickStep(m_axes.yStep > 0.0 ? m_axes.yStep : 1.0);
    xAxis->setLabel(m_axes.xLabel);
    yAxis->setLabel(m_axes.yLabel);
    xAxis->setRange(m_axes.xMin, m_axes.xMax);
    yAxis->setRangeReversed(m_axes.yMin > m_axes.yMax);
    yAxis->setRange(m_axes.yMin, m_axes.yMax);
}

// Finds the data area in a new frame, and gives the content its size.
void PlotView::placeData()
{
    m_area = axisRect()->rect().intersected(rect());
    // The content forgets what it has drawn so far: not for a change of the axes alone.
    if (m_content != nullptr && m_contentSize != m_area.size()) {
        m_contentSize = m_area.size();
        m_content->resize(m_contentSize);
    }
}

QPixmap PlotView::drawFrame()
{
    applyAxes();
    layOutArea();
    const QImage grid = toPixmap(width(), height()).toImage().convertToFormat(QImage::Format_RGB32);
    const bool scaled = devicePixelRatioF() != 1.0;
    m_grid = scaled ? grid : QImage();
    QPixmap frame = scaled ? scaledFrame() : QPixmap::fromImage(grid);
    placeData();
    m_rangeNote = newRangeNote();
    drawRangeNote(frame);
    return frame;
}

// The frame in the screen's own pixels, so that texts stay sharp on a screen that scales the panel.
QPixmap PlotView::scaledFrame()
{
    QPixmap frame(size() * devicePixelRatioF());
    frame.setDevicePixelRatio(devicePixelRatioF());
    frame.fill(Qt::black);
    QCPPainter painter(&frame);
    toPainter(&painter, width(), height());
    return frame;
}

// Beside the label of the x axis, whose row is empty at both of its ends; not where there is none.
void PlotView::drawRangeNote(QPixmap& frame) const
{
    if (m_rangeNote.isEmpty() || m_axes.xLabel.isEmpty()) {
        return;
    }
    QPainter painter(&frame);
    const int label = QFontMetrics(xAxis->labelFont()).horizontalAdvance(m_axes.xLabel);
    const QRect row(0, height() - LabelMargin, m_area.center().x() - label / 2, LabelMargin);
    painter.setFont(pixelFont(font(), NoteFontPixels));
    painter.setPen(QColor::fromRgb(TextColor));
    painter.drawText(
        row.adjusted(AxisLine, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, m_rangeNote);
}

QString PlotView::newRangeNote() const
{
    return m_content != nullptr ? m_content->rangeNote() : QString();
}

QString PlotView::newBadge() const
{
    return m_content != nullptr ? m_content->badge() : QString();
}

bool PlotView::frameIsStale() const
{
    return CachedPlot::frameIsStale() ||
        (m_content != nullptr && (m_content->axes() != m_axes || newRangeNote() != m_rangeNote));
}

QRect PlotView::changedRect() const
{
    return newBadge() == m_badge ? m_area : rect();
}

// Above the data where there is room for it, else over their corner.
void PlotView::drawCornerText(QPainter& painter, const QString& text, Qt::Alignment side) const
{
    if (text.isEmpty()) {
        return;
    }
    painter.setFont(pixelFont(font(), BadgeFontPixels));
    const QSize size = painter.fontMetrics().size(0, text) + QSize(8, 0);
    const bool above = m_area.top() >= size.height() + AxisLine;
    const int y = m_area.top() + (above ? -size.height() - AxisLine : 4);
    const int x = side == Qt::AlignRight ? m_area.right() - 3 - size.width() : m_area.left() + 3;
    const QRect box(QPoint(x, y), size);
    painter.fillRect(box, Qt::black);
    painter.setPen(QColor::fromRgb(BadgeColor));
    painter.drawText(box, Qt::AlignCenter, text);
}

// In the lower left corner of the data, in two lines where it does not fit into one.
void PlotView::drawNote(QPainter& painter) const
{
    const QString note = m_content != nullptr ? m_content->note() : QString();
    if (note.isEmpty()) {
        return;
    }
    painter.setFont(pixelFont(font(), NoteFontPixels));
    const QRect room = m_area.adjusted(4, 0, -4, -2);
    constexpr int Flags = Qt::AlignLeft | Qt::AlignBottom | Qt::TextWordWrap;
    const QRect box = painter.fontMetrics().boundingRect(room, Flags, note) & room;
    painter.fillRect(box.adjusted(-2, 0, 2, 0), Qt::black);
    painter.setPen(QColor::fromRgb(NoteColor));
    painter.drawText(box, Flags, note);
}

// The frame's data area, in memory that all plots use by turns: each paint fills it anew. Copies
// row by row: some processors copy large pieces slower than such small ones.
QImage PlotView::gridCopy() const
{
    static std::vector<QRgb> pixels;
    const QImage grid = m_grid.isNull() ? frame().toImage() : m_grid; // without a copy
    const auto width = static_cast<size_t>(m_area.width());
    pixels.resize(std::max(pixels.size(), width * static_cast<size_t>(m_area.height())));
    QRgb* to = pixels.data();
    for (int y = m_area.top(); y <= m_area.bottom(); ++y, to += width) {
        const auto* const row = reinterpret_cast<const QRgb*>(grid.constScanLine(y));
        std::memcpy(to, row + m_area.left(), width * sizeof(QRgb));
    }
    return {reinterpret_cast<uchar*>(pixels.data()), m_area.width(), m_area.height(),
        static_cast<qsizetype>(width * sizeof(QRgb)), QImage::Format_RGB32};
}

void PlotView::paintData(QPainter& painter, const QRect& dirty)
{
    if (newBadge() != m_badge) {
        m_badge = newBadge();
        if (dirty != rect()) {
            update(); // The badge may stand outside the data.
        }
    }
    if (m_area.isEmpty()) {
        return;
    }
    QImage picture = gridCopy();
    if (m_content != nullptr) {
        m_content->paint(picture);
    }
    painter.drawImage(m_area.topLeft(), picture);
    if (m_stale) {
        noData::paint(painter, m_area);
    } else {
        drawCornerText(painter, m_badge, Qt::AlignRight);
        drawNote(painter);
    }
    if (m_frozen) {
        drawCornerText(painter, frozenText(), Qt::AlignLeft);
    }
}
