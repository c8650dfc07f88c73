#pragma once

#include "scopes/ConstellationPlot.h"
#include "scopes/EyePlot.h"
#include "scopes/RangeKeeper.h"
#include "scopes/SdiPlot.h"

#include <QByteArray>
#include <QColor>
#include <QString>
#include <QVector>

#include <array>

/// What the two plots of a scope show, without a window.
///
/// A scope shows the eyes of I and Q one above the other, or a constellation or SDI strips alone.
/// The contents of all views exist at any time. New data go to those of the current view, with a
/// range that fits them and a badge when they are clipped.
class ScopeContents
{
public:
    /// What is shown.
    enum class View {
        Eyes,          ///< The eye patterns of I and Q.
        Constellation, ///< I over Q.
        Strips         ///< SDI records.
    };

    /// Creates contents without data; the eyes are shown.
    ScopeContents();

    /// Sets what is shown. Data that were received for another view stay there.
    void setView(View view) { m_view = view; }
    /// \return what is shown.
    View view() const { return m_view; }

    /// \return the content of the upper plot in the current view.
    PlotContent* upper();
    /// \return the content of the lower plot, which only the eyes use.
    PlotContent* lower() { return &m_eyeQ; }

    /// Plots one block.
    /// \param i, q samples in parts of full scale, -1 to 1.
    void addBlock(const QVector<double>& i, const QVector<double>& q);
    /// Plots one SDI record of five bytes.
    void addRecord(const QByteArray& record);

    /// Empties all views.
    void clear();
    /// Shows \a badge at the data of all views, until the next data come.
    void setBadge(const QString& badge);
    /// Sets the colour of all views' data.
    void setLineColor(const QColor& color);

    /// Sets whether the axes span full scale; otherwise they are fitted to the signal.
    void setRangeFixed(bool fixed);
    /// \return whether the axes span full scale; false at first.
    bool rangeFixed() const { return m_range.fixed(); }

    /// Sets whether the upper eye has a label at its time axis.
    void setUpperTimeLabel(bool shown) { m_eyeI.setTimeLabel(shown); }

    /// \return the constellation.
    const ConstellationPlot& constellation() const { return m_constellation; }
    /// \return the SDI strips.
    ///@{
    const SdiPlot& strips() const { return m_strips; }
    SdiPlot& strips() { return m_strips; }
    ///@}

private:
    std::array<PlotContent*, 4> all();
    void applyRange();

    RangeKeeper m_range;
    EyePlot m_eyeI;
    EyePlot m_eyeQ;
    ConstellationPlot m_constellation;
    SdiPlot m_strips;
    View m_view = View::Eyes;
};
