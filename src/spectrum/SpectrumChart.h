#pragma once

#include "wire/SpanTable.h"
#include "spectrum/SpectrumTrace.h"

#include <QElapsedTimer>
#include <QPixmap>
#include <QPolygonF>
#include <QStaticText>
#include <QTimer>

#include <qcustomplot.h>

// The chart of one channel: level in dB over frequency in MHz, with the span's five ticks, the
// highest point, max hold, horizontal markers and one marker that the operator sets by a tap.
//
// QCustomPlot lays out and draws what seldom changes: axes, grid, ticks and horizontal markers.
// The result is kept as one picture. A new spectrum only changes the trace's numbers and asks for
// one paint, which copies that picture and draws the lines straight onto the widget. The next paint
// waits at least as long as the last one took, so that a slow board still feels the finger, and a
// chart that is not on the screen is not painted. Peak and marker stand on the trace as it is
// painted; their texts follow at a pace at which they can be read.
class SpectrumChart : public QCustomPlot
{
    Q_OBJECT

public:
    // A point of the trace as the chart shows it.
    struct Reading
    {
        bool valid = false;
        double frequency = 0.0; // MHz
        double level = 0.0;     // dB
    };

    // The y axis, in dB.
    static constexpr double LowestLevel = -120.0;
    static constexpr double HighestLevel = 10.0;

    explicit SpectrumChart(QWidget* parent = nullptr);

    void setTitle(const QString& title);
    QString title() const { return m_title; }

    // Which part of the band the points cover. The trace, its average, its max hold and a marker
    // that is no longer inside are cleared.
    void setSpan(const SpanInfo& span);
    // centre: in MHz, finite, above 0 and at most MostMHz; others are ignored. A marker keeps its
    // distance from the centre.
    void setCentre(double centre);
    static constexpr double MostMHz = 1e6;
    double centre() const { return m_centre; }
    double spanMHz() const { return m_span.spanMHz; }

    // The positions of the five ticks in MHz, and their texts; the one in the middle is shown with
    // its unit.
    QVector<double> tickPositions() const;
    QStringList tickLabels() const;

    void setLineColor(const QColor& color);
    QColor lineColor() const { return m_color; }

    // levels: in dB; what is not finite or off the axis is left out, and so is what comes after 64.
    void setHMarkers(const QList<double>& levels);
    QList<double> hMarkers() const { return m_hMarkers; }

    // points: one byte a point, spread evenly over the span.
    void addSpectrum(const QByteArray& points);
    void setAveraging(int depth); // over how many spectra; 1 is none
    void setMaxHold(bool on);
    void restartAverage();
    const SpectrumTrace& trace() const { return m_trace; }

    Reading peak() const;
    Reading marker() const;
    // frequency: in MHz; outside the span there is no marker.
    void setMarker(double frequency);
    void clearMarker();
    // What stands above the plot at the right: averaging, max hold, peak and marker, on several
    // lines where one is too short.
    QString readout() const { return m_readoutText; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void setUpAxes();
    void updateAxes();
    void updateTickTexts();
    struct Part
    {
        QString text;
        QString widest;
    };
    QVector<Part> readoutParts() const;
    void updateReadout();
    void setHeadHeight(int height);
    void readoutDue();
    void schedulePaint();
    void composeFrame();
    void paintLine(QPainter& painter, const QVector<float>& levels, const QColor& color);
    void paintHLabels(QPainter& painter) const;
    void paintPeak(QPainter& painter) const;
    void paintMarker(QPainter& painter) const;
    void paintReadout(QPainter& painter) const;
    QRect plotRect() const;
    qsizetype indexAt(double frequency) const;
    Reading reading(qsizetype index) const;
    QPointF pixelOf(const Reading& reading) const;

    SpectrumTrace m_trace;
    SpanInfo m_span;
    QString m_title;
    QString m_readoutText;
    QVector<QStaticText> m_readoutLines;
    QColor m_color;
    QList<double> m_hMarkers;
    QVector<QStaticText> m_hLabels; // one a marker
    QPixmap m_frame;                // everything but trace, markers and read-out
    QPolygonF m_line;
    QTimer m_paintTimer{this};
    QTimer m_readoutTimer{this};
    qint64 m_lastPaintMs = 0;
    double m_centre = SpanCentreMHz;
    double m_markerOffset = 0.0; // MHz from the centre
    bool m_hasMarker = false;
    bool m_besideTitle = false;
    bool m_frameStale = true;
    bool m_readoutStale = false;
};
