#pragma once

#include <QColor>
#include <QRect>
#include <QString>

class QPainter;

/// How a display shows that its picture is old: dimmed, with "NO DATA" over it.
namespace noData {

constexpr QColor Text(0xff, 0xd0, 0x00); ///< The letters.
constexpr QColor Ground(0, 0, 0);        ///< Behind the letters.
constexpr int LargestPixels = 24;        ///< Height of the letters where there is room.
constexpr int SmallestPixels = 14;       ///< Height of the letters in a narrow picture.

/// \return "NO DATA".
QString text();

/// \return \a color as it looks when it is dimmed over black.
QColor dimmed(const QColor& color);

/// Dims what was painted in \a area.
void dim(QPainter& painter, const QRect& area);

/// Dims the picture in \a area and writes text() in its middle.
void paint(QPainter& painter, const QRect& area);

} // namespace noData
