#pragma once

#include <QRgb>

#include <array>

/// The colours of the waterfall: from dark violet for the lowest level through green to light
/// yellow for the highest one, in steps that look equally large.
///
/// They are computed in CIELAB (CIE 15:2004, D65), a space in which equal distances look about
/// equally large. The path climbs evenly in lightness L*, and at the same time runs at constant
/// speed along a curve in the plane of the colours (a*, b*), so that two neighbours always have the
/// same distance ΔE*ab. Since L* only climbs, the picture can also be read by somebody who does not
/// tell the hues apart. The last step, to the screen, is the inverse of sRGB (IEC 61966-2-1); the
/// curve is such that nothing has to be clipped.
namespace colorMap {

constexpr int Count = 256;        ///< The number of colours.
constexpr double Darkest = 12.0;  ///< L* of the first colour.
constexpr double Lightest = 93.0; ///< L* of the last colour.

/// A colour in CIELAB.
struct Lab
{
    double lightness = 0.0; ///< L*, 0 for black to 100 for white.
    double a = 0.0;         ///< a*, from green (below 0) to red.
    double b = 0.0;         ///< b*, from blue (below 0) to yellow.
};

/// \return the colour at a place of the path. \param share 0 for its start to 1 for its end; others
/// are taken as the nearest of the two.
Lab lab(double share);

/// \return the red, green and blue part of a colour in sRGB, 0 to 1 each where a screen can show
/// it.
std::array<double, 3> sRgb(const Lab& color);

/// \return all colours, that of the lowest level first.
const std::array<QRgb, Count>& table();

} // namespace colorMap
