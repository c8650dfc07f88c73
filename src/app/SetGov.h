#pragma once

#include <QObject>

/// Sets the CPU frequency governor of the board.
class SetGov : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

public slots:
    /// Runs "cpufreq-set --governor performance" and waits for it, 1000 ms at most, in the calling
    /// thread. The outcome is not checked: a board without the program runs as it is.
    void changeGov();
};
