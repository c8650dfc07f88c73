#include "wire/DropLog.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

namespace {

qint64 now()
{
    return QDeadlineTimer::current().deadline();
}

} // namespace

DropLog::DropLog(Category category, const QString& text, qint64 intervalMs)
    : m_category(category)
    , m_text(text)
    , m_intervalMs(intervalMs)
{
}

// A static one outlives the application, and then perhaps its category.
DropLog::~DropLog()
{
    if (m_count > 0 && QCoreApplication::instance() != nullptr) {
        log(now());
    }
}

void DropLog::add()
{
    add(now());
}

void DropLog::add(qint64 nowMs)
{
    ++m_count;
    if (m_loggedMs >= 0 && nowMs - m_loggedMs < m_intervalMs) {
        logAfter(m_loggedMs + m_intervalMs - nowMs);
    } else {
        log(nowMs);
    }
}

void DropLog::log(qint64 nowMs)
{
    if (m_timer != nullptr) {
        m_timer->stop();
    }
    m_loggedMs = nowMs;
    const QString times = m_count > 1 ? QStringLiteral(" (%1 times)").arg(m_count) : QString();
    m_count = 0;
    qCWarning(m_category).noquote() << m_text + times;
}

void DropLog::logAfter(qint64 ms)
{
    if (QAbstractEventDispatcher::instance() == nullptr) {
        return;
    }
    if (m_timer == nullptr) {
        m_timer = std::make_unique<QTimer>();
        m_timer->setSingleShot(true);
        m_timer->setTimerType(Qt::PreciseTimer); // a coarse one may end before the minute
        m_timer->callOnTimeout(m_timer.get(), [this] { log(now()); });
    }
    if (!m_timer->isActive()) {
        m_timer->start(std::chrono::milliseconds(ms));
    }
}
