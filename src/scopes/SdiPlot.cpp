#include "scopes/SdiPlot.h"

#include <QPainter>
#include <QPolygonF>

#include <algorithm>

namespace {

constexpr double MaxByte = 255.0;
constexpr double Gap = 3.0; // Pixels at each end of a strip.
constexpr QRgb StripLine = 0xff5a5a5a;

} // namespace

void SdiPlot::clear()
{
    m_records.clear();
    setBadge({});
}

void SdiPlot::addRecord(const QByteArray& record)
{
    if (record.size() < RecordBytes) {
        return;
    }
    m_records.push_back(record.left(RecordBytes));
    if (m_records.size() > Records) {
        m_records.pop_front();
    }
}

void SdiPlot::setStripCount(int count)
{
    m_strips = std::clamp(count, 1, RecordBytes);
}

PlotAxes SdiPlot::axes() const
{
    PlotAxes axes;
    axes.xLabel = QStringLiteral("Age (records)");
    axes.yLabel = QStringLiteral("Byte, 0 to 255 each");
    axes.xMin = -(Records - 1);
    axes.xMax = 0.0;
    axes.xStep = 25.0;
    // Strip 1 is on top: the axis counts them downwards.
    axes.yMin = m_strips + 0.5;
    axes.yMax = 0.5;
    axes.yStep = 1.0;
    return axes;
}

void SdiPlot::paint(QImage& picture)
{
    QPainter painter(&picture);
    const double stripHeight = static_cast<double>(m_size.height()) / m_strips;
    const double perRecord = (m_size.width() - 1.0) / (Records - 1);
    const double height = std::max(1.0, stripHeight - 2.0 * Gap);
    for (int strip = 0; strip < m_strips; ++strip) {
        const double bottom = (strip + 1) * stripHeight - Gap;
        if (strip > 0) {
            painter.setPen(QColor::fromRgb(StripLine));
            const int y = static_cast<int>(strip * stripHeight);
            painter.drawLine(0, y, m_size.width() - 1, y);
        }
        QPolygonF line;
        line.reserve(static_cast<qsizetype>(m_records.size()));
        double x = (Records - static_cast<double>(m_records.size())) * perRecord;
        for (const QByteArray& record : m_records) {
            const double level = static_cast<uchar>(record.at(strip)) / MaxByte;
            line.append({x, bottom - level * height});
            x += perRecord;
        }
        painter.setPen(QPen(m_color, 0));
        if (line.size() == 1) {
            painter.drawPoint(line.first());
        } else {
            painter.drawPolyline(line);
        }
    }
}
