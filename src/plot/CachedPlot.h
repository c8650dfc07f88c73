#pragma once

#include <QElapsedTimer>
#include <QPixmap>
#include <QTimer>

#include <qcustomplot.h>

/// A plot whose static parts are kept as one picture, the frame, and whose data are painted over
/// it.
///
/// QCustomPlot draws what seldom changes: axes, grid, ticks, labels. The result is kept until
/// setFrameStale() is called, the plot library lays the plot out anew (replot()), or the derived
/// class says so (frameIsStale()). New data only call schedulePaint(): one timer paints them all
/// together. Painting copies the frame and hands the painter to the derived class, which draws the
/// data straight onto the widget.
///
/// The next paint waits at least as long as the last one took, so that a slow board still has time
/// for the finger. Data that come long after the last paint are painted at once, which saves the
/// timer's wake-up. A plot that nobody sees is not painted: its data are painted when it is shown.
class CachedPlot : public QCustomPlot
{
    Q_OBJECT

public:
    /// \param minPauseMs shortest time between two paints of new data, in milliseconds; 0 paints
    /// them as soon as the event loop is free, unless the last paint took a millisecond or more.
    explicit CachedPlot(int minPauseMs, QWidget* parent = nullptr);

    /// \return how often the plot has been painted so far.
    int paintCount() const { return m_paintCount; }

protected:
    void paintEvent(QPaintEvent* event) override;

    /// Has the frame drawn anew before the next paint. Does not ask for that paint.
    void setFrameStale() { m_frameStale = true; }

    /// \return whether the frame is out of date.
    virtual bool frameIsStale() const { return m_frameStale; }

    /// \return what drawFrame() has drawn last.
    const QPixmap& frame() const { return m_frame; }

    /// Draws axes, grid and everything else that is not data.
    /// \return a picture of this widget's size.
    virtual QPixmap drawFrame() = 0;

    /// Draws the data over the frame.
    /// \param dirty the part of the widget that is painted; the painter does not clip to the data.
    virtual void paintData(QPainter& painter, const QRect& dirty) = 0;

    /// Asks for one paint of changedRect() after the pause; at once when the last paint is at least
    /// twice the pause ago. Does nothing while the plot is hidden or a paint is already due.
    void schedulePaint();

    /// \return whether a paint waits for the end of the pause: changedRect() will be asked for
    /// then.
    bool paintIsDue() const { return m_paintTimer.isActive(); }

    /// \return the part of the widget that new data change; all of it unless a derived class knows
    /// better.
    virtual QRect changedRect() const { return rect(); }

    /// \return the part that paintData() fills completely, so that the frame need not be copied
    /// there; none unless a derived class knows better.
    virtual QRect opaqueRect() const { return {}; }

private:
    bool pauseIsOver(int pause) const;
    void paintFrame(QPainter& painter, const QRect& dirty) const;

    QPixmap m_frame;
    QTimer m_paintTimer{this};
    QElapsedTimer m_sincePaint; // the end of the last one
    int m_minPauseMs;
    int m_lastPaintMs = 0;
    int m_paintCount = 0;
    bool m_frameStale = true;
};
