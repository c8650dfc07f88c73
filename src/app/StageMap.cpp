#include "app/StageMap.h"

namespace {

// Turns the plane so that a screen of this size, as the operator sees it, covers the real one.
QTransform turned(const QSize& screen, int rotation)
{
    switch (rotation) {
    case 90:
        return {0, 1, -1, 0, double(screen.width()), 0};
    case 180:
        return {-1, 0, 0, -1, double(screen.width()), double(screen.height())};
    case 270:
        return {0, -1, 1, 0, 0, double(screen.height())};
    default:
        return {};
    }
}

} // namespace

StageMap::StageMap(const QSize& screen, const QSize& panel, int rotation)
{
    const QSize seen = rotation % 180 == 0 ? screen : screen.transposed();
    const QSize rest = (seen - panel).expandedTo(QSize(0, 0));
    const QPoint corner(rest.width() / 2, rest.height() / 2);
    m_toScreen = QTransform::fromTranslate(corner.x(), corner.y()) * turned(screen, rotation);
}

QPointF StageMap::toPanel(const QPointF& screenPixel) const
{
    // A pixel's own coordinates are those of its corner, and another corner comes first when the
    // picture is turned: the middle is the same.
    constexpr QPointF Middle(0.5, 0.5);
    return m_toScreen.inverted().map(screenPixel + Middle) - Middle;
}
