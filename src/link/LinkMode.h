#pragma once

#include <QString>

// The link mode: how several tuners and demodulators of the unit are operated as one.
namespace linkMode {

enum Mode { None = 0, Diversity = 1, FrequencyDiversity = 2 };

// Out: whether the number is one of the three modes.
bool isKnown(int mode);

// Out: the text of the status bar: empty for None and for numbers that are no mode.
QString label(int mode);

// In: an outgoing message with its frame characters. Out: the same with the demodulator prefixes
// ("D2:") and in Diversity the receiver prefixes ("R1:") widened to all of them; commands that
// concern one demodulator's display only are never widened to the others.
QString widened(const QString& message, int mode);

// The stored mode, 0 when there is none or it is no number.
int stored();

// Stores the mode; it is on the disk when the call returns. A failure is not reported.
void store(int mode);

} // namespace linkMode
