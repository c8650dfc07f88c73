#include "spectrum/ChartAxes.h"

#include "plot/TickTexts.h"
#include "spectrum/ChartLook.h"
#include "spectrum/ChartScale.h"
#include "spectrum/FrequencyAxis.h"

#include <QFontMetrics>

#include <qcustomplot.h>

namespace {
constexpr int MinRightMargin = 16;

// Ticks with texts at some of the divisions, sub-ticks at the others: the grid has a line at each.
class DivisionTicker : public QCPAxisTickerFixed
{
public:
    void setDivisions(int perDivision, int perTick)
    {
        setTickStep(perTick);
        m_between = perTick / perDivision - 1;
    }

protected:
    int getSubTickCount(double /*tickStep*/) override { return m_between; }

private:
    int m_between = 0;
};
} // namespace

void chartAxes::setUp(QCustomPlot& plot)
{
    plot.axisRect()->setMargins(QMargins(0, chartLook::TitleHeight, MinRightMargin, 0));
    plot.xAxis->setTicker(QSharedPointer<QCPAxisTickerText>::create());
    plot.yAxis->setTicker(QSharedPointer<DivisionTicker>::create());
    plot.yAxis->setSubTicks(true);
    plot.yAxis->setSubTickLength(0);
    plot.yAxis->grid()->setSubGridVisible(true);
    plot.yAxis->grid()->setSubGridPen(plot.yAxis->grid()->pen());
    plot.yAxis->setNumberFormat(QStringLiteral("f"));
    plot.yAxis->setNumberPrecision(0);
}

void chartAxes::setRanges(QCustomPlot& plot, const FrequencyAxis& axis, const ChartScale& scale)
{
    plot.xAxis->setRange(axis.centre() - axis.width() / 2, axis.centre() + axis.width() / 2);
    plot.yAxis->setRange(scale.lowest(), scale.reference());
}

void chartAxes::setTicks(QCustomPlot& plot, const FrequencyAxis& axis, const ChartScale& scale)
{
    qSharedPointerCast<DivisionTicker>(plot.yAxis->ticker())
        ->setDivisions(scale.perDivision(), scale.tickStep(plot.height()));
    QStringList labels = tickTexts::texts(axis.ticks());
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
    for (qsizetype i = 1; wanted > plot.width() - 60 && i < labels.size(); i += 2) {
        labels[i].clear();
    }
    // The outer label reaches beyond the plot.
    const int beyond = metrics.horizontalAdvance(labels.last()) / 2 - 6;
    QMargins margins = plot.axisRect()->margins();
    margins.setRight(qMax(MinRightMargin, beyond));
    plot.axisRect()->setMargins(margins);
    auto ticker = qSharedPointerCast<QCPAxisTickerText>(plot.xAxis->ticker());
    ticker->clear();
    ticker->addTicks(axis.ticks(), labels);
}

bool chartAxes::setHeadHeight(QCustomPlot& plot, int height)
{
    QMargins margins = plot.axisRect()->margins();
    if (margins.top() == height) {
        return false;
    }
    margins.setTop(height);
    plot.axisRect()->setMargins(margins);
    return true;
}
