#include "spectrum/ChartLook.h"

#include <QTransform>

#include <qcustomplot.h>

QFont chartLook::font()
{
    QFont font;
    font.setPixelSize(TextPixels);
    return font;
}

QStaticText chartLook::preparedText(const QString& text)
{
    QStaticText prepared(text);
    prepared.setTextFormat(Qt::PlainText);
    prepared.setPerformanceHint(QStaticText::AggressiveCaching);
    prepared.prepare(QTransform(), font());
    return prepared;
}

void chartLook::apply(QCustomPlot& plot)
{
    plot.setBackground(QBrush(Background));
    plot.setFont(font());
    plot.axisRect()->setAutoMargins(QCP::msLeft | QCP::msBottom);
    plot.axisRect()->setupFullAxesBox(false);
    for (QCPAxis* axis : {plot.xAxis, plot.yAxis, plot.xAxis2, plot.yAxis2}) {
        axis->setBasePen(QPen(Axis, 0));
        axis->setTickPen(QPen(Axis, 0));
        axis->setSubTicks(false);
        axis->setTickLabelColor(Text);
        axis->setTickLabelFont(font());
        axis->grid()->setPen(QPen(Grid, 0));
        axis->grid()->setZeroLinePen(QPen(Grid, 0));
    }
    plot.xAxis2->setTicks(false);
    plot.yAxis2->setTicks(false);
}
