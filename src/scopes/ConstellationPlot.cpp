#include "scopes/ConstellationPlot.h"

#include "plot/Scale.h"
#include "wire/IqBlock.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int CrossArm = 5; // in pixels
constexpr QRgb CrossColor = 0xffffffff;
constexpr QRgb CrossRim = 0xff000000; // keeps the cross apart from the dots around it

constexpr size_t MaxWaiting = 4; // Older blocks would have faded before anybody sees them.

// Rounds to the nearest pixel. NaN and whatever an int cannot hold lie far outside every picture.
int toPixel(double position)
{
    constexpr double Farthest = 1e6;
    return static_cast<int>(std::floor(std::max(-Farthest, std::min(Farthest, position)) + 0.5));
}

QRect around(QPoint middle, int halfWidth, int halfHeight)
{
    return {middle - QPoint(halfWidth, halfHeight), middle + QPoint(halfWidth, halfHeight)};
}

// Fills the part of `box` that lies in the picture.
void fill(QImage& picture, const QRect& box, QRgb color)
{
    const QRect inside = box & picture.rect();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(picture.scanLine(y));
        std::fill(line + inside.left(), line + inside.right() + 1, color);
    }
}

} // namespace

qsizetype ConstellationPlot::Block::end() const
{
    return std::min(i.size(), q.size());
}

qsizetype ConstellationPlot::Block::first() const
{
    // Quirk: the first pair of a whole block is no point of the signal: its I has the value of the
    // second. See "Quirks" in docs/architecture.md.
    return end() == iqBlock::Records ? 1 : 0;
}

void ConstellationPlot::addBlock(const QVector<double>& i, const QVector<double>& q)
{
    m_last = {i, q};
    m_waiting.push_back(m_last);
    if (m_waiting.size() > MaxWaiting) {
        m_waiting.pop_front();
    }
}

void ConstellationPlot::setLimit(double limit)
{
    if (limit != m_limit && limit > 0.0) {
        m_limit = limit;
        m_image.clear();
        drawLastAgain();
    }
}

QVector<QPointF> ConstellationPlot::plotted() const
{
    QVector<QPointF> points;
    points.reserve(m_last.end());
    for (qsizetype k = m_last.first(); k < m_last.end(); ++k) {
        points.append({m_last.i.at(k), m_last.q.at(k)});
    }
    return points;
}

PlotAxes ConstellationPlot::axes() const
{
    PlotAxes axes;
    axes.xLabel = QStringLiteral("I (% FS)");
    axes.yLabel = QStringLiteral("Q (% FS)");
    const double percent = m_limit * FullScalePercent;
    axes.xMin = axes.yMin = -percent;
    axes.xMax = axes.yMax = percent;
    axes.xStep = axes.yStep = percent / 2.0;
    axes.square = true;
    return axes;
}

void ConstellationPlot::resize(QSize size)
{
    m_image.resize(size);
    drawLastAgain();
}

void ConstellationPlot::clear()
{
    m_image.clear();
    m_waiting.clear();
    m_last = Block();
    setBadge({});
}

void ConstellationPlot::drawLastAgain()
{
    if (m_waiting.empty() && !m_last.i.isEmpty()) {
        m_waiting.push_back(m_last);
    }
}

void ConstellationPlot::paint(QImage& picture)
{
    for (const Block& block : m_waiting) {
        m_image.fade();
        draw(block);
    }
    m_waiting.clear();
    m_image.paintOver(picture);
    drawCrosses(picture);
}

void ConstellationPlot::drawCrosses(QImage& picture) const
{
    const double range = 2.0 * m_limit;
    const Scale columns = Scale::aroundMiddle(0.0, range, 0.0, picture.width() - 1);
    const Scale rows = Scale::aroundMiddle(0.0, range, picture.height() - 1, 0.0);
    for (const QPointF& point : m_idealPoints) {
        const QPoint middle(toPixel(columns.pixel(point.x())), toPixel(rows.pixel(point.y())));
        fill(picture, around(middle, CrossArm + 1, 1), CrossRim);
        fill(picture, around(middle, 1, CrossArm + 1), CrossRim);
        fill(picture, around(middle, CrossArm, 0), CrossColor);
        fill(picture, around(middle, 0, CrossArm), CrossColor);
    }
}

void ConstellationPlot::draw(const Block& block)
{
    const double range = 2.0 * m_limit;
    const Scale columns = Scale::aroundMiddle(0.0, range, 0.0, m_image.size().width() - 1);
    const Scale rows = Scale::aroundMiddle(0.0, range, m_image.size().height() - 1, 0.0);
    const double* const i = block.i.constData();
    const double* const q = block.q.constData();
    for (qsizetype k = block.first(); k < block.end(); ++k) {
        m_image.addDot(toPixel(columns.pixel(i[k])), toPixel(rows.pixel(q[k])));
    }
}
