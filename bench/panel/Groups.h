#pragma once

#include <QByteArray>

/// The groups of rows that bench_Panel measures: each function measures and prints the rows of its
/// group. Everything goes through the panel's window and its line, so that other versions of the
/// panel can be measured by the same code.
namespace groups {

void define();  ///< "AK" bytes to defined keys, beside bare buttons.
void changes(); ///< "CV" and "CK" for keys on a hidden page.
void fader();   ///< "CV" for 36 shown keys.
void press();   ///< A key press to its bytes on the line.
void editors(); ///< Every editor to its first painted frame.
void pages();   ///< Page switches.

/// Prints the resident memory that \a count keys take. \a side "ours" or "peer"
void memory(const QByteArray& side, int count);

} // namespace groups
