#pragma once

#include "scopes/DensityImage.h"
#include "scopes/Interpolator.h"
#include "scopes/PlotContent.h"
#include "wire/IqBlock.h"

#include <QVector>

#include <deque>
#include <vector>

/// The eye pattern of one component, I or Q.
///
/// addBlock() only keeps the block; paint() draws all that wait, so that a plot that nobody sees
/// costs nothing. To draw a block, its samples are interpolated by Factor and folded into traces of
/// two symbols, from one decision to the next but one, with the decision between them in the
/// middle. The traces of the last blocks stay on the screen and fade.
class EyePlot : public PlotContent
{
public:
    static constexpr int Factor = 8; ///< Points for each sample.
    static constexpr int SamplesPerSymbol = iqBlock::EyeSamplesPerSymbol; ///< As they are sent.
    static constexpr int SymbolsPerTrace = 2;                             ///< What one trace shows.
    /// Points of one trace, both ends included.
    static constexpr int PointsPerTrace = Factor * SamplesPerSymbol * SymbolsPerTrace + 1;

    /// \param yLabel the component's name with its unit.
    explicit EyePlot(const QString& yLabel);

    /// Adds a block. Nothing is drawn of one that has fewer samples than a trace and the
    /// interpolation around it need.
    /// \param samples in parts of full scale, -1 to 1; the first one is at a decision.
    void addBlock(const QVector<double>& samples);

    /// Sets the range of the vertical axis. A new one leaves the newest block alone on the screen.
    /// \param limit half the range, in parts of full scale; 0 and less are ignored.
    void setLimit(double limit);
    /// Sets whether the time axis is labelled; true at first. The upper of two eyes has no label.
    void setTimeLabel(bool shown) { m_timeLabel = shown; }

    PlotAxes axes() const override;
    void setLineColor(const QColor& color) override { m_image.setColor(color); }
    void clear() override;
    void resize(QSize size) override;
    void paint(QImage& picture) override;

    /// \param samples one block, as for addBlock().
    /// \return its traces, one after the other, PointsPerTrace points each.
    std::vector<double> traces(const QVector<double>& samples) const;

    /// \return what has been drawn.
    const DensityImage& image() const { return m_image; }

private:
    void drawLastAgain();
    void draw(const QVector<double>& samples);
    void drawTrace(const double* points);

    QString m_yLabel;
    bool m_timeLabel = true;
    double m_limit = 1.0;
    Interpolator m_interpolator;
    DensityImage m_image;
    std::deque<QVector<double>> m_waiting; // not drawn yet
    QVector<double> m_last;                // the newest block
};
