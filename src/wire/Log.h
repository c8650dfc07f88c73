#pragma once

#include <QLoggingCategory>

// One category a room, silent below warning unless QT_LOGGING_RULES says otherwise.
Q_DECLARE_LOGGING_CATEGORY(logLink)
Q_DECLARE_LOGGING_CATEGORY(logMenus)
Q_DECLARE_LOGGING_CATEGORY(logPopups)
Q_DECLARE_LOGGING_CATEGORY(logScopes)
Q_DECLARE_LOGGING_CATEGORY(logSpectrum)
