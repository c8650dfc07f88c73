#pragma once

#include "sim/menus/PanelMenus.h"

#include <QSize>
#include <QString>

/// Whether the panel can draw the whole label of a key. The simulator has no window system, so the
/// widths of the letters and the sizes of the keys stand in tables here; the tests hold them
/// against the panel's own.
namespace labelRoom {

/// Pixels from one line of text to the next at 12 px, the smallest size in which a label is drawn.
constexpr int LineHeight = 14;

/// \return the width of a letter at 12 px, in 64ths of a pixel. \param letter Latin-1
int letterWidth(QChar letter);

/// \return the size of a key in pixels.
/// \param kind    of the menu that it is on
/// \param group   where it stands there
/// \param options how many keys the menu's row "Options" has
QSize keySize(PanelMenu::Kind kind, KeyGroup group, int options);

/// \return whether a label can be drawn whole at 12 px, if need be broken anywhere.
/// \param key      the size of the key, in pixels
/// \param hasMarks whether its upper corners are kept free, as on a toggle key
bool fits(const QString& label, const QSize& key, bool hasMarks);

} // namespace labelRoom
