#pragma once

#include "scopes/ConstellationMeter.h"
#include "scopes/ConstellationPlot.h"
#include "scopes/EyeMeter.h"
#include "scopes/EyePlot.h"
#include "scopes/RangeKeeper.h"
#include "scopes/ScopeFigure.h"
#include "scopes/SdiPlot.h"

#include <QByteArray>
#include <QColor>
#include <QString>
#include <QVector>

#include <array>
#include <deque>
#include <utility>

/// What the two plots of a scope show, without a window.
///
/// A scope shows the eyes of I and Q one above the other, or a constellation or SDI strips alone.
/// The contents of all views exist at any time. New data go to those of the current view, with a
/// range that fits them and a badge when they are clipped. While the contents are frozen, the
/// newest data are kept aside, and the views get them when that ends.
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
    void setView(View view);
    /// \return what is shown.
    View view() const { return m_view; }

    /// \return the content of the upper plot in the current view.
    ///@{
    PlotContent* upper()
    {
        // The contents are members, which are not constant here.
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
        return const_cast<PlotContent*>(std::as_const(*this).upper());
    }
    const PlotContent* upper() const;
    ///@}
    /// \return the content of the lower plot, which only the eyes use.
    ///@{
    PlotContent* lower() { return &m_eyeQ; }
    const PlotContent* lower() const { return &m_eyeQ; }
    ///@}

    /// Plots one block.
    /// \param i, q samples in parts of full scale, -1 to 1.
    void addBlock(const QVector<double>& i, const QVector<double>& q);
    /// Plots one SDI record of five bytes.
    void addRecord(const QByteArray& record);

    /// Sets whether new data are kept aside instead of being plotted; false at first.
    void setFrozen(bool frozen);
    /// \return whether new data are kept aside.
    bool frozen() const { return m_frozen; }

    /// Sets how long the signal stays on the screen; Short at first.
    void setPersistence(DensityImage::Persistence persistence);
    /// \return how long the signal stays on the screen.
    DensityImage::Persistence persistence() const { return m_persistence; }

    /// Measures the blocks that were plotted last. An eye pattern is folded at the samples per
    /// symbol that were found from then on, or at four with a note at the upper plot.
    void measure();
    /// Sets whether what was measured is marked in the plots: ideal points and the best instants;
    /// false at first.
    void setMarksShown(bool shown);
    /// \return the numbers of the current view as they were measured last; "---" before.
    const QVector<ScopeFigure>& figures() const { return m_figures; }

    /// Empties all views, and forgets the data that were kept aside.
    void clear();
    /// Shows \a badge at the data of all views, until the next data come.
    void setBadge(const QString& badge);
    /// Sets the colour of all views' data.
    void setLineColor(const QColor& color);

    /// Sets whether the axes span full scale; otherwise they are fitted to the signal.
    void setRangeFixed(bool fixed);
    /// \return whether the axes span full scale; false at first.
    bool rangeFixed() const { return m_range.fixed(); }
    /// \return "Fixed range" or "Fitted range".
    QString rangeText() const;

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
    struct Block
    {
        QVector<double> i;
        QVector<double> q;
    };

    std::array<PlotContent*, 4> all();
    void plot(const Block& block);
    void applyRange();
    void showRange();
    void showClipping();
    void measureConstellation();
    void measureEyes();
    void forgetFigures();

    RangeKeeper m_range;
    EyePlot m_eyeI;
    EyePlot m_eyeQ;
    ConstellationPlot m_constellation;
    SdiPlot m_strips;
    View m_view = View::Eyes;
    DensityImage::Persistence m_persistence = DensityImage::Persistence::Short;
    ConstellationMeter m_constellationMeter;
    EyeMeter m_eyeMeter;
    QVector<ScopeFigure> m_figures;
    std::deque<Block> m_heldBlocks;
    std::deque<QByteArray> m_heldRecords;
    bool m_frozen = false;
    bool m_marksShown = false;
    bool m_clippedI = false; // the newest block that was plotted
    bool m_clippedQ = false;
};
