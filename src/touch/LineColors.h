#pragma once

#include <QColor>

/// The colours of the displays' lines, by the numbers under which the main unit knows them ("LC").
///
/// Scopes and charts take them from here, so that one number is one colour on both. All lines are
/// drawn on black. Each colour has a contrast of at least 4.5 : 1 to black, the ratio that the Web
/// Content Accessibility Guidelines (WCAG) 2, success criterion 1.4.3, ask for text. Pure red has
/// 5.25 : 1 and stays. Pure blue has 2.44 : 1, so 2 is a lighter blue with 6.93 : 1.
namespace lineColors {

/// The smallest contrast of a line to black, the ratio that WCAG 2, success criterion 1.4.11, asks
/// for symbols.
constexpr double MinContrast = 3.0;

/// The number of colours.
constexpr int Count = 8;

/// \param number 0 red, 1 green, 2 blue, 3 cyan, 4 magenta, 5 yellow, 6 white, 7 grey.
/// \return an invalid colour for any other number.
QColor color(int number);

/// \return a darker shade of a line's colour, for a second line of the same display: half as bright
/// where that keeps MinContrast, else as dark as MinContrast allows.
QColor darker(const QColor& color);

} // namespace lineColors
