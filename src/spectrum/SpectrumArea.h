#pragma once

#include "wire/SpanTable.h"

#include <QColor>
#include <QList>
#include <QPointer>
#include <QWidget>

class QComboBox;
class QPushButton;
class QVBoxLayout;
class SpectrumChart;

// The part of the spectrum page that belongs to one channel: its chart and, beside it, the span
// and the switches for averaging and max hold. The chart can be lent to another page; the rest
// stays here.
class SpectrumArea : public QWidget
{
    Q_OBJECT

public:
    // channel: 0 to 2. The chart's title is the name with the channel behind it, "NAME (CH.1)".
    SpectrumArea(int channel, QWidget* parent);
    ~SpectrumArea() override;

    void setName(const QString& name);

    // Of the chart; kept for one that is made anew. centre: in MHz, others than the chart takes are
    // ignored. levels: in dB.
    void setCentre(double centre);
    void setLineColor(const QColor& color);
    void setHMarkers(const QList<double>& levels);

    // Puts the chart back into this area.
    void takeChartBack();

    // Never nullptr: a chart that went down with the page it was lent to is made anew.
    SpectrumChart* chart();
    QComboBox* spanBox() const { return m_spanBox; }

private:
    QPushButton* newSwitch(const QString& text, const QString& name);
    void setUpSpanBox();
    void newChart();

    int m_channel;
    QString m_name;
    double m_centre = SpanCentreMHz;
    QColor m_color = Qt::yellow;
    QList<double> m_hMarkers;
    QPointer<SpectrumChart> m_chart; // lives elsewhere while it is lent
    QComboBox* m_spanBox;
    QPushButton* m_average;
    QPushButton* m_maxHold;
    QVBoxLayout* m_vbox;
};
