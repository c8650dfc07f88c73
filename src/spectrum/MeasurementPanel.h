#pragma once

#include "plot/Scale.h"
#include "spectrum/ChartMeasurement.h"

#include <QFont>
#include <QStaticText>
#include <QWidget>

/// The strip under an enlarged chart that shows what is measured: its name and what belongs to it
/// at the left, the result in large figures at the right, and over them a bracket from the lower to
/// the upper limit, under the frequencies of the chart.
class MeasurementPanel : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Height = 46; ///< Of the strip, in pixels.

    /// Makes an empty strip.
    explicit MeasurementPanel(QWidget* parent = nullptr);

    /// Sets where the frequencies of the chart lie. \param left, right the outer columns of its
    /// plot, in pixels of this widget \param frequencies from MHz to columns
    void setPlot(int left, int right, const Scale& frequencies);

    /// Shows a result; one that reads as the last one is not painted again.
    void setReading(const chartMeasurement::Reading& reading);

    /// \return all that the strip says: name, result and details, separated by line feeds.
    QString text() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void layOut();
    void paintBracket(QPainter& painter) const;

    chartMeasurement::Reading m_reading;
    Scale m_frequencies;
    int m_left = 0;
    int m_right = 0;
    QFont m_valueFont;
    QStaticText m_name;
    QStaticText m_value;
    QStaticText m_details;
};
