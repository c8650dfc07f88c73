#pragma once

#include "plot/Scale.h"
#include "wire/SpanTable.h"

#include <QVector>

/// The frequency axis of a spectrum: which part of the band its points cover.
///
/// It is set by a span of the table and a centre. From them follow the ticks, the frequency of each
/// point of a spectrum, and the scale to pixels. It needs no widget.
class FrequencyAxis
{
public:
    static constexpr double MaxMHz = 1e6; ///< The highest centre.

    /// Creates the axis of the narrowest span around the intermediate frequency, 70 MHz.
    FrequencyAxis();

    /// Sets width and ticks.
    void setSpan(const SpanInfo& span) { m_span = span; }
    /// \return the analysed width in MHz, a little more than the span's label says.
    double width() const { return m_span.spanMHz; }
    /// \return the width in MHz that the span's label says, from the first tick to the last; 0 for
    /// a span without ticks. A channel power is measured in it where the carrier's own width is not
    /// known.
    double nominalWidth() const;

    /// \return whether the axis can have this centre, in MHz.
    static bool canBeCentre(double frequency);

    /// Sets the centre and moves the ticks along.
    /// \param centre in MHz, finite, above 0 and at most MaxMHz; others are ignored.
    /// \return whether the axis has changed.
    bool setCentre(double centre);
    /// \return the frequency in the middle, in MHz.
    double centre() const { return m_centre; }

    /// \return the positions of the ticks in MHz.
    QVector<double> ticks() const;

    /// \return whether the frequency \a offset MHz away from the centre lies on the axis; false for
    /// NaN.
    bool covers(double offset) const;

    /// \return the frequency in MHz of point \a index of a spectrum of \a size points. The points
    /// are \a size bins that share the width: centre + (index - size / 2) * width / size.
    double frequencyAt(qsizetype index, qsizetype size) const;

    /// \return the frequency in MHz of a place between the points, as frequencyAt() of a fractional
    /// index; the centre when there are no points.
    double frequencyBetween(double index, qsizetype size) const;

    /// \return the width in MHz of one of \a size bins; 0 when there are none.
    double binWidth(qsizetype size) const;

    /// \return how many decimals a frequency in MHz needs so that the last one is at most a tenth
    /// of a bin of \a size, which is how well a peak is interpolated: 3 for a K7150, at most
    /// MaxDecimals. 3 when there are no points.
    int decimals(qsizetype size) const;
    static constexpr int MaxDecimals = 6; ///< Of a frequency in MHz: whole hertz.

    /// \return the index of the point nearest to \a frequency MHz in a spectrum of \a size points,
    /// 0 to size - 1; 0 when there are none.
    qsizetype indexAt(double frequency, qsizetype size) const;

    /// \return the scale from MHz to pixels between the columns \a left and \a right.
    Scale scale(int left, int right) const
    {
        return Scale::aroundMiddle(m_centre, width(), left, right);
    }

private:
    SpanInfo m_span;
    double m_centre = SpanCentreMHz;
};
