#pragma once

#include "tools/try/Finger.h"

#include <QString>

/// What the operator does in a modal editor. Each function does all touches but the last, which
/// closes the editor: it answers where that one goes, or why there is none.
namespace editors {

/// Types into the number pad, the address pad or the keyboard that is open. \param entry its
/// characters; a "-" in front is pressed at the end \param unit the key that confirms; empty for
/// "Enter" or "RETURN"
finger::Target type(const QString& entry, const QString& unit);

/// Takes an item of the list that is open, and scrolls to it if need be.
finger::Target choose(const QString& pattern);

/// Drags the slider that is open to a value. The finger is still down then.
finger::Target slide(int value);

} // namespace editors
