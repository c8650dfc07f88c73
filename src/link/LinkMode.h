#pragma once

#include <QString>

/// The link mode: how several tuners and demodulators of the unit are operated as one.
namespace linkMode {

/// The modes, by the numbers under which they are sent and stored.
enum Mode {
    None = 0,              ///< each is operated alone
    Diversity = 1,         ///< all tuners and all demodulators as one
    FrequencyDiversity = 2 ///< all demodulators as one
};

/// \return whether the number is one of the three modes.
bool isKnown(int mode);

/// \return the text of the status bar: empty for None and for numbers that are no mode.
QString label(int mode);

/// \return an outgoing message with the demodulator prefixes ("D2:") and in Diversity the receiver
/// prefixes ("R1:") widened to all of them. Commands that concern one demodulator's display only
/// are never widened to the others. \param message with its frame characters
QString widened(const QString& message, int mode);

/// \return the stored mode, 0 when there is none or it is not a number.
int stored();

/// Stores the mode; it is on the disk when the call returns. A failure is not reported.
void store(int mode);

} // namespace linkMode
