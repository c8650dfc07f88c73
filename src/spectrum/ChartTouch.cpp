#include "spectrum/ChartTouch.h"

#include "touch/Sizes.h"

#include <algorithm>
#include <cmath>

namespace {

bool isNear(QPointF one, QPointF other, double pixels)
{
    return std::hypot(one.x() - other.x(), one.y() - other.y()) <= pixels;
}

// The marker that a finger in this column means; number 0 for none.
ChartTouch::Target meant(double x, const QVector<ChartTouch::Target>& markers)
{
    ChartTouch::Target found;
    double nearest = ChartTouch::Reach;
    for (const ChartTouch::Target& marker : markers) {
        const double away = std::abs(marker.x - x);
        if (away <= ChartTouch::Reach && marker.active) {
            return marker;
        }
        if (away <= nearest) {
            nearest = away;
            found = marker;
        }
    }
    return found;
}

} // namespace

ChartTouch::Layout ChartTouch::layout(
    const ChartGeometry& geometry, int titleWidth, const ChartMarkers& markers, double centre)
{
    Layout layout{geometry.plot, geometry.plot.left() + titleWidth, {}};
    for (const ChartMarkers::Marker& marker : markers.all()) {
        layout.markers += {marker.number, geometry.columns.pixel(centre + marker.offset),
            marker.number == markers.active()};
    }
    return layout;
}

ChartMarkers ChartTouch::applied(const Action& action, const ChartMarkers& markers, double offset)
{
    switch (action.kind) {
    case Kind::Select:
        return markers.activated(action.number);
    case Kind::Drag:
        return markers.activated(action.number).moved(offset);
    case Kind::Tap:
        return markers.with(offset);
    case Kind::Nothing:
    case Kind::Title:
        break;
    }
    return markers;
}

bool ChartTouch::isTitle(QPoint at, const Layout& layout)
{
    const QRect& plot = layout.plot;
    if (at.y() < plot.top()) {
        return true;
    }
    const int end = std::min(touch::MinTarget, plot.top() + plot.height() / 4);
    return at.y() < end && at.x() >= plot.left() && at.x() < layout.titleEnd;
}

ChartTouch::Action ChartTouch::press(QPointF at, const Layout& layout)
{
    m_layout = layout;
    m_from = at;
    m_held = {};
    const bool inPlot = layout.plot.contains(at.toPoint()) && layout.plot.width() > 1;
    if (inPlot) {
        m_held = meant(at.x(), layout.markers);
    }
    if (m_held.number > 0) {
        m_state = State::OnMarker;
        return {Kind::Select, m_held.number, m_held.x};
    }
    m_state = isTitle(at.toPoint(), layout) ? State::OnTitle : inPlot ? State::OnPlot : State::Up;
    return {};
}

ChartTouch::Action ChartTouch::move(QPointF at)
{
    if (m_state == State::OnMarker && std::abs(at.x() - m_from.x()) >= DragStart) {
        m_state = State::Dragging;
    }
    return m_state == State::Dragging ? drag(at) : Action();
}

ChartTouch::Action ChartTouch::release(QPointF at)
{
    const State state = m_state;
    m_state = State::Up;
    const bool still = isNear(at, m_from, Reach);
    if (state == State::OnMarker && std::abs(at.x() - m_from.x()) >= DragStart) {
        return drag(at); // A release may come without a move before it.
    }
    if (state == State::Dragging) {
        return drag(at);
    }
    if (state == State::OnTitle && still) {
        return {Kind::Title, 0, 0.0};
    }
    if (state == State::OnPlot && still && m_layout.plot.contains(at.toPoint())) {
        return {Kind::Tap, 0, at.x()};
    }
    return {};
}

// The marker keeps its distance from the finger and stays in the plot.
ChartTouch::Action ChartTouch::drag(QPointF at) const
{
    const double x = m_held.x + at.x() - m_from.x();
    return {Kind::Drag, m_held.number,
        std::clamp<double>(x, m_layout.plot.left(), m_layout.plot.right())};
}
