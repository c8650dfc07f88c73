#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

/// Levels on axes are written in percent of full scale (% FS).
constexpr double FullScalePercent = 100.0;

/// What a plot's frame shows around its data.
struct PlotAxes
{
    QString xLabel;     ///< Text under the x axis, with its unit; empty for an axis without one.
    QString yLabel;     ///< Text beside the y axis, with its unit.
    double xMin = -1.0; ///< Value at the left edge.
    double xMax = 1.0;  ///< Value at the right edge.
    double yMin = -1.0; ///< Value at the bottom; larger than yMax on an axis that counts downwards.
    double yMax = 1.0;  ///< Value at the top.
    double xStep = 0.0; ///< Distance of two ticks on the x axis.
    double yStep = 0.0; ///< Distance of two ticks on the y axis.
    bool square = false; ///< Whether both axes are equally long.

    /// \return whether a frame drawn for \a other can be kept.
    bool operator==(const PlotAxes& other) const
    {
        return xLabel == other.xLabel && yLabel == other.yLabel && xMin == other.xMin &&
            xMax == other.xMax && yMin == other.yMin && yMax == other.yMax &&
            xStep == other.xStep && yStep == other.yStep && square == other.square;
    }
    /// \return whether the frame has to be drawn anew.
    bool operator!=(const PlotAxes& other) const { return !(*this == other); }
};

/// One kind of plot, without a window.
///
/// It takes data as they come and turns them into pixels only when somebody looks. PlotView asks it
/// for its axes, sets the size of the data area and has it draw into a picture.
class PlotContent
{
public:
    PlotContent() = default;
    virtual ~PlotContent() = default;
    PlotContent(const PlotContent&) = delete;
    PlotContent& operator=(const PlotContent&) = delete;

    /// \return what the frame shows around the data.
    virtual PlotAxes axes() const = 0;

    /// \return a short warning for the corner of the data; empty most of the time. It comes and
    /// goes with the data and is no part of the frame.
    const QString& badge() const { return m_badge; }
    /// Sets badge().
    void setBadge(const QString& badge) { m_badge = badge; }

    /// \return what is assumed about the data, to be written below them; empty most of the time.
    const QString& note() const { return m_note; }
    /// Sets note().
    void setNote(const QString& note) { m_note = note; }

    /// \return how the range of the axes came about, for the corner of the frame; empty for a
    /// content that has only one range.
    const QString& rangeNote() const { return m_rangeNote; }
    /// Sets rangeNote().
    void setRangeNote(const QString& note) { m_rangeNote = note; }

    /// Sets the colour in which the data are drawn from now on.
    virtual void setLineColor(const QColor& color) = 0;
    /// Forgets all data, and the badge with them.
    virtual void clear() = 0;
    /// Sets the size of the data area in pixels. What was drawn so far is forgotten, the newest
    /// data are kept.
    virtual void resize(QSize size) = 0;
    /// Draws the data into \a picture, an RGB32 image of the size given to resize() that holds the
    /// grid.
    virtual void paint(QImage& picture) = 0;

private:
    QString m_badge;
    QString m_note;
    QString m_rangeNote;
};
