#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

// Axes of levels count in percent of full scale (% FS).
constexpr double FullScalePercent = 100.0;

// What a plot's frame shows around its data.
struct PlotAxes
{
    QString xLabel; // with its unit; empty: the axis has no label
    QString yLabel;
    double xMin = -1.0;
    double xMax = 1.0;
    double yMin = -1.0;
    double yMax = 1.0;
    double xStep = 0.0; // between two ticks
    double yStep = 0.0;
    bool square = false; // both axes equally long

    bool operator==(const PlotAxes& other) const
    {
        return xLabel == other.xLabel && yLabel == other.yLabel && xMin == other.xMin &&
            xMax == other.xMax && yMin == other.yMin && yMax == other.yMax &&
            xStep == other.xStep && yStep == other.yStep && square == other.square;
    }
    bool operator!=(const PlotAxes& other) const { return !(*this == other); }
};

// One kind of plot, without a window: it takes data as they come, and makes pixels of them only
// when somebody looks. PlotView asks it for its axes, tells it the size of the data area and has it
// draw.
class PlotContent
{
public:
    PlotContent() = default;
    virtual ~PlotContent() = default;
    PlotContent(const PlotContent&) = delete;
    PlotContent& operator=(const PlotContent&) = delete;

    virtual PlotAxes axes() const = 0;
    // A warning in the corner of the data; mostly empty. It comes and goes with the data and is no
    // part of the frame.
    const QString& badge() const { return m_badge; }
    void setBadge(const QString& badge) { m_badge = badge; }
    virtual void setLineColor(const QColor& color) = 0;
    // Forgets all data, and the warning with them.
    virtual void clear() = 0;
    // The data area in pixels; what was drawn so far is forgotten, the newest data are kept.
    virtual void resize(QSize size) = 0;
    // Draws over `picture`, an RGB32 image of that size that holds the grid.
    virtual void paint(QImage& picture) = 0;

private:
    QString m_badge;
};
