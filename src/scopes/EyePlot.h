#pragma once

#include "scopes/DensityImage.h"
#include "scopes/Interpolator.h"
#include "scopes/PlotContent.h"
#include "wire/IqBlock.h"

#include <QVector>

#include <deque>
#include <optional>
#include <vector>

/// The eye pattern of one component, I or Q.
///
/// addBlock() only keeps the block; paint() draws all that wait, so that a plot that nobody sees
/// costs nothing. To draw a block, its samples are interpolated by Factor and folded into traces of
/// two symbols, from one decision to the next but one, with the decision between them in the
/// middle. The first sample of a block is taken as a decision. The traces of the last blocks stay
/// on the screen and fade.
class EyePlot : public PlotContent
{
public:
    static constexpr int Factor = 8; ///< Points for each sample.
    static constexpr int SamplesPerSymbol = iqBlock::EyeSamplesPerSymbol; ///< As they are sent.
    static constexpr int SymbolsPerTrace = 2;                             ///< What one trace shows.
    /// Points of one trace, both ends included, at SamplesPerSymbol.
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
    /// Sets by how many samples the traces are folded. A number that differs from the present one
    /// by more than a small error of measurement leaves the newest block alone on the screen.
    /// \param samples per symbol, MinSamplesPerSymbol to MaxSamplesPerSymbol, of which the fraction
    /// counts; others are ignored.
    void setSamplesPerSymbol(double samples);
    /// \return by how many samples per symbol the traces are folded, SamplesPerSymbol at first.
    double samplesPerSymbol() const { return m_perSymbol; }
    static constexpr double MinSamplesPerSymbol = 2.0;  ///< The smallest number.
    static constexpr double MaxSamplesPerSymbol = 16.0; ///< The largest number.

    /// Marks the best sampling instant by a thin dashed line.
    /// \param instant in symbols from a decision, -1 to 1; nothing for no line.
    void setInstant(std::optional<double> instant) { m_instant = instant; }
    /// \return the instant that is marked.
    std::optional<double> instant() const { return m_instant; }

    /// Sets whether the time axis is labelled; true at first. The upper of two eyes has no label.
    void setTimeLabel(bool shown) { m_timeLabel = shown; }

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

    /// \param samples one block, as for addBlock().
    /// \return its traces, one after the other, pointsPerTrace() points each.
    std::vector<double> traces(const QVector<double>& samples) const;
    /// \return points of one trace, both ends included.
    int pointsPerTrace() const;

    /// \return what has been drawn.
    const DensityImage& image() const { return m_image; }

private:
    // The point of a trace to the left of a column, and how much of the one to the right counts.
    struct Column
    {
        size_t left;
        double part;
    };

    void drawLastAgain();
    void draw(const QVector<double>& samples);
    void placeColumns(size_t count);
    void toRows(std::vector<double>& points) const;
    void drawTrace(const double* rows);
    void drawInstant(QImage& picture) const;

    QString m_yLabel;
    bool m_timeLabel = true;
    double m_limit = 1.0;
    double m_perSymbol = SamplesPerSymbol;
    std::optional<double> m_instant;
    Interpolator m_interpolator;
    DensityImage m_image;
    std::vector<Column> m_columns;
    size_t m_columnsFor = 0;               // points of a trace
    std::deque<QVector<double>> m_waiting; // not drawn yet
    QVector<double> m_last;                // the newest block
};
