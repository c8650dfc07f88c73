#pragma once

#include "spectrum/FrequencyAxis.h"

#include <QVector>

#include <array>
#include <optional>

/// The operator's markers of one chart: up to MaxCount, numbered from 1, one of them active.
///
/// A marker is kept as its distance from the centre, so that it stays where it is in the picture
/// when the centre moves. A marker keeps its number as long as it is there; a new one gets the
/// lowest free number. It needs no widget.
class ChartMarkers
{
public:
    static constexpr int MaxCount = 4; ///< The most markers of a chart.

    /// One marker.
    struct Marker
    {
        int number = 0;      ///< 1 to MaxCount.
        double offset = 0.0; ///< In MHz from the centre.
    };

    /// \return the markers that are set, by their numbers.
    QVector<Marker> all() const;
    /// \return how many markers are set.
    int count() const;
    /// \return the number of the active marker; 0 without markers.
    int active() const { return m_active; }
    /// \return the distance of the active marker from the centre in MHz; nothing without markers.
    std::optional<double> offset() const { return offset(m_active); }
    /// \return the distance of a marker from the centre in MHz; nothing when it is not set.
    std::optional<double> offset(int number) const;

    /// \return these markers and another one, which is active. When all are set, the active one is
    /// moved instead.
    /// \param offset in MHz from the centre.
    ChartMarkers with(double offset) const;
    /// \return these markers with the active one moved, or with marker 1 when there is none.
    /// \param offset in MHz from the centre.
    ChartMarkers moved(double offset) const;
    /// \return these markers with another one active; the same when it is not set.
    ChartMarkers activated(int number) const;
    /// \return these markers without one of them. When it was active, the one with the next lower
    /// number becomes active, or the lowest that is left.
    ChartMarkers without(int number) const;
    /// Removes the markers that do not lie on \a axis.
    void keepInside(const FrequencyAxis& axis);

    /// \return these markers, 2 to MaxCount read as their difference to marker 1, or not. Switched
    /// on while marker 1 is the only one, it sets marker 2 at the same place, which can then be
    /// moved away.
    ChartMarkers withDelta(bool on) const;
    /// \return whether differences are read.
    bool delta() const { return m_delta; }
    /// \return whether this marker is read as its difference to marker 1: the difference is asked
    /// for, and both are set.
    bool isRelative(int number) const;

    /// Whether two sets of markers are the same.
    friend bool operator==(const ChartMarkers& one, const ChartMarkers& other)
    {
        return one.m_offsets == other.m_offsets && one.m_active == other.m_active &&
            one.m_delta == other.m_delta;
    }
    /// Whether two sets of markers differ.
    friend bool operator!=(const ChartMarkers& one, const ChartMarkers& other)
    {
        return !(one == other);
    }

private:
    void activateNear(int number);
    std::optional<double>& place(int number) { return m_offsets[static_cast<size_t>(number) - 1]; }

    std::array<std::optional<double>, MaxCount> m_offsets; // by number - 1
    int m_active = 0;
    bool m_delta = false;
};
