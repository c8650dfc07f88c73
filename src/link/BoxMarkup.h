#pragma once

#include <QString>

/// What the tags in the text of a message box may do.
///
/// Qt's rich text opens the files that a text names ("<img src>", "<table background>", "url()" in
/// a style), and a pipe or device among them would stop the panel for good. Tables inside tables
/// take time that doubles with each, and pictures that float take more than the square of their
/// number. So only tags and attributes that are known to do neither are taken as tags, and only so
/// many of them.
namespace boxMarkup {

constexpr int MaxTags = 200;  ///< in a text, line breaks ("<br>") not counted
constexpr int MaxTables = 2;  ///< of these, tables
constexpr int MaxCells = 100; ///< and rows and cells of tables together

/// \return whether Qt may show \a text as rich text: it has only harmless tags, and not too many.
bool isHarmless(const QString& text);

} // namespace boxMarkup
