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
/// \return the colour of a key that is on where the panel's own keys are not menu keys, as a sheet
/// writes it: black text has a contrast of 4.9 on it, of 4.1 only on the green of toggled().
QString onFace();
/// \return the sheet of such a key that is on, with 16 px: enabled() with the face onFace().
QString on();
/// \return the sheet of a key that cannot be pressed: dark grey.
QString disabled(bool largeFont);

/// Paints the face and the border of disabled(), for a button whose sheet is another one.
/// \param button the button's outline
void paintDisabledFace(QPainter& painter, const QRect& button);

/// \return the sheet of the "More..." key of a menu page.
QString more();

} // namespace keyStyle
