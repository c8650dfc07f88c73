#include "spectrum/ChartLook.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTransform>

#include <qcustomplot.h>

QFont chartLook::font()
{
    QFont font;
    font.setPixelSize(TextPixels);
    return font;
}

QString chartLook::overText()
{
    return QStringLiteral("OVER");
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

void chartLook::paintHead(QPainter& painter, const QRect& plot, const QString& title)
{
    painter.setFont(font());
    painter.setPen(Text);
    const QRect unit(0, 1, qMax(0, plot.left() - 4), TitleHeight);
    painter.drawText(unit, Qt::AlignRight | Qt::AlignTop, QStringLiteral("dB"));
    const QRect head(plot.left() + TitleGap, 0, plot.width() - TitleGap, TitleHeight);
    painter.drawText(head, Qt::AlignLeft | Qt::AlignVCenter,
        QFontMetrics(font()).elidedText(title, Qt::ElideRight, head.width()));
}
