#pragma once

#include <QVector>

class PlotContent;
class PlotView;
class QWidget;

/// The two plots of a scope, one above the other.
///
/// They do not exist before make(): a plot brings the plot library's code into memory, which the
/// start of the panel does without. All other functions do nothing before.
class ScopePlots
{
public:
    /// Makes the plots, empty and hidden, in a layout of their own.
    /// \param scope the widget that they fill; it owns them.
    void make(QWidget* scope);
    /// \return the upper and the lower plot; none before make().
    const QVector<PlotView*>& all() const { return m_all; }
    /// \return whether make() was called.
    bool exist() const { return !m_all.isEmpty(); }

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
    QVector<PlotView*> m_all;
};
