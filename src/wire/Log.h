#pragma once

#include <QLoggingCategory>
#include <QString>

/// One logging category for each room, silent below warning unless QT_LOGGING_RULES says otherwise.
///@{
Q_DECLARE_LOGGING_CATEGORY(logLink)
Q_DECLARE_LOGGING_CATEGORY(logMenus)
Q_DECLARE_LOGGING_CATEGORY(logPopups)
Q_DECLARE_LOGGING_CATEGORY(logScopes)
Q_DECLARE_LOGGING_CATEGORY(logSpectrum)
///@}

namespace wire {

/// Logs, at debug level, that a message of the main unit was ignored: "SK: no menu Nowhere".
/// \param category the room's: `logMenus()`
/// \param word the command word
/// \param reason may hold text from the line; it is made printable
void logIgnored(const QLoggingCategory& category, QLatin1String word, const QString& reason);

/// The same with a finished text. \param text printable
void logIgnored(const QLoggingCategory& category, const QString& text);

} // namespace wire
