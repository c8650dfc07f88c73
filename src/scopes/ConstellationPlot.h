#pragma once

#include "scopes/DensityImage.h"
#include "scopes/PlotContent.h"

#include <QPointF>
#include <QVector>

#include <deque>

// The constellation: each I/Q pair of a block as a dot in the plane, both axes equally long. The
// dots of the last blocks stay on the screen and fade, so that a cloud shows where the signal is
// most of the time. Blocks wait undrawn until paint(): a plot that nobody sees costs nothing.
//
// The first pair of a whole block of the line is left out: its I is that of the second one, so that
// it is no point of the signal.
class ConstellationPlot : public PlotContent
{
public:
    ConstellationPlot() = default;

    // i, q: -1 to 1 of full scale; of two different lengths the shorter one counts.
    void addBlock(const QVector<double>& i, const QVector<double>& q);

    // limit: half the range of both axes, in parts of full scale. A new one leaves
    // the newest block alone on the screen.
    void setLimit(double limit);

    // The pairs of the newest block as they are plotted: (I, Q) in parts of full scale.
    QVector<QPointF> plotted() const;

    PlotAxes axes() const override;
    void setLineColor(const QColor& color) override { m_image.setColor(color); }
    void clear() override;
    void resize(QSize size) override;
    void paint(QImage& picture) override;

    const DensityImage& image() const { return m_image; }

private:
    struct Block
    {
        QVector<double> i;
        QVector<double> q;

        // The pairs that are points of the signal: from first() up to, not including, end().
        qsizetype first() const;
        qsizetype end() const;
    };

    void drawLastAgain();
    void draw(const Block& block);

    double m_limit = 1.0;
    DensityImage m_image;
    std::deque<Block> m_waiting; // blocks that are not drawn yet
    Block m_last;                // the newest block
};
