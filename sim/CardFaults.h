#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <random>

// Spoils a card's replies on request, seeded: the same seed spoils the same replies.
class CardFaults
{
public:
    enum Fault { NoReply, Late, Cut, Noise, WrongAddress, WrongLength, Count };
    static constexpr int DefaultPercent = 10;
    static constexpr int LateMs = 3000; // later than the panel waits for a spectrum

    // A reply as it leaves the card; empty bytes: none.
    struct Spoilt
    {
        QByteArray bytes;
        int delayMs = 0;
    };

    // percent: of the replies that have each fault, 0 to 100 together.
    explicit CardFaults(const std::array<int, Count>& percent = {}, quint32 seed = 1);

    // In: names separated by ",", each "no-reply", "late", "cut", "noise", "wrong-address" or
    // "wrong-length", with "=20" behind it for another share than 10 percent. Out: the shares; on a
    // fault `error` says why.
    static std::array<int, Count> fromText(const QString& text, QString& error);

    Spoilt pass(const QByteArray& reply);

    // How many replies have had this fault so far.
    int times(Fault fault) const { return m_times.at(fault); }

private:
    Spoilt spoil(QByteArray reply, Fault fault);

    std::array<int, Count> m_percent;
    std::array<int, Count> m_times{};
    std::mt19937 m_random;
};
