#include "scopes/EyePlot.h"

#include "plot/Scale.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr size_t MaxWaiting = 4; // Older blocks would have faded before anybody sees them.
constexpr int FirstSample = Interpolator::HalfTaps; // that can be interpolated
constexpr double SmallChange = 0.01; // of the samples per symbol: the picture is not begun anew
constexpr int DashPixels = 8;        // of the line at the best instant, its gap included
constexpr int DashGap = 3;
constexpr QRgb InstantColor = 0xffffffff;

// Appends `count` values of a line, `step` of its points apart, to `points`.
void appendBetween(const std::vector<double>& line, double begin, double step, int count,
    std::vector<double>& points)
{
    const size_t last = line.size() - 1;
    for (int n = 0; n < count; ++n) {
        const double at = begin + n * step;
        const auto left = std::min(last, static_cast<size_t>(at));
        const auto right = std::min(last, left + 1);
        const double part = at - static_cast<double>(left);
        points.push_back(line[left] + (line[right] - line[left]) * part);
    }
}

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

void EyePlot::setSamplesPerSymbol(double samples)
{
    if (!(samples >= MinSamplesPerSymbol && samples <= MaxSamplesPerSymbol)) {
        return;
    }
    const bool small = std::abs(samples - m_perSymbol) <= SmallChange * m_perSymbol;
    m_perSymbol = samples;
    if (!small) {
        m_image.clear();
        drawLastAgain();
    }
}

int EyePlot::pointsPerTrace() const
{
    return static_cast<int>(std::lround(Factor * SymbolsPerTrace * m_perSymbol)) + 1;
}

std::vector<double> EyePlot::traces(const QVector<double>& samples) const
{
    std::vector<double> points;
    const qsizetype inner = samples.size() - qsizetype{2} * Interpolator::HalfTaps;
    // The first decision that has enough samples in front of it for the interpolation.
    const double start = std::ceil(FirstSample / m_perSymbol) * m_perSymbol - FirstSample;
    const double perTrace = SymbolsPerTrace * m_perSymbol;
    const auto count =
        static_cast<int>(std::floor((static_cast<double>(inner) - 1.0 - start) / perTrace));
    if (count <= 0) {
        return points;
    }
    std::vector<double> line(static_cast<size_t>(inner * Factor));
    m_interpolator.interpolateInner(samples.constData() + FirstSample, inner, line.data());
    const int perPoint = pointsPerTrace();
    const double step = perTrace * Factor / (perPoint - 1);
    points.reserve(static_cast<size_t>(count) * static_cast<size_t>(perPoint));
    const bool onPoints = step == 1.0 && std::floor(start) == start; // none lies between two
    for (int trace = 0; trace < count; ++trace) {
        // Neighbours share the point at their common end.
        const double begin = (start + trace * perTrace) * Factor;
        if (onPoints) {
            const double* const from = line.data() + static_cast<size_t>(begin);
            points.insert(points.end(), from, from + perPoint);
        } else {
            appendBetween(line, begin, step, perPoint, points);
        }
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
    drawInstant(picture);
}

void EyePlot::drawInstant(QImage& picture) const
{
    if (!m_instant || picture.width() < 2) {
        return;
    }
    const double part = *m_instant / SymbolsPerTrace + 0.5;
    const auto x = static_cast<int>(std::lround(part * (picture.width() - 1)));
    for (int y = 0; x >= 0 && x < picture.width() && y < picture.height(); ++y) {
        if (y % DashPixels >= DashGap) {
            reinterpret_cast<QRgb*>(picture.scanLine(y))[x] = InstantColor;
        }
    }
}

void EyePlot::draw(const QVector<double>& samples)
{
    const QSize size = m_image.size();
    if (size.width() < 2 || size.height() < 2) {
        return;
    }
    std::vector<double> points = traces(samples);
    const auto count = static_cast<size_t>(pointsPerTrace());
    placeColumns(count);
    toRows(points);
    for (size_t at = 0; at + count <= points.size(); at += count) {
        drawTrace(points.data() + at);
    }
}

// Where the columns lie between the points of a trace: the same for all traces.
void EyePlot::placeColumns(size_t count)
{
    const auto width = static_cast<size_t>(m_image.size().width());
    if (m_columns.size() == width && m_columnsFor == count) {
        return;
    }
    m_columnsFor = count;
    m_columns.resize(width);
    const double perColumn = static_cast<double>(count - 1) / static_cast<double>(width - 1);
    for (size_t x = 0; x < width; ++x) {
        const double at = static_cast<double>(x) * perColumn;
        const size_t left = std::min(static_cast<size_t>(at), count - 2);
        m_columns[x] = {left, at - static_cast<double>(left)};
    }
}

// Turns values into rows of the picture, which are rounded when the fraction is cut off.
void EyePlot::toRows(std::vector<double>& points) const
{
    const int height = m_image.size().height();
    const Scale rows = Scale::aroundMiddle(0.0, 2.0 * m_limit, height - 1, 0.0);
    const double zero = rows.pixel(0.0) + 0.5;
    const double perUnit = rows.pixelsPerUnit();
    const double farthest = 2.0 * height; // outside, and still a small integer
    for (double& point : points) {
        point = std::max(-farthest, std::min(farthest, zero + point * perUnit));
    }
}

// Draws column by column, so that every column of a trace is hit and none twice.
void EyePlot::drawTrace(const double* rows)
{
    const Column* column = m_columns.data();
    m_image.addLine([rows, column](int x) {
        const Column& at = column[x];
        const double left = rows[at.left];
        return static_cast<int>(left + (rows[at.left + 1] - left) * at.part);
    });
}
