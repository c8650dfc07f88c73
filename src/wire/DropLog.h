#pragma once

#include <QLoggingCategory>
#include <QString>

/// Logs that something was dropped because a limit is reached: a warning at once, then at most one
/// in a minute, with the number of what was dropped since the last.
///
/// There is no timer: what is dropped after the last warning is told with the next one.
class DropLog
{
public:
    /// The time between two warnings, in ms.
    static constexpr qint64 IntervalMs = 60'000;

    /// A logging category, as Q_DECLARE_LOGGING_CATEGORY declares it.
    using Category = const QLoggingCategory& (*)();

    /// \param text what is dropped and why: "there are 15000 keys: no more are made"
    DropLog(Category category, const QString& text);

    /// Notes that something was dropped.
    void add();

    /// The same at a given time. \param nowMs of a clock that never goes back
    void add(qint64 nowMs);

private:
    Category m_category;
    QString m_text;
    qint64 m_loggedMs = -1; // -1: not yet
    qint64 m_count = 0;     // since then
};
