#pragma once

#include "plot/CachedPlot.h"
#include "plot/DataWatch.h"
#include "spectrum/ChartGeometry.h"
#include "spectrum/ChartLines.h"
#include "spectrum/ChartMarks.h"
#include "spectrum/ChartPoints.h"
#include "spectrum/ChartReadout.h"
#include "spectrum/ChartSettings.h"
#include "spectrum/ChartTouch.h"
#include "spectrum/FrequencyAxis.h"
#include "spectrum/LevelMarkers.h"
#include "spectrum/ReadoutPace.h"
#include "spectrum/SpectrumReading.h"
#include "spectrum/SpectrumTrace.h"

/// The chart of one channel: level in dB over frequency in MHz, with the span's five ticks, the
/// highest point, max hold and min hold, horizontal markers and up to four markers that the
/// operator sets by a tap.
///
/// addSpectrum() gives the bytes to SpectrumTrace, which turns them into levels, and asks for one
/// paint. CachedPlot keeps what seldom changes (axes, grid, ticks, title, horizontal markers) as
/// one picture; painting copies it and draws the lines straight onto the widget. A new spectrum
/// paints only the rows between the highest and the lowest point of the old and the new trace.
/// Where a level or a frequency lies is computed by Scale, which points make a line by traceLine.
/// Peak and markers stand on the trace. Their texts follow at a pace at which they can be read; the
/// peak's triangle waits for its text, so that both always show the same point. ChartTouch tells
/// what a finger means, ChartMarkers keeps the markers, ChartScale the level axis; ChartSettings
/// holds all that the operator has chosen.
///
/// A chart that is polled and has got no spectrum for StaleMs shows "NO DATA" over its last
/// picture, dimmed. A spectrum with a level at the end of the card's scale shows "OVER".
class SpectrumChart : public CachedPlot
{
    Q_OBJECT

public:
    /// A point of the trace as the chart shows it.
    using Reading = SpectrumReading;

    static constexpr double LowestLevel = -120.0; ///< Bottom of a new chart's y axis, in dB.
    static constexpr double HighestLevel = 10.0;  ///< Top of a new chart's y axis, in dB.

    /// How long a chart that is polled waits for a spectrum before it is stale, in milliseconds.
    static constexpr int StaleMs = 3000;

    /// Creates an empty chart of the narrowest span around 70 MHz, with a yellow line.
    explicit SpectrumChart(QWidget* parent = nullptr);

    /// Sets the text above the plot at the left.
    void setTitle(const QString& title);
    /// \return the text above the plot at the left.
    QString title() const { return m_title; }

    /// Sets which part of the band the points cover. Clears the trace, its average, its holds,
    /// and the markers that are no longer inside.
    void setSpan(const SpanInfo& span);
    /// Sets the frequency in the middle and clears the trace. Markers keep their distance from the
    /// centre.
    /// \param centre in MHz, finite, above 0 and at most FrequencyAxis::MaxMHz; others are ignored.
    void setCentre(double centre);
    /// \return the frequency in the middle, in MHz.
    double centre() const { return m_axis.centre(); }
    /// \return the analysed width in MHz.
    double spanMHz() const { return m_axis.width(); }
    /// \return the frequency axis: which point of the trace lies at which frequency.
    const FrequencyAxis& axis() const { return m_axis; }

    /// \return the positions of the five ticks in MHz.
    QVector<double> tickPositions() const { return m_axis.ticks(); }
    /// \return the texts of the five ticks. The chart shows the one in the middle with its unit.
    QStringList tickLabels() const;

    /// Sets the level axis. A reference that is not a number and steps that ChartScale does not
    /// know change nothing.
    /// \param referenceLevel the top of the axis in dB, rounded to a whole number.
    /// \param perDivision decibels per division: 10, 5, 2 or 1.
    void setScale(double referenceLevel, int perDivision);
    /// Chooses the finest level axis that shows the noise floor and the peak; without a spectrum it
    /// stays as it is. It is chosen once and does not follow the levels.
    void autoScale();
    /// \return the level axis: reference, decibels per division and bottom.
    const ChartScale& scale() const { return m_settings.scale; }

    /// Sets the colour of the trace. Max hold and min hold are drawn in a darker one.
    void setLineColor(const QColor& color);
    /// \return the colour of the trace.
    QColor lineColor() const { return m_lines.color(); }

    /// Replaces the horizontal markers. Those that are not on the present level axis are kept and
    /// not drawn.
    /// \param levels in dB; what is not on the axis of a new chart is left out, and so is what
    /// comes after LevelMarkers::MaxCount.
    void setHMarkers(const QList<double>& levels);
    /// \return the levels of the horizontal markers in dB.
    QList<double> hMarkers() const { return m_hMarkers.levels(); }

    /// Shows a new spectrum.
    /// \param points one byte per point as in SpectrumTrace::level(), spread evenly over the span.
    void addSpectrum(const QByteArray& points);
    /// Sets over how many spectra the levels are averaged; 1 switches averaging off.
    void setAveraging(int depth);
    /// Sets what is averaged and starts the average anew. Average::Off keeps the depth for later.
    void setAverageKind(SpectrumTrace::Average kind);
    /// Switches max hold on or off; on starts it anew.
    void setMaxHold(bool on);
    /// Switches min hold on or off; on starts it anew.
    void setMinHold(bool on);
    /// Starts max hold and min hold anew with the next spectrum; averaging goes on.
    void clearHolds();
    /// Starts averaging and the holds anew with the next spectrum.
    void restartAverage();

    /// \return what the operator has chosen: averaging, holds, level axis and markers.
    const ChartSettings& settings() const { return m_settings; }
    /// Sets all of that at once. Averaging and holds that do not change go on.
    void setSettings(const ChartSettings& settings);

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

    /// \return the highest point of the trace, between two of its points where a parabola through
    /// three of them has its top; the middle of several equal ones. Not valid before the first
    /// spectrum.
    Reading peak() const;
    /// \return the point under the active marker; not valid without a marker or before the first
    /// spectrum.
    Reading marker() const;
    /// \return the point under a marker; not valid when it is not set or before the first spectrum.
    /// \param number 1 to ChartMarkers::MaxCount.
    Reading markerAt(int number) const;
    /// \return the markers, by number, and which of them is active.
    const ChartMarkers& markers() const { return m_settings.markers; }
    /// Moves the active marker, or sets marker 1 when there is none.
    /// \param frequency in MHz; outside the span, the marker is removed.
    void setMarker(double frequency);
    /// Sets another marker, which becomes the active one; when there are four, the active one
    /// moves.
    /// \param frequency in MHz; outside the span, nothing happens.
    void addMarker(double frequency);
    /// Makes a marker the active one.
    /// \param number 1 to ChartMarkers::MaxCount; of one that is not set, nothing happens.
    void activateMarker(int number) { setMarkers(markers().activated(number)); }
    /// Moves the active marker to the peak, or sets marker 1 there.
    void markerToPeak() { setMarkers(points().onPeak(markers())); }
    /// Moves the active marker to the highest peak that is lower than the point where it stands, or
    /// sets marker 1 on the peak. Without a lower peak it stays.
    void markerToNextPeak() { setMarkers(points().onNextPeak(markers())); }
    /// Moves the active marker by a number of points, at most to the end of the trace.
    /// \param bins to the right; negative, to the left.
    void stepMarker(int bins) { setMarkers(points().stepped(markers(), bins)); }
    /// Has the markers 2 to 4 read as their difference to marker 1 in MHz and dB, or not. With
    /// marker 1 alone, switching on sets marker 2 at the same place, which can then be moved away.
    void setMarkerDelta(bool on) { setMarkers(markers().withDelta(on)); }
    /// Removes the active marker; the one with the next lower number becomes the active one.
    void removeMarker() { setMarkers(markers().without(markers().active())); }
    /// Removes all markers.
    void clearMarker() { setMarkers({}); }
    /// \return the text of all readings as the operator sees it. Averaging, holds, scale, peak and
    /// markers stand above the plot at the right, on several lines where one is too short; "OVER"
    /// and "NO DATA" stand over the plot and are the last lines.
    QString readout() const;

signals:
    /// Emitted when the title has been touched.
    void titleTapped();
    /// Emitted after each spectrum that was added.
    void spectrumAdded(const QByteArray& points);
    /// Emitted when the readings have changed: at the pace at which numbers can be read while
    /// spectra come, at once when the operator changes something.
    void readoutChanged();
    /// Emitted when settings() has changed.
    void settingsChanged();

protected:
    QPixmap drawFrame() override;
    void paintData(QPainter& painter, const QRect& dirty) override;
    QRect changedRect() const override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void updateAxes();
    void updateReadout();
    void changeShown();
    void changeSettings();
    void setMarkers(const ChartMarkers& markers);
    void follow(const ChartTouch::Action& action);
    void paintMarks(QPainter& painter, const ChartGeometry& geometry) const;
    QRect traceRect() const;
    QRect peakRect() const;
    bool onlyTraceChanges() const;
    QRect plotRect() const { return xAxis->axisRect()->rect(); } // axisRect() makes a list
    ChartGeometry plotGeometry() const;
    ChartPoints points() const { return {m_axis, m_trace}; }

    FrequencyAxis m_axis;
    SpectrumTrace m_trace;
    ChartSettings m_settings;
    ChartTouch m_touch;
    ChartLines m_lines;
    ChartReadout m_readout;
    ReadoutPace m_pace{this};
    chartMarks::Labels m_markLabels;
    Reading m_shownPeak; // the one in m_readout
    DataWatch m_watch{StaleMs, QStringLiteral("noDataTimer"), this};
    LevelMarkers m_hMarkers{*this};
    QString m_title;
    int m_titleWidth = 0;        // pixels
    bool m_over = false;         // of a spectrum since the last read-out
    QRect m_newest;              // where the newest trace runs
    QRect m_traces;              // where the trace runs that is shown, and what comes next
    bool m_wholeDue = true;      // more than the plot is to be painted next
    bool m_pollingKnown = false; // setPolled() was called
};
