#include "wire/Log.h"

Q_LOGGING_CATEGORY(logLink, "qn740.link", QtWarningMsg)
Q_LOGGING_CATEGORY(logMenus, "qn740.menus", QtWarningMsg)
Q_LOGGING_CATEGORY(logPopups, "qn740.popups", QtWarningMsg)
Q_LOGGING_CATEGORY(logScopes, "qn740.scopes", QtWarningMsg)
Q_LOGGING_CATEGORY(logSpectrum, "qn740.spectrum", QtWarningMsg)
