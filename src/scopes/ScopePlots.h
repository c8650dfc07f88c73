#pragma once

#include <QVector>

class PlotContent;
class PlotView;
class QWidget;

/// The two plots of a scope, one above the other.
class ScopePlots
{
public:
    /// Makes the plots, empty, in a vertical layout of their own.
    /// \param scope the widget that they fill; it owns them.
    explicit ScopePlots(QWidget* scope);
    /// The plots of a scope are its own.
    ///@{
    ScopePlots(const ScopePlots&) = delete;
    ScopePlots& operator=(const ScopePlots&) = delete;
    ///@}
    /// \return the upper and the lower plot.
    QVector<PlotView*> all() const { return {m_upper, m_lower}; }

    /// Sets what the plots show; nullptr for nothing.
    void setContents(PlotContent* upper, PlotContent* lower) const;
    /// Sets which of the plots are shown.
    void setShown(bool upper, bool lower) const;
    /// Sets the largest width and height of the upper plot, in pixels.
    void setUpperSide(int side) const;
    /// Shares the height of the scope so that both data areas are equally high, though the time
    /// stands under the lower one alone.
    void shareHeight() const;

    /// Sets whether the data are old.
    void setStale(bool stale) const;
    /// Sets whether the data are held although newer ones have come; the upper plot says so.
    void setFrozen(bool frozen) const;
    /// Has the plots painted.
    void update() const;
    /// To be called when the contents have new data.
    void dataChanged() const;

private:
    PlotView* m_upper;
    PlotView* m_lower;
};
