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

/// The part of the spectrum page that belongs to one channel: its chart and, beside it, the span
/// and the switches for averaging and max hold.
///
/// The chart can be lent to another page; the rest stays here. What the chart is told is kept, so
/// that one that was deleted with that page can be made anew.
class SpectrumArea : public QWidget
{
    Q_OBJECT

public:
    /// \param channel 0 to 2.
    SpectrumArea(int channel, QWidget* parent);
    ~SpectrumArea() override;

    /// Sets the chart's title: the name followed by the channel, "NAME (CH.1)".
    void setName(const QString& name);

    /// Sets the chart's centre.
    /// \param centre in MHz; what SpectrumChart::setCentre() does not take is ignored.
    void setCentre(double centre);
    /// Sets the colour of the chart's trace.
    void setLineColor(const QColor& color);
    /// Sets the chart's horizontal markers.
    /// \param levels in dB.
    void setHMarkers(const QList<double>& levels);

    /// Sets whether spectra are asked for, see SpectrumChart::setPolled().
    void setPolled(bool polled);
    /// Shows or hides the area. Its channel is left out of the polls while it is hidden, see
    /// SpectrumChart::setLeftOut().
    void setShown(bool shown);

    /// Puts the chart back into this area and shows it.
    void takeChartBack();

    /// \return the chart, never nullptr: one that was deleted with the page it was lent to is made
    /// anew.
    SpectrumChart* chart();
    /// \return the list of spans.
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
    QPointer<SpectrumChart> m_chart; // belongs to another page while it is lent
    QComboBox* m_spanBox;
    QPushButton* m_average;
    QPushButton* m_maxHold;
    bool m_polled = false;
    bool m_shown = true;
    QVBoxLayout* m_vbox;
};
