#pragma once

#include "sim/line/Chance.h"
#include "sim/line/FaultTable.h"

#include <QByteArray>
#include <QList>

// Spoils what a scope port sends, at the rates of a table. Seeded: the same seed spoils the same
// bytes.
//
//     scope-index     a block has a wrong index
//     scope-loss      one byte of a block or record is lost
//     scope-noise     up to 400 random bytes come in the middle of it
//     scope-silence   nothing comes for two seconds from here on
class ScopeFaults
{
public:
    static constexpr int MaxBurst = 400;
    static constexpr qint64 SilenceMs = 2000;

    // No faults at all.
    ScopeFaults() = default;
    ScopeFaults(const FaultTable& rates, quint32 seed);

    // The names that a table needs to know.
    static QList<FaultTable::Fault> names();

    // In: what the port would send next, a block or a record; the time in ms since it began. Out:
    // what it sends.
    QByteArray pass(QByteArray bytes, qint64 ms);

private:
    double m_index = 0.0;
    double m_loss = 0.0;
    double m_noise = 0.0;
    double m_silence = 0.0;
    qint64 m_silentUntil = 0;
    Chance m_chance;
};
