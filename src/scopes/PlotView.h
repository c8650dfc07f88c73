#pragma once

#include "plot/CachedPlot.h"
#include "scopes/PlotContent.h"

#include <QImage>

/// A plot on the screen: QCustomPlot draws axes, grid and labels, the content draws the data.
///
/// CachedPlot keeps the frame, which is drawn anew when the content's axes or the size change. New
/// data cost a copy of the frame's data area, the content draws into the copy, and the copy is
/// painted onto the widget. A badge is painted over both. What
/// the content says of its range stands beside the label of the x axis.
class PlotView : public CachedPlot
{
    Q_OBJECT

public:
    /// Creates a plot without content: axes and grid alone.
    explicit PlotView(QWidget* parent = nullptr);

    /// Sets what is shown from now on. The view does not own it; nullptr shows an empty plot.
    void setContent(PlotContent* content);
    /// \return what is shown, or nullptr.
    PlotContent* content() const { return m_content; }

    /// To be called when the content has new data: they are painted soon, if anybody sees them.
    void dataChanged() { schedulePaint(); }

    /// Sets whether the data are old. They are dimmed then, and "NO DATA" stands over them instead
    /// of a badge in their corner.
    void setStale(bool stale);
    /// \return whether the data are shown as old, false at first.
    bool isStale() const { return m_stale; }

    /// Sets whether the data are held although newer ones have come: "FROZEN" stands in their
    /// corner.
    void setFrozen(bool frozen);
    /// \return whether the data are held, false at first.
    bool isFrozen() const { return m_frozen; }
    /// \return "FROZEN".
    static QString frozenText();

    /// \return the data area as it was last painted, in pixels of this widget.
    QRect dataArea() const { return m_area; }
    /// \return how many pixels of the height are not the data area's, unless that is square.
    int frameHeight() const;

    /// \reimp
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool frameIsStale() const override;
    QPixmap drawFrame() override;
    void paintData(QPainter& painter, const QRect& dirty) override;
    QRect changedRect() const override;
    QRect opaqueRect() const override { return m_area; }

private:
    void setUpLook();
    void dropFirstReplot();
    QString newBadge() const;
    void applyAxes();
    void layOutArea();
    void placeData();
    QPixmap scaledFrame();
    QImage gridCopy() const;
    QString newRangeNote() const;
    void drawNote(QPainter& painter) const;
    void drawRangeNote(QPixmap& frame) const;
    void drawCornerText(QPainter& painter, const QString& text, Qt::Alignment side) const;

    PlotContent* m_content = nullptr;
    PlotAxes m_axes;     // as they were last drawn
    QString m_badge;     // as it was last painted
    QString m_rangeNote; // as it was last drawn
    QSharedPointer<QCPAxisTickerFixed> m_xTicker;
    QSharedPointer<QCPAxisTickerFixed> m_yTicker;
    QRect m_area;
    QImage m_grid;       // the frame in the plot's own pixels, where the screen's are others
    QSize m_contentSize; // as it was last given to the content
    bool m_stale = false;
    bool m_frozen = false;
};
