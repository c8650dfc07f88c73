#pragma once

#include "scopes/DensityImage.h"
#include "scopes/Interpolator.h"
#include "wire/IqBlock.h"
#include "scopes/PlotContent.h"

#include <QVector>

#include <deque>
#include <vector>

// The eye pattern of one component, I or Q.
//
// A block's samples are interpolated by Factor and folded into traces of two symbols, from one
// decision to the next but one, with the decision between them in the middle. The traces of the
// last blocks stay on the screen and fade. Blocks wait undrawn until paint(): a plot that nobody
// sees costs nothing.
class EyePlot : public PlotContent
{
public:
    static constexpr int Factor = 8; // points for each sample
    static constexpr int SamplesPerSymbol = iqBlock::EyeSamplesPerSymbol;
    static constexpr int SymbolsPerTrace = 2;
    static constexpr int PointsPerTrace = Factor * SamplesPerSymbol * SymbolsPerTrace + 1;

    // yLabel: the component's name with its unit.
    explicit EyePlot(const QString& yLabel);

    // samples: -1 to 1 of full scale, one block; the first one is at a decision. Fewer samples than
    // one trace and its surroundings need: nothing is drawn.
    void addBlock(const QVector<double>& samples);

    // limit: half the range of the vertical axis, in parts of full scale. A new one leaves
    // the newest block alone on the screen.
    void setLimit(double limit);
    void setTimeLabel(bool shown) { m_timeLabel = shown; }

    PlotAxes axes() const override;
    void setLineColor(const QColor& color) override { m_image.setColor(color); }
    void clear() override;
    void resize(QSize size) override;
    void paint(QImage& picture) override;

    // In: one block. Out: its traces, one after the other, PointsPerTrace points each.
    std::vector<double> traces(const QVector<double>& samples) const;

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
    std::deque<QVector<double>> m_waiting; // blocks that are not drawn yet
    QVector<double> m_last;                // the newest block
};
