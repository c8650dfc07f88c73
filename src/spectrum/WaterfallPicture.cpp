#include "spectrum/WaterfallPicture.h"

#include "spectrum/ColorMap.h"
#include "spectrum/SpectrumTrace.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

void WaterfallPicture::setSize(const QSize& size)
{
    if (size == m_image.size()) {
        return;
    }
    QVector<Line> ring(qMax(0, size.height()));
    const int kept = size.width() > 0 ? qMin(m_lines, size.height()) : 0;
    for (int line = 0; line < kept; ++line) {
        ring[line] = m_ring.at(row(line));
    }
    m_ring = ring;
    m_newest = 0;
    m_lines = kept;
    m_image = QImage(size, QImage::Format_RGB32);
    m_columnsFor = 0;
    paintAll();
}

void WaterfallPicture::setRange(double lowest, double highest)
{
    if (lowest == m_lowest && highest == m_highest) {
        return;
    }
    m_lowest = lowest;
    m_highest = highest;
    const double width = highest - lowest;
    for (size_t byte = 0; byte < m_colors.size(); ++byte) {
        const double level = SpectrumTrace::level(static_cast<quint8>(byte));
        const double share = width > 0.0 ? (level - lowest) / width : 0.0;
        const double place = std::clamp(share, 0.0, 1.0) * (colorMap::Count - 1);
        m_colors[byte] = colorMap::table()[static_cast<size_t>(std::lround(place))];
    }
    paintAll();
}

void WaterfallPicture::add(const QByteArray& points, qint64 ms)
{
    if (points.isEmpty() || m_ring.isEmpty()) {
        return;
    }
    const int count = static_cast<int>(m_ring.size());
    m_newest = (m_newest + count - 1) % count;
    m_lines = qMin(m_lines + 1, count);
    m_ring[m_newest] = {points, ms};
    paintRow(m_newest);
}

void WaterfallPicture::clear()
{
    m_ring.fill({});
    m_lines = 0;
    m_image.fill(Qt::black);
}

qint64 WaterfallPicture::ageMs(int line) const
{
    return m_ring.at(m_newest).ms - m_ring.at(row(line)).ms;
}

int WaterfallPicture::lineOfAge(qint64 ms) const
{
    int younger = -1; // the newest line that is old enough lies behind this one
    int old = m_lines;
    while (old - younger > 1) {
        const int tried = (younger + old) / 2;
        (ageMs(tried) >= ms ? old : younger) = tried;
    }
    return old;
}

// Of N points, point i lies i/N of the way from the first column to the last one, as in traceLine.
void WaterfallPicture::findColumns(qsizetype points)
{
    const int columns = m_image.width();
    const double perColumn = static_cast<double>(points) / qMax(1, columns - 1);
    m_firstPoint.resize(columns + 1);
    for (int column = 0; column <= columns; ++column) {
        const auto first = static_cast<qsizetype>(std::ceil((column - 0.5) * perColumn));
        m_firstPoint[column] = qBound(qsizetype{0}, first, points);
    }
    m_firstPoint[columns] = points;
    m_columnsFor = points;
}

void WaterfallPicture::paintRow(int row)
{
    const QByteArray& points = m_ring.at(row).points;
    if (points.size() != m_columnsFor) {
        findColumns(points.size());
    }
    const auto* bytes = reinterpret_cast<const quint8*>(points.constData());
    const qsizetype* first = m_firstPoint.constData();
    auto* pixel = reinterpret_cast<QRgb*>(m_image.scanLine(row));
    for (int column = 0; column < m_image.width(); ++column, ++first) {
        // A column without a point of its own shows the one before it.
        const quint8* from = bytes + qMin(first[0], qMax(qsizetype{0}, first[1] - 1));
        const quint8* const to = bytes + first[1];
        quint8 highest = *from;
        while (++from < to) {
            highest = std::max(highest, *from);
        }
        *pixel++ = m_colors[highest];
    }
}

void WaterfallPicture::paintAll()
{
    m_image.fill(Qt::black);
    for (int line = 0; line < m_lines; ++line) {
        paintRow(row(line));
    }
}

void WaterfallPicture::paint(QPainter& painter, QPoint at) const
{
    const int below = m_image.height() - m_newest;
    painter.drawImage(at, m_image, QRect(0, m_newest, m_image.width(), below));
    if (m_newest > 0) {
        painter.drawImage(at + QPoint(0, below), m_image, QRect(0, 0, m_image.width(), m_newest));
    }
}
