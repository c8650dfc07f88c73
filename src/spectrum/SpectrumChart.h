#pragma once

#include "plot/CachedPlot.h"
#include "plot/DataWatch.h"
#include "spectrum/ChartReadout.h"
#include "spectrum/FrequencyAxis.h"
#include "spectrum/LevelMarkers.h"
#include "spectrum/SpectrumReading.h"
#include "spectrum/SpectrumTrace.h"

#include <QPolygonF>
#include <QTimer>

/// The chart of one channel: level in dB over frequency in MHz, with the span's five ticks, the
/// highest point, max hold, horizontal markers and one marker that the operator sets by a tap.
///
/// addSpectrum() gives the bytes to SpectrumTrace, which turns them into levels, and asks for one
/// paint. CachedPlot keeps what seldom changes (axes, grid, ticks, title, horizontal markers) as
/// one picture; painting copies it and draws the lines straight onto the widget. Where a level or a
/// frequency lies is computed by Scale, which points make a line by traceLine. Peak and marker
/// stand on the trace. Their texts follow at a pace at which they can be read; the peak's triangle
/// waits for its text, so that both always show the same point.
///
/// A chart that is polled and has got no spectrum for StaleMs shows "NO DATA" over its last
/// picture, dimmed.
class SpectrumChart : public CachedPlot
{
    Q_OBJECT

public:
    /// A point of the trace as the chart shows it.
    using Reading = SpectrumReading;

    static constexpr double LowestLevel = -120.0; ///< Bottom of the y axis, in dB.
    static constexpr double HighestLevel = 10.0;  ///< Top of the y axis, in dB.

    /// How long a chart that is polled waits for a spectrum before it is stale, in milliseconds.
    static constexpr int StaleMs = 3000;

    /// Creates an empty chart of the narrowest span around 70 MHz, with a yellow line.
    explicit SpectrumChart(QWidget* parent = nullptr);

    /// Sets the text above the plot at the left.
    void setTitle(const QString& title);
    /// \return the text above the plot at the left.
    QString title() const { return m_title; }

    /// Sets which part of the band the points cover. Clears the trace, its average, its max hold,
    /// and a marker that is no longer inside.
    void setSpan(const SpanInfo& span);
    /// Sets the frequency in the middle and clears the trace. A marker keeps its distance from the
    /// centre.
    /// \param centre in MHz, finite, above 0 and at most FrequencyAxis::MaxMHz; others are ignored.
    void setCentre(double centre);
    /// \return the frequency in the middle, in MHz.
    double centre() const { return m_axis.centre(); }
    /// \return the analysed width in MHz.
    double spanMHz() const { return m_axis.width(); }

    /// \return the positions of the five ticks in MHz.
    QVector<double> tickPositions() const { return m_axis.ticks(); }
    /// \return the texts of the five ticks. The chart shows the one in the middle with its unit.
    QStringList tickLabels() const;

    /// Sets the colour of the trace. Max hold is drawn in a darker one.
    void setLineColor(const QColor& color);
    /// \return the colour of the trace.
    QColor lineColor() const { return m_color; }

    /// Replaces the horizontal markers.
    /// \param levels in dB; what is not on the axis is left out, and so is what comes after
    /// LevelMarkers::MaxCount.
    void setHMarkers(const QList<double>& levels);
    /// \return the levels of the horizontal markers in dB.
    QList<double> hMarkers() const { return m_hMarkers.levels(); }

    /// Shows a new spectrum.
    /// \param points one byte per point as in SpectrumTrace::level(), spread evenly over the span.
    void addSpectrum(const QByteArray& points);
    /// Sets over how many spectra the levels are averaged; 1 switches averaging off.
    void setAveraging(int depth);
    /// Switches max hold on or off; on starts it anew.
    void setMaxHold(bool on);
    /// Starts averaging and max hold anew with the next spectrum.
    void restartAverage();
    /// Sets whether spectra of this chart are asked for, because its page is on the screen or it is
    /// lent to another page. The time until it is stale() starts when that begins. A chart that was
    /// never told is taken as polled from its first spectrum on.
    void setPolled(bool polled);
    /// Sets whether the channel is left out of the polls because it is hidden. The time until the
    /// chart is stale() stands still meanwhile, and does not start anew.
    void setLeftOut(bool leftOut) { m_watch.setPaused(leftOut); }
    /// \return whether the chart is polled and has got no spectrum for StaleMs: it shows "NO DATA"
    /// then. Only a spectrum ends that.
    bool stale() const { return m_watch.isStale(); }

    /// \return the levels that are shown.
    const SpectrumTrace& trace() const { return m_trace; }

    /// \return the highest point of the trace; not valid before the first spectrum.
    Reading peak() const;
    /// \return the point under the marker; not valid without a marker or before the first spectrum.
    Reading marker() const;
    /// Sets the marker.
    /// \param frequency in MHz; outside the span, the marker is removed.
    void setMarker(double frequency);
    /// Removes the marker.
    void clearMarker();
    /// \return the text of all readings as the operator sees it. Averaging, max hold, peak and
    /// marker stand above the plot at the right, on several lines where one is too short; "NO DATA"
    /// stands over the plot and is the last line.
    QString readout() const;

protected:
    QPixmap drawFrame() override;
    void paintData(QPainter& painter, const QRect& dirty) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void setUpAxes();
    void updateAxes();
    void updateTickTexts();
    void updateReadout();
    void readoutDue();
    void changeShown();
    void setHeadHeight(int height);
    void paintLine(QPainter& painter, const QVector<float>& levels, const QColor& color);
    void paintMarks(QPainter& painter) const;
    QRect plotRect() const { return axisRect()->rect(); }
    Scale frequencyScale() const;
    Scale levelScale() const;
    Reading reading(qsizetype index) const;
    QPointF pixelOf(const Reading& reading) const;

    FrequencyAxis m_axis;
    SpectrumTrace m_trace;
    ChartReadout m_readout;
    Reading m_shownPeak; // the one in m_readout
    DataWatch m_watch{StaleMs, QStringLiteral("noDataTimer"), this};
    LevelMarkers m_hMarkers{*this};
    QString m_title;
    QColor m_color;
    QColor m_heldColor; // of max hold
    QPolygonF m_line;   // kept for its memory
    QTimer m_readoutTimer{this};
    double m_markerOffset = 0.0; // MHz from the centre
    bool m_hasMarker = false;
    bool m_readoutStale = false;
    bool m_pollingKnown = false; // setPolled() was called
};
