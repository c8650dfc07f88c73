#pragma once

#include <QString>

// The looks of menu keys, one sheet for each state and font size. The texts differ in small ways
// between the sizes and stay so.
namespace keyStyle {

// largeFont: 22 px (PAX main menu) instead of 16 px.
QString enabled(bool largeFont); // grey
QString toggled(bool largeFont); // green: a toggle key that is on
QString disabled(bool largeFont);

// The "More..." key of a menu page.
QString more();

} // namespace keyStyle
