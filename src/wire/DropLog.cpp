#include "wire/DropLog.h"

#include <QDeadlineTimer>

DropLog::DropLog(Category category, const QString& text)
    : m_category(category)
    , m_text(text)
{
}

void DropLog::add()
{
    add(QDeadlineTimer::current().deadline());
}

void DropLog::add(qint64 nowMs)
{
    ++m_count;
    if (m_loggedMs >= 0 && nowMs - m_loggedMs < IntervalMs) {
        return;
    }
    m_loggedMs = nowMs;
    const QString times = m_count > 1 ? QStringLiteral(" (%1 times)").arg(m_count) : QString();
    qCWarning(m_category).noquote() << m_text + times;
    m_count = 0;
}
