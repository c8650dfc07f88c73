#include "scopes/ConstellationPlot.h"

#include "wire/IqBlock.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr size_t MostWaiting = 4; // what the eye would not see anyway is left out

// NaN is nowhere, infinity far outside; both are cut to what an int holds.
int toPixel(double value)
{
    constexpr double Farthest = 1e6;
    return static_cast<int>(std::floor(std::max(-Farthest, std::min(Farthest, value)) + 0.5));
}

} // namespace

qsizetype ConstellationPlot::Block::end() const
{
    return std::min(i.size(), q.size());
}

qsizetype ConstellationPlot::Block::first() const
{
    return end() == iqBlock::Records ? 1 : 0;
}

void ConstellationPlot::addBlock(const QVector<double>& i, const QVector<double>& q)
{
    m_last = {i, q};
    m_waiting.push_back(m_last);
    if (m_waiting.size() > MostWaiting) {
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
}

void ConstellationPlot::draw(const Block& block)
{
    const double middleX = (m_image.size().width() - 1) / 2.0;
    const double middleY = (m_image.size().height() - 1) / 2.0;
    const double scaleX = middleX / m_limit;
    const double scaleY = middleY / m_limit;
    const double* const i = block.i.constData();
    const double* const q = block.q.constData();
    for (qsizetype k = block.first(); k < block.end(); ++k) {
        m_image.addDot(toPixel(middleX + i[k] * scaleX), toPixel(middleY - q[k] * scaleY));
    }
}
