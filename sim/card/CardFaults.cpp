#include "sim/card/CardFaults.h"

#include <algorithm>

namespace {

constexpr int MaxNoise = 100;

} // namespace

CardFaults::CardFaults(const FaultTable& rates, quint32 seed)
    : m_chance(seed)
{
    const QList<FaultTable::Fault> known = names();
    for (qsizetype fault = 0; fault < known.size(); ++fault) {
        m_rates.at(static_cast<size_t>(fault)) = rates.rate(known.at(fault).name);
    }
}

QList<FaultTable::Fault> CardFaults::names()
{
    return {{QLatin1String("card-no-reply"), QLatin1String("a spectral card does not reply")},
        {QLatin1String("card-late"), QLatin1String("its reply comes 3 seconds late")},
        {QLatin1String("card-cut"), QLatin1String("its reply ends early")},
        {QLatin1String("card-noise"),
            QLatin1String("up to 100 random bytes come in front of its reply")},
        {QLatin1String("card-address"), QLatin1String("its reply has another card's address")},
        {QLatin1String("card-length"), QLatin1String("its spectrum has a wrong length in it")}};
}

CardFaults::Spoilt CardFaults::pass(const QByteArray& reply)
{
    for (size_t fault = 0; fault < Count; ++fault) {
        if (m_chance.happens(m_rates.at(fault))) {
            ++m_times.at(fault);
            return spoil(reply, static_cast<Fault>(fault));
        }
    }
    return {reply, 0};
}

CardFaults::Spoilt CardFaults::spoil(QByteArray reply, Fault fault)
{
    constexpr qsizetype AddressEnd = 3; // "[01" and then the card's number
    constexpr qsizetype LengthAt = 9;
    switch (fault) {
    case Late:
        return {reply, LateMs};
    case Cut:
        return {reply.left(m_chance.below(reply.size())), 0};
    case Noise: {
        QByteArray noise(1 + m_chance.below(MaxNoise), '\0');
        std::generate(
            noise.begin(), noise.end(), [this] { return static_cast<char>(m_chance.below(256)); });
        return {noise + reply, 0};
    }
    case WrongAddress:
        return {reply.replace(AddressEnd, 1, "8"), 0};
    case WrongLength:
        // of a text reply that is a byte of its data
        if (reply.size() > LengthAt) {
            reply.replace(LengthAt, 1, reply.at(LengthAt) == '9' ? "8" : "9");
        }
        return {reply, 0};
    default:
        return {};
    }
}
