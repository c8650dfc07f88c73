#pragma once

#include "sim/line/Chance.h"

#include <QObject>
#include <QString>
#include <QTimer>

class UnitState;

// The combiner's measurement of its two channels, which the unit tells while a scope is on: twice a
// second "PM" with the phase difference, which wanders, and the two magnitudes, which are near
// nothing where a tuner receives nothing. Seeded.
class CombinerMeter : public QObject
{
    Q_OBJECT

public:
    static constexpr int PeriodMs = 500;

    // state: must live longer than this.
    CombinerMeter(const UnitState& state, quint32 seed, QObject* parent = nullptr);

    // Out: the next measurement, "PM,0.25,70,68": the phase 0 to 1 (of the eight steps of the
    // panel's scale), the magnitudes 0 to 100.
    QString next();

signals:
    void tells(QString body);

private:
    int magnitude(int receiver);

    const UnitState& m_state;
    Chance m_chance;
    QTimer m_timer;
    int m_phase = 40; // percent
};
