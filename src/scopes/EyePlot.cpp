#include "scopes/EyePlot.h"

#include "plot/Scale.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr size_t MaxWaiting = 4; // Older blocks would have faded before anybody sees them.
constexpr int SamplesPerTrace = EyePlot::SamplesPerSymbol * EyePlot::SymbolsPerTrace;
// The first decision that has enough samples in front of it for the interpolation.
constexpr int FirstSample = EyePlot::SamplesPerSymbol;
static_assert(FirstSample >= Interpolator::HalfTaps);

} // namespace

EyePlot::EyePlot(const QString& yLabel)
    : m_yLabel(yLabel)
    , m_interpolator(Factor)
{
}

void EyePlot::addBlock(const QVector<double>& samples)
{
    m_waiting.push_back(samples);
    if (m_waiting.size() > MaxWaiting) {
        m_waiting.pop_front();
    }
    m_last = samples;
}

void EyePlot::setLimit(double limit)
{
    if (limit != m_limit && limit > 0.0) {
        m_limit = limit;
        m_image.clear();
        drawLastAgain();
    }
}

PlotAxes EyePlot::axes() const
{
    PlotAxes axes;
    axes.xLabel = m_timeLabel ? QStringLiteral("Time (symbols)") : QString();
    axes.yLabel = m_yLabel;
    axes.xMin = -SymbolsPerTrace / 2.0;
    axes.xMax = SymbolsPerTrace / 2.0;
    const double percent = m_limit * FullScalePercent;
    axes.yMin = -percent;
    axes.yMax = percent;
    axes.xStep = 0.5;
    axes.yStep = percent / 2.0;
    return axes;
}

void EyePlot::resize(QSize size)
{
    m_image.resize(size);
    drawLastAgain();
}

void EyePlot::clear()
{
    m_image.clear();
    m_waiting.clear();
    m_last.clear();
    setBadge({});
}

void EyePlot::drawLastAgain()
{
    if (m_waiting.empty() && !m_last.isEmpty()) {
        m_waiting.push_back(m_last);
    }
}

std::vector<double> EyePlot::traces(const QVector<double>& samples) const
{
    const qsizetype usable = samples.size() - FirstSample - Interpolator::HalfTaps - 1;
    const qsizetype count = std::max(qsizetype{0}, usable / SamplesPerTrace);
    const qsizetype inner = count * SamplesPerTrace + 1;
    std::vector<double> points;
    if (count == 0) {
        return points;
    }
    // Neighbours share the point at their common end.
    std::vector<double> line(static_cast<size_t>(inner * Factor));
    m_interpolator.interpolateInner(samples.constData() + FirstSample, inner, line.data());
    points.reserve(static_cast<size_t>(count * PointsPerTrace));
    for (qsizetype trace = 0; trace < count; ++trace) {
        const auto begin = line.cbegin() + trace * (PointsPerTrace - 1);
        points.insert(points.end(), begin, begin + PointsPerTrace);
    }
    return points;
}

void EyePlot::paint(QImage& picture)
{
    for (const QVector<double>& samples : m_waiting) {
        m_image.fade();
        draw(samples);
    }
    m_waiting.clear();
    m_image.paintOver(picture);
}

void EyePlot::draw(const QVector<double>& samples)
{
    const std::vector<double> points = traces(samples);
    for (size_t at = 0; at + PointsPerTrace <= points.size(); at += PointsPerTrace) {
        drawTrace(points.data() + at);
    }
}

// Draws column by column, so that every column of a trace is hit and none twice.
void EyePlot::drawTrace(const double* points)
{
    const int width = m_image.size().width();
    const int height = m_image.size().height();
    if (width < 2 || height < 2) {
        return;
    }
    const double perColumn = static_cast<double>(PointsPerTrace - 1) / (width - 1);
    const Scale rows = Scale::aroundMiddle(0.0, 2.0 * m_limit, height - 1, 0.0);
    const double zero = rows.pixel(0.0) + 0.5; // rounds when the fraction is cut off
    const double perUnit = rows.pixelsPerUnit();
    const double farthest = 2.0 * height; // outside, and still a small integer
    int previous = 0;
    for (int x = 0; x < width; ++x) {
        const double at = x * perColumn;
        const int left = std::min(static_cast<int>(at), PointsPerTrace - 2);
        const double part = at - left;
        const double value = points[left] + (points[left + 1] - points[left]) * part;
        const double row = zero + value * perUnit;
        const int y = static_cast<int>(std::max(-farthest, std::min(farthest, row)));
        // From beside the column before to here: no gap on a steep edge, no pixel twice.
        const int from = x == 0 || previous == y ? y : previous + (y > previous ? 1 : -1);
        m_image.addRun(x, from, y);
        previous = y;
    }
}
