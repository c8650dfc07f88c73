#pragma once

#include <QString>

/// \return whether a text is what a pattern says: "*" stands for any characters, everything else
/// for itself. \param anywhere whether it is enough that a part of the text is
bool matches(const QString& pattern, const QString& text, bool anywhere = false);
