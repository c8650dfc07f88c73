#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

/// Relative luminance and contrast ratio as the Web Content Accessibility Guidelines (WCAG) 2
/// define them, with the exact break of the sRGB curve (IEC 61966-2-1) instead of the rounded
/// 0.03928.
namespace contrast {

constexpr double Text = 4.5;    ///< The minimum for text in WCAG 2, success criterion 1.4.3.
constexpr double Outline = 3.0; ///< The minimum for outlines and symbols in criterion 1.4.11.

inline double linear(double part)
{
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

inline double luminance(const QColor& color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
        0.0722 * linear(color.blueF());
}

/// \return from 1 for equal colours to 21 for white and black
inline double ratio(const QColor& one, const QColor& other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

} // namespace contrast
