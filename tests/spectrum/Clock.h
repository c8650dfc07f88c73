#pragma once

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTimer>
#include <QTimerEvent>

// The test's hand on the clock: a timer's value is read, and its time passes at once.
namespace testClock {

using Timers = QList<QAbstractEventDispatcher::TimerInfo>;

inline Timers timers(QObject* object)
{
    return QAbstractEventDispatcher::instance()->registeredTimers(object);
}

// What the running timers are set to, in ms.
inline QList<int> intervals(QObject* object)
{
    QList<int> list;
    for (const auto& timer : timers(object)) {
        list += timer.interval;
    }
    return list;
}

// All timers that run for the object now run out.
inline void expire(QObject* object)
{
    const Timers running = timers(object);
    for (const auto& timer : running) {
        QTimerEvent event(timer.timerId);
        QCoreApplication::sendEvent(object, &event);
    }
}

} // namespace testClock
