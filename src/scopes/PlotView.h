#pragma once

#include "scopes/PlotContent.h"

#include <QImage>
#include <QPixmap>
#include <QTimer>

#include <qcustomplot.h>

// A plot on the screen: QCustomPlot draws axes, grid and labels, the content draws the data.
//
// The frame is drawn once and kept as a picture until its axes or its size change; after that new
// data cost a copy of the grid, the data's pixels and one blit. A badge is painted over both. New
// data only mark the plot dirty: a timer has it painted, no sooner than the last painting took, so
// that a slow board still feels the finger; a hidden plot is not painted at all.
class PlotView : public QCustomPlot
{
    Q_OBJECT

public:
    explicit PlotView(QWidget* parent = nullptr);

    // content: what is shown from now on, not owned; nullptr for an empty plot.
    void setContent(PlotContent* content);
    PlotContent* content() const { return m_content; }

    // The content has new data: it is painted soon, if anybody sees it.
    void dataChanged();

    // The data area as it was last painted, in pixels of this widget.
    QRect dataArea() const { return m_area; }
    // How many pixels of the height are not the data area's, unless that is square.
    int frameHeight() const;
    // How often the data have been painted.
    int paintCount() const { return m_paintCount; }

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void setUpLook();
    QString newBadge() const;
    bool frameIsStale() const;
    void drawFrame();
    void layOutArea();
    void copyGrid();
    void drawBadge(QPainter& painter) const;

    PlotContent* m_content = nullptr;
    PlotAxes m_axes;
    QString m_badge; // as it was last painted
    QSharedPointer<QCPAxisTickerFixed> m_xTicker;
    QSharedPointer<QCPAxisTickerFixed> m_yTicker;
    QPixmap m_frame;  // axes, grid and labels
    QImage m_grid;    // the frame's data area
    QImage m_picture; // the same with the data
    QRect m_area;
    QSize m_contentSize; // what the content was told
    QTimer m_timer;
    bool m_frameDirty = true;
    int m_paintCount = 0;
    int m_lastPaintMs = 0;
};
