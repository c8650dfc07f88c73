#pragma once

#include <QLoggingCategory>
#include <QString>

/// One logging category for each room, and one for the look from afar, silent below warning unless
/// QT_LOGGING_RULES says otherwise.
///@{
Q_DECLARE_LOGGING_CATEGORY(logLink)
Q_DECLARE_LOGGING_CATEGORY(logMenus)
Q_DECLARE_LOGGING_CATEGORY(logPopups)
Q_DECLARE_LOGGING_CATEGORY(logRemote)
Q_DECLARE_LOGGING_CATEGORY(logScopes)
Q_DECLARE_LOGGING_CATEGORY(logSpectrum)
///@}

/// Only why messages of the main unit were ignored, of all rooms: "qn740-ignored". Silent below
/// warning, too. When it is on, logIgnored() logs here, not in the category of the room. Its name
/// does not begin with "qn740.", so that "qn740.*.debug=true" leaves each room its own messages.
Q_DECLARE_LOGGING_CATEGORY(logIgnoredMessages)

namespace wire {

/// Logs, at debug level, that a message of the main unit was ignored: "SK: no menu Nowhere".
/// \param category the room's: `logMenus()`
/// \param word the command word
/// \param reason may hold text from the line; it is made printable
void logIgnored(const QLoggingCategory& category, QLatin1String word, const QString& reason);

/// The same with a finished text. \param text printable
void logIgnored(const QLoggingCategory& category, const QString& text);

/// Whether logIgnored() would log anything: the category is on at debug level, or
/// logIgnoredMessages() is.
bool logsIgnored(const QLoggingCategory& category);

} // namespace wire
