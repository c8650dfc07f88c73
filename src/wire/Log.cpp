#include "wire/Log.h"

#include "wire/Message.h"

Q_LOGGING_CATEGORY(logLink, "qn740.link", QtWarningMsg)
Q_LOGGING_CATEGORY(logMenus, "qn740.menus", QtWarningMsg)
Q_LOGGING_CATEGORY(logPopups, "qn740.popups", QtWarningMsg)
Q_LOGGING_CATEGORY(logScopes, "qn740.scopes", QtWarningMsg)
Q_LOGGING_CATEGORY(logSpectrum, "qn740.spectrum", QtWarningMsg)

namespace wire {

void logIgnored(const QLoggingCategory& category, QLatin1String word, const QString& reason)
{
    if (category.isDebugEnabled()) {
        logIgnored(category, QString(word) + QLatin1String(": ") + toPrintable(reason));
    }
}

void logIgnored(const QLoggingCategory& category, const QString& text)
{
    if (category.isDebugEnabled()) {
        QMessageLogger(nullptr, 0, nullptr, category.categoryName()).debug().noquote() << text;
    }
}

} // namespace wire
