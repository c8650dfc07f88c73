#include "wire/Log.h"

#include "wire/Message.h"

Q_LOGGING_CATEGORY(logLink, "qn740.link", QtWarningMsg)
Q_LOGGING_CATEGORY(logMenus, "qn740.menus", QtWarningMsg)
Q_LOGGING_CATEGORY(logPopups, "qn740.popups", QtWarningMsg)
Q_LOGGING_CATEGORY(logRemote, "qn740.remote", QtWarningMsg)
Q_LOGGING_CATEGORY(logScopes, "qn740.scopes", QtWarningMsg)
Q_LOGGING_CATEGORY(logSpectrum, "qn740.spectrum", QtWarningMsg)
Q_LOGGING_CATEGORY(logIgnoredMessages, "qn740-ignored", QtWarningMsg)

namespace wire {

void logIgnored(const QLoggingCategory& category, QLatin1String word, const QString& reason)
{
    if (logsIgnored(category)) {
        logIgnored(category, QString(word) + QLatin1String(": ") + toPrintable(reason));
    }
}

void logIgnored(const QLoggingCategory& category, const QString& text)
{
    if (logsIgnored(category)) {
        const QLoggingCategory& used =
            logIgnoredMessages().isDebugEnabled() ? logIgnoredMessages() : category;
        QMessageLogger(nullptr, 0, nullptr, used.categoryName()).debug().noquote() << text;
    }
}

bool logsIgnored(const QLoggingCategory& category)
{
    return logIgnoredMessages().isDebugEnabled() || category.isDebugEnabled();
}

} // namespace wire
