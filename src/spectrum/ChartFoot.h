#pragma once

#include "spectrum/ChartMeasurement.h"

#include <QWidget>

class MeasurementPanel;
class SpectrumChart;
class Waterfall;

/// What stands under an enlarged chart: what is measured, while something is, and the waterfall.
///
/// It follows its chart: each spectrum becomes a line, the chart's range of levels that of the
/// colours, its plot the width. Measurements are made when the chart's own readings change, at most
/// four times a second, so that they can be read; nothing is measured while it is hidden.
class ChartFoot : public QWidget
{
    Q_OBJECT

public:
    /// Makes an empty foot, to be placed under the chart with the same left edge.
    explicit ChartFoot(QWidget* parent = nullptr);

    /// Sets the chart, which may be deleted at any time.
    void follow(SpectrumChart* chart);

    /// Sets what is measured. \param nominal the span's nominal width in MHz
    void setMeasurement(const chartMeasurement::Choice& choice, double nominal);

    /// Forgets the lines, whose frequencies are no longer those of the chart.
    void clear();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void fitPlot();
    void fitRange();
    void measure();

    SpectrumChart* m_chart = nullptr;
    MeasurementPanel* m_panel;
    Waterfall* m_waterfall;
    chartMeasurement::Choice m_choice;
    double m_nominal = 0.0;
};
