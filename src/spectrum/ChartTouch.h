#pragma once

#include "spectrum/ChartGeometry.h"
#include "spectrum/ChartMarkers.h"

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QVector>

/// What a finger does on a spectrum chart: press, move and release become what is asked of the
/// chart.
///
/// A press within Reach columns of a marker takes hold of that marker: a move then drags it, a
/// release without a move only selects it. A press elsewhere in the plot is a tap when it is
/// released near the place where it began, and nothing otherwise: a drag that begins far from a
/// marker moves none. A press and release on the title is a touch on the title. It needs no widget.
class ChartTouch
{
public:
    static constexpr int Reach = 24;    ///< Pixels around a place that count as it: half a finger.
    static constexpr int DragStart = 8; ///< A finger that has moved less holds still, in pixels.

    /// A marker as the finger meets it.
    struct Target
    {
        int number = 0;      ///< Of the marker.
        double x = 0.0;      ///< Its column in pixels.
        bool active = false; ///< The active marker is preferred where several are near.
    };

    /// Where things are on the chart when the finger goes down.
    struct Layout
    {
        QRect plot;              ///< The plot.
        int titleEnd = 0;        ///< The column where the title ends.
        QVector<Target> markers; ///< The markers.
    };

    /// What is asked of the chart.
    enum class Kind {
        Nothing, ///< Nothing.
        Select,  ///< Make a marker the active one.
        Drag,    ///< Make a marker the active one and move it to a column.
        Tap,     ///< Set a marker at a column.
        Title,   ///< The title was touched.
    };

    /// What is asked of the chart, and where.
    struct Action
    {
        Kind kind = Kind::Nothing; ///< What.
        int number = 0;            ///< Which marker, for Select and Drag.
        double x = 0.0;            ///< At which column, inside the plot, for Drag and Tap.
    };

    /// \return where things are on a chart with these markers.
    /// \param titleWidth in pixels.
    /// \param centre of the chart in MHz.
    static Layout layout(
        const ChartGeometry& geometry, int titleWidth, const ChartMarkers& markers, double centre);
    /// \return what becomes of \a markers when \a action is carried out.
    /// \param offset what action.x is in MHz from the centre.
    static ChartMarkers applied(const Action& action, const ChartMarkers& markers, double offset);

    /// The finger goes down.
    /// \return Select when it takes hold of a marker.
    Action press(QPointF at, const Layout& layout);
    /// The finger moves.
    /// \return Drag when it drags a marker.
    Action move(QPointF at);
    /// The finger goes up.
    /// \return Tap, Title, or the end of a Drag.
    Action release(QPointF at);

    /// \return whether a touch here is one on the title: above the plot, or over the title's width
    /// so far below it that the target is a finger high, but never more than a quarter of the plot.
    static bool isTitle(QPoint at, const Layout& layout);

private:
    Action drag(QPointF at) const;

    enum class State {
        Up,       ///< No finger, or one that means nothing.
        OnTitle,  ///< It went down on the title.
        OnPlot,   ///< It went down in the plot, far from all markers.
        OnMarker, ///< It holds a marker and has not moved it.
        Dragging  ///< It drags the marker.
    };

    Layout m_layout; // when the finger went down
    QPointF m_from;  // where it went down
    Target m_held;   // the marker that it holds
    State m_state = State::Up;
};
