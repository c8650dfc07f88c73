#include "spectrum/LevelMarkers.h"

#include "spectrum/ChartLook.h"
#include "wire/Log.h"

#include <QPainter>

#include <qcustomplot.h>

#include <utility>

LevelMarkers::LevelMarkers(QCustomPlot& plot)
    : m_plot(plot)
    , m_leftOut(
          &logSpectrum, QStringLiteral("a chart has %1 markers: no more are shown").arg(MaxCount))
{
}

void LevelMarkers::setLevels(const QList<double>& levels, double lowest, double highest)
{
    for (QCPItemStraightLine* line : std::exchange(m_lines, {})) {
        m_plot.removeItem(line);
    }
    m_levels.clear();
    m_numbers.clear();
    for (const double level : levels) {
        const bool isOnAxis = level >= lowest && level <= highest; // not so when it is no number
        if (!isOnAxis) {
            continue;
        }
        if (m_levels.size() >= MaxCount) {
            m_leftOut.add();
            continue;
        }
        m_levels += level;
        m_lines += newLine(level);
        m_numbers += chartLook::preparedText(QString::number(level, 'f', 1));
    }
}

QCPItemStraightLine* LevelMarkers::newLine(double level)
{
    auto* line = new QCPItemStraightLine(&m_plot);
    line->setPen(QPen(chartLook::Level, 0, Qt::DashLine));
    line->setAntialiased(false);
    line->point1->setTypeY(QCPItemPosition::ptPlotCoords);
    line->point1->setTypeX(QCPItemPosition::ptAxisRectRatio);
    line->point2->setTypeX(QCPItemPosition::ptAxisRectRatio);
    line->point1->setCoords(0, level);
    line->point2->setCoords(1, level);
    return line;
}

void LevelMarkers::paintNumbers(QPainter& painter, const QRect& area, const Scale& scale) const
{
    constexpr int Gap = 3;
    if (m_numbers.isEmpty()) {
        return;
    }
    painter.setFont(chartLook::font());
    painter.setPen(chartLook::Level);
    for (qsizetype i = 0; i < m_numbers.size(); ++i) {
        const double row = scale.pixel(m_levels.at(i));
        if (row < area.top() || row > area.bottom()) {
            continue; // Not on the scale that is shown now; the plot clips its line.
        }
        const QSize size = m_numbers.at(i).size().toSize();
        // Rounded as a distance from the bottom, like the line.
        const int line = area.bottom() - qRound(area.bottom() - row);
        const bool above = line - size.height() > area.top();
        const QPoint at(area.right() - Gap - size.width(), above ? line - size.height() : line + 1);
        // The ground is a little wider than the figures, but does not reach down to the line.
        painter.fillRect(QRect(at, size).adjusted(-Gap, 0, 1, -2), chartLook::Background);
        painter.drawStaticText(at, m_numbers.at(i));
    }
}
