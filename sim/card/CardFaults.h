#pragma once

#include "sim/line/Chance.h"
#include "sim/line/FaultTable.h"

#include <QByteArray>
#include <QList>

#include <array>

/// Damages a card's replies at the rates of a table. A reply has one fault at most, the first of
/// those that are due. The same seed damages the same replies.
class CardFaults
{
public:
    /// What happens to a reply; Count is the number of faults.
    enum Fault { NoReply, Late, Cut, Noise, WrongAddress, WrongLength, Count };
    static constexpr int LateMs = 3000; ///< later than the panel waits for a spectrum

    /// A reply as it leaves the card.
    struct Spoilt
    {
        QByteArray bytes; ///< empty when there is no reply
        int delayMs = 0;  ///< how long the card waits before it
    };

    /// A card without faults.
    CardFaults() = default;
    /// Faults at the \a rates of a table.
    CardFaults(const FaultTable& rates, quint32 seed);

    /// \return the faults of this class in the order of Fault, for a table
    static QList<FaultTable::Fault> names();

    /// \return what the card sends for this reply
    Spoilt pass(const QByteArray& reply);

    /// \return how many replies have had this fault so far
    int times(Fault fault) const { return m_times.at(fault); }

private:
    Spoilt spoil(QByteArray reply, Fault fault);

    std::array<double, Count> m_rates{};
    std::array<int, Count> m_times{};
    Chance m_chance;
};
