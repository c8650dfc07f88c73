#pragma once

#include "plot/Scale.h"
#include "spectrum/Limits.h"
#include "wire/DropLog.h"

#include <QList>
#include <QRect>
#include <QStaticText>
#include <QVector>

class QCPItemStraightLine;
class QCustomPlot;
class QPainter;

/// The horizontal markers of a chart: dashed lines at fixed levels, each with its number.
///
/// The lines are items of the plot and so part of its cached frame. The numbers are painted over
/// the trace, which may run along the marked level.
class LevelMarkers
{
public:
    static constexpr qsizetype MaxCount =
        spectrumLimits::MaxMarkers; ///< The most markers of a chart.

    /// Creates no markers yet. \a plot has to live longer than the markers are used.
    explicit LevelMarkers(QCustomPlot& plot);

    /// Replaces all markers. The plot is not drawn anew.
    /// \param levels in dB; what is not on the axis is left out, and so is what comes after
    /// MaxCount. \param lowest, highest the ends of the axis in dB.
    void setLevels(const QList<double>& levels, double lowest, double highest);
    /// \return the levels of the markers that are shown, in dB.
    const QList<double>& levels() const { return m_levels; }

    /// Paints the numbers at the right edge of \a area, each above its line, or below it where
    /// there is no room above. A marker that \a scale puts outside the area is not shown.
    /// \param scale from dB to rows.
    void paintNumbers(QPainter& painter, const QRect& area, const Scale& scale) const;

private:
    QCPItemStraightLine* newLine(double level);

    QCustomPlot& m_plot;
    QList<double> m_levels;
    QVector<QCPItemStraightLine*> m_lines; // the plot owns them
    QVector<QStaticText> m_numbers;
    DropLog m_leftOut;
};
