#include "touch/LineColors.h"

#include <array>
#include <cmath>

namespace {

constexpr int Half = 200;  // percent, as QColor::darker() counts
constexpr int Whole = 100; // percent

// The part of a channel in the light, by the sRGB curve (IEC 61966-2-1).
double linear(float part)
{
    const auto value = static_cast<double>(part);
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

// The contrast to black, as WCAG 2 defines it.
double contrast(const QColor& color)
{
    const double luminance = 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
        0.0722 * linear(color.blueF());
    return (luminance + 0.05) / 0.05;
}

} // namespace

QColor lineColors::color(int number)
{
    static constexpr std::array<QRgb, Count> Table{0xffff0000U, 0xff00ff00U, 0xff6090ffU,
        0xff00ffffU, 0xffff00ffU, 0xffffff00U, 0xffffffffU, 0xffa0a0a4U};
    if (number < 0 || number >= Count) {
        return {};
    }
    return QColor::fromRgb(Table[static_cast<size_t>(number)]);
}

QColor lineColors::darker(const QColor& color)
{
    int factor = Half;
    while (factor > Whole && contrast(color.darker(factor)) < MinContrast) {
        --factor;
    }
    return color.darker(factor);
}
