#pragma once

class ChartScale;
class FrequencyAxis;
class QCustomPlot;
class QString;

/// Shows a chart's frequency axis and level scale by the axes of its plot.
namespace chartAxes {

/// Gives the axes of a new plot their tickers and number formats.
void setUp(QCustomPlot& plot);

/// Sets the ranges of both axes.
void setRanges(QCustomPlot& plot, const FrequencyAxis& axis, const ChartScale& scale);

/// Sets the texts of the ticks, as many as the size of the plot has room for, and the margin at the
/// right that they need.
void setTicks(QCustomPlot& plot, const FrequencyAxis& axis, const ChartScale& scale);

/// Sets the margin above the plot. \return whether it has changed.
bool setHeadHeight(QCustomPlot& plot, int height);

} // namespace chartAxes
