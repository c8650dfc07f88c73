#pragma once

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTimer>
#include <QTimerEvent>

/// Lets a test read what the timers of an object are set to, and make them run out at once.
namespace testClock {

using Timers = QList<QAbstractEventDispatcher::TimerInfo>;

inline Timers timers(QObject* object)
{
    return QAbstractEventDispatcher::instance()->registeredTimers(object);
}

// The intervals of the running timers in ms.
inline QList<int> intervals(QObject* object)
{
    QList<int> list;
    for (const auto& timer : timers(object)) {
        list += timer.interval;
    }
    return list;
}

// Makes all timers that run for the object run out now.
inline void expire(QObject* object)
{
    const Timers running = timers(object);
    for (const auto& timer : running) {
        QTimerEvent event(timer.timerId);
        QCoreApplication::sendEvent(object, &event);
    }
}

} // namespace testClock
