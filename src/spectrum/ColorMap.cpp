#include "spectrum/ColorMap.h"

#include <QPointF>

#include <algorithm>
#include <cmath>

namespace {

// The curve in the plane of a* and b*: a quadratic Bézier curve from violet to yellow, drawn
// towards green.
constexpr QPointF Start(30.0, -45.0);
constexpr QPointF Pull(-70.0, 0.0);
constexpr QPointF End(-20.0, 80.0);
constexpr int Chords = 2048; // that stand for the curve

QPointF onCurve(double t)
{
    return (1 - t) * (1 - t) * Start + 2 * t * (1 - t) * Pull + t * t * End;
}

using Lengths = std::array<double, Chords + 1>;

// The length of the curve from its start to the end of each chord.
const Lengths& lengths()
{
    static const Lengths sums = [] {
        Lengths list{};
        for (size_t i = 1; i < list.size(); ++i) {
            const QPointF step = onCurve(static_cast<double>(i) / Chords) -
                onCurve(static_cast<double>(i - 1) / Chords);
            list[i] = list[i - 1] + std::hypot(step.x(), step.y());
        }
        return list;
    }();
    return sums;
}

// The point that lies this share of the curve's length behind its start.
QPointF atLength(double share)
{
    const Lengths& sums = lengths();
    const double length = share * sums.back();
    const auto above = std::lower_bound(sums.cbegin() + 1, sums.cend() - 1, length);
    const auto chord = static_cast<double>(above - sums.cbegin() - 1);
    const double part = (length - *(above - 1)) / (*above - *(above - 1));
    return onCurve((chord + part) / Chords);
}

// The inverse of CIELAB's compression.
double expanded(double value)
{
    constexpr double Break = 6.0 / 29.0;
    return value > Break ? value * value * value : 3 * Break * Break * (value - 4.0 / 29.0);
}

// The curve of sRGB.
double companded(double linear)
{
    return linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
}

} // namespace

colorMap::Lab colorMap::lab(double share)
{
    const double place = std::clamp(share, 0.0, 1.0);
    const QPointF hue = atLength(place);
    return {Darkest + (Lightest - Darkest) * place, hue.x(), hue.y()};
}

std::array<double, 3> colorMap::sRgb(const Lab& color)
{
    const double middle = (color.lightness + 16.0) / 116.0;
    // The white of D65 has X 0.95047, Y 1 and Z 1.08883.
    const double x = 0.95047 * expanded(middle + color.a / 500.0);
    const double y = expanded(middle);
    const double z = 1.08883 * expanded(middle - color.b / 200.0);
    return {companded(3.2406 * x - 1.5372 * y - 0.4986 * z),
        companded(-0.9689 * x + 1.8758 * y + 0.0415 * z),
        companded(0.0557 * x - 0.2040 * y + 1.0570 * z)};
}

const std::array<QRgb, colorMap::Count>& colorMap::table()
{
    static const std::array<QRgb, Count> colors = [] {
        std::array<QRgb, Count> list{};
        const auto byte = [](double part) {
            return static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * 255.0));
        };
        for (size_t i = 0; i < list.size(); ++i) {
            const auto parts = sRgb(lab(static_cast<double>(i) / (Count - 1)));
            list[i] = qRgb(byte(parts[0]), byte(parts[1]), byte(parts[2]));
        }
        return list;
    }();
    return colors;
}
