#pragma once

#include <QRect>
#include <QString>

class QPainter;

/// The style sheets of menu keys, one for each state and font size.
///
/// Quirk: the texts differ in small ways between the sizes. See "Quirks" in docs/architecture.md.
namespace keyStyle {

/// \return the sheet of a key that can be pressed: grey. \a largeFont: 22 px (PAX main menu)
/// instead of 16 px.
QString enabled(bool largeFont);
/// \return the sheet of a toggle key that is on: green.
QString toggled(bool largeFont);
/// \return the sheet of a key that cannot be pressed: dark grey.
QString disabled(bool largeFont);

/// Paints the face and the border of disabled(), for a button whose sheet is another one.
/// \param button the button's outline
void paintDisabledFace(QPainter& painter, const QRect& button);

/// \return the sheet of the "More..." key of a menu page.
QString more();

} // namespace keyStyle
