#pragma once

#include "plot/Scale.h"

#include <QRect>
#include <QString>

/// The level axis of a spectrum chart: a reference level at its top and a number of decibels for
/// each of its Divisions.
///
/// The scale of a new chart is 10 dB per division below 10 dB, which is everything that a card can
/// send. It needs no widget.
class ChartScale
{
public:
    static constexpr int Divisions = 13;                ///< Of the axis, at every scale.
    static constexpr int DefaultReference = 10;         ///< Top of the axis of a new chart, in dB.
    static constexpr int DefaultPerDivision = 10;       ///< Of a new chart, in dB.
    static constexpr int LowestReference = -110;        ///< The lowest top of an axis, in dB.
    static constexpr int HighestReference = 30;         ///< The highest top of an axis, in dB.
    static constexpr int PerDivision[] = {1, 2, 5, 10}; ///< What there is to choose from, in dB.

    /// Sets both. The reference is rounded to a whole number of decibels and kept between
    /// LowestReference and HighestReference; one that is not a number, or a step that is not one of
    /// PerDivision, changes nothing.
    /// \param reference top of the axis in dB.
    /// \param perDivision in dB.
    /// \return whether the scale has changed.
    bool set(double reference, int perDivision);

    /// \return the finest scale that shows both levels: the peak between a half and one and a half
    /// divisions below the top, which is at most DefaultReference, and the floor at least one and a
    /// half divisions above the bottom where the scale has room for that. The reference is a
    /// multiple of the decibels per division.
    /// \param floor, peak in dB, finite, of a card.
    static ChartScale fitted(double floor, double peak);

    /// \return the top of the axis in dB.
    int reference() const { return m_reference; }
    /// \return the decibels of a division.
    int perDivision() const { return m_perDivision; }
    /// \return the bottom of the axis in dB.
    int lowest() const { return m_reference - Divisions * m_perDivision; }
    /// \return whether this is the scale of a new chart.
    bool isDefault() const { return *this == ChartScale(); }

    /// \return the distance of two ticks in dB that leaves room between their texts.
    /// \param height of the chart in pixels.
    int tickStep(int height) const;
    /// \return the scale from dB to the rows of \a plot.
    Scale rows(const QRect& plot) const;
    /// \return what the chart says about a scale that is not the default, "Ref -20 dB 5 dB/div";
    /// empty for the default.
    QString text() const;

    /// Whether two scales are the same.
    friend bool operator==(const ChartScale& one, const ChartScale& other)
    {
        return one.m_reference == other.m_reference && one.m_perDivision == other.m_perDivision;
    }
    /// Whether two scales differ.
    friend bool operator!=(const ChartScale& one, const ChartScale& other)
    {
        return !(one == other);
    }

private:
    int m_reference = DefaultReference;
    int m_perDivision = DefaultPerDivision;
};
