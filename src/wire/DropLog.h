#pragma once

#include <QLoggingCategory>
#include <QString>

#include <memory>

class QTimer;

/// Logs that something was dropped because a limit is reached: a warning at once, then at most one
/// in a minute, with the number of what was dropped since the last.
///
/// Nothing stays unsaid: what is dropped within the minute is logged at its end by a timer, which
/// runs only then, or when this is destroyed. Without an event loop, and after the application has
/// ended, it is logged with what is dropped next.
class DropLog
{
public:
    /// The time between two warnings, in ms.
    static constexpr qint64 IntervalMs = 60'000;

    /// A logging category, as Q_DECLARE_LOGGING_CATEGORY declares it.
    using Category = const QLoggingCategory& (*)();

    /// \param text what is dropped and why: "there are 15000 keys: no more are made"
    /// \param intervalMs the time between two warnings
    DropLog(Category category, const QString& text, qint64 intervalMs = IntervalMs);
    ~DropLog();

    DropLog(const DropLog&) = delete;
    DropLog& operator=(const DropLog&) = delete;

    /// Notes that something was dropped.
    void add();

    /// The same at a given time. \param nowMs of a clock that never goes back
    void add(qint64 nowMs);

private:
    void log(qint64 nowMs);
    void logAfter(qint64 ms);

    Category m_category;
    QString m_text;
    qint64 m_intervalMs;
    qint64 m_loggedMs = -1;          // -1: not yet
    qint64 m_count = 0;              // since then
    std::unique_ptr<QTimer> m_timer; // once something waited for the end of the minute
};
