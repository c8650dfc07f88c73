#pragma once

#include <QByteArray>
#include <QString>

/// The link mode: how several tuners and demodulators of the unit are operated as one.
///
/// It is kept over restarts in the settings of organisation "TORVA", application "QN740KB", under
/// the key "Slave"; any QSettings of these names reads it.
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

/// \return the stored mode; 0 when there is none, when it is not a number, or when the settings
/// cannot be read or are damaged.
int stored();

/// Stores the mode; it is on the disk when the call returns. After a power cut during the call the
/// next start finds the old mode or this one. A failure is not reported, and the old mode stays.
void store(int mode);

/// \return a settings file with the mode in it, whose other entries are those of \a settings;
/// damaged lines are left out.
QByteArray withMode(const QByteArray& settings, int mode);

} // namespace linkMode
