#pragma once

#include "sim/line/Chance.h"

#include <QObject>
#include <QString>
#include <QTimer>

class UnitState;

/// The combiner's measurement of its two channels, which the unit sends while a scope is on.
///
/// Twice a second it makes a "PM" message with the phase difference, which wanders, and the two
/// magnitudes, which are near zero where a tuner receives nothing.
class CombinerMeter : public QObject
{
    Q_OBJECT

public:
    static constexpr int PeriodMs = 500; ///< from one measurement to the next

    /// \param state of the unit; must live longer than this
    CombinerMeter(const UnitState& state, quint32 seed, QObject* parent = nullptr);

    /// \return the next measurement, "PM,0.25,70,68": the phase, 0 to 1 (1 is the full scale of the
    /// panel), and the magnitudes, 0 to 100
    QString next();

signals:
    /// Emitted when the unit has to send this message.
    void tells(QString body);

private:
    int magnitude(int receiver);

    const UnitState& m_state;
    Chance m_chance;
    QTimer m_timer;
    int m_phase = 40; // percent
};
