#pragma once

#include "spectrum/ChartKeyPages.h"
#include "spectrum/ChartMeasurement.h"
#include "spectrum/ChartSettings.h"
#include "wire/SpanTable.h"

#include <QColor>
#include <QList>
#include <QPointer>
#include <QWidget>

class ChartFoot;
class ChartKeyDialog;
class ChartKeys;
class QComboBox;
class QVBoxLayout;
class SpectrumChart;
class TextButton;

/// The part of the spectrum page that belongs to one channel: its chart and, beside it, the span,
/// the switches for averaging and max hold, and the key "Tools".
///
/// When it is enlarged, its keys stand beside the chart, and measurement and waterfall under it.
/// The chart can be lent to another page; the rest stays here, and a touch on the chart's title
/// opens its keys in a window. What the chart is told is kept, and so is what the operator chooses,
/// so that one that was deleted with that page can be made anew.
class SpectrumArea : public QWidget
{
    Q_OBJECT

public:
    /// \param channel 0 to 2.
    SpectrumArea(int channel, QWidget* parent);
    ~SpectrumArea() override;

    /// Sets the chart's title: the name followed by the channel, "NAME (CH.1)".
    void setName(const QString& name);

    /// Sets the chart's span.
    void setSpan(const SpanInfo& span);
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
    /// Sets whether the channel is left out of the polls, see SpectrumChart::setLeftOut().
    void setLeftOut(bool leftOut);

    /// Sets whether the keys stand beside the chart, and measurement and waterfall under it.
    void setEnlarged(bool enlarged);
    /// \return whether they do.
    bool isEnlarged() const { return m_enlarged; }

    /// Puts the chart back into this area and shows it.
    void takeChartBack();

    /// \return the chart, never nullptr: one that was deleted with the page it was lent to is made
    /// anew.
    SpectrumChart* chart();
    /// \return the list of spans.
    QComboBox* spanBox() const { return m_spanBox; }

signals:
    /// Emitted when the operator wants the area to take the whole page, or no longer.
    void enlargeWanted(bool enlarged);

private:
    TextButton* newSwitch(const QString& text, const QString& name, chartKeys::Key key);
    QWidget* newSwitches();
    void setUpSpanBox();
    void newChart();
    bool isLent() const;
    double nominalSpan() const;
    void touchTitle();
    void openKeys();
    void press(chartKeys::Key key);
    void takeSettings();
    void showInEffect();

    int m_channel;
    QString m_name;
    SpanInfo m_span;
    double m_centre = SpanCentreMHz;
    QColor m_color = Qt::yellow;
    QList<double> m_hMarkers;
    ChartSettings m_settings;
    chartMeasurement::Choice m_measurement;
    QPointer<SpectrumChart> m_chart; // belongs to another page while it is lent
    QComboBox* m_spanBox;
    TextButton* m_average = nullptr;
    TextButton* m_maxHold = nullptr;
    QWidget* m_switches;
    QPointer<ChartKeyDialog> m_dialog; // while the chart is lent
    ChartKeys* m_keys = nullptr;       // while the area is enlarged
    ChartFoot* m_foot = nullptr;       // while the area is enlarged
    bool m_polled = false;
    bool m_leftOut = false;
    bool m_enlarged = false;
    QVBoxLayout* m_vbox;
    QVBoxLayout* m_controls;
};
