#pragma once

#include "scopes/DensityImage.h"
#include "scopes/PlotContent.h"

#include <QPointF>
#include <QVector>

#include <deque>

/// The constellation: each I/Q pair of a block as a dot in the plane, both axes equally long.
///
/// addBlock() only keeps the block; paint() draws all that wait, so that a plot that nobody sees
/// costs nothing. The dots of the last blocks stay on the screen and fade, so that a cloud shows
/// where the signal is most of the time.
///
/// The first pair of a whole block from the line is left out: its I has the value of the second
/// one, so it is not a point of the signal.
class ConstellationPlot : public PlotContent
{
public:
    ConstellationPlot() = default;

    /// Adds a block of pairs.
    /// \param i, q samples in parts of full scale, -1 to 1; of two lengths the shorter one counts.
    void addBlock(const QVector<double>& i, const QVector<double>& q);

    /// Sets the range of both axes. A new one leaves the newest block alone on the screen.
    /// \param limit half the range, in parts of full scale; 0 and less are ignored.
    void setLimit(double limit);

    /// Marks the ideal points of the signal by small crosses.
    /// \param points (I, Q) in parts of full scale; none for no crosses.
    void setIdealPoints(const QVector<QPointF>& points) { m_idealPoints = points; }
    /// \return the points that are marked.
    const QVector<QPointF>& idealPoints() const { return m_idealPoints; }

    /// \return the pairs of the newest block that are plotted: (I, Q) in parts of full scale.
    QVector<QPointF> plotted() const;

    /// Sets how long the signal stays on the screen.
    void setPersistence(DensityImage::Persistence persistence)
    {
        m_image.setPersistence(persistence);
    }

    PlotAxes axes() const override;
    void setLineColor(const QColor& color) override { m_image.setColor(color); }
    void clear() override;
    void resize(QSize size) override;
    void paint(QImage& picture) override;

    /// \return what has been drawn.
    const DensityImage& image() const { return m_image; }

private:
    struct Block
    {
        QVector<double> i;
        QVector<double> q;

        // The pairs that are points of the signal, from first() up to but not including end().
        qsizetype first() const;
        qsizetype end() const;
    };

    void drawLastAgain();
    void draw(const Block& block);
    void drawCrosses(QImage& picture) const;

    QVector<QPointF> m_idealPoints;
    double m_limit = 1.0;
    DensityImage m_image;
    std::deque<Block> m_waiting; // not drawn yet
    Block m_last;                // the newest one
};
