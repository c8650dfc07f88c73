#pragma once

#include "sim/line/Chance.h"
#include "sim/line/FaultTable.h"

#include <QByteArray>
#include <QList>

#include <array>

// Spoils a card's replies at the rates of a table. A reply suffers one fault at most, the first of
// those that are due. Seeded: the same seed spoils the same replies.
class CardFaults
{
public:
    enum Fault { NoReply, Late, Cut, Noise, WrongAddress, WrongLength, Count };
    static constexpr int LateMs = 3000; // later than the panel waits for a spectrum

    // A reply as it leaves the card; empty bytes: none.
    struct Spoilt
    {
        QByteArray bytes;
        int delayMs = 0;
    };

    // No faults at all.
    CardFaults() = default;
    CardFaults(const FaultTable& rates, quint32 seed);

    // The names that a table needs to know, in the order of Fault.
    static QList<FaultTable::Fault> names();

    Spoilt pass(const QByteArray& reply);

    // How many replies have had this fault so far.
    int times(Fault fault) const { return m_times.at(fault); }

private:
    Spoilt spoil(QByteArray reply, Fault fault);

    std::array<double, Count> m_rates{};
    std::array<int, Count> m_times{};
    Chance m_chance;
};
