#include "sim/CardFaults.h"

#include <QStringList>

#include <algorithm>
#include <numeric>

namespace {

constexpr int MostNoise = 100;

const QStringList& names()
{
    static const QStringList list{QStringLiteral("no-reply"), QStringLiteral("late"),
        QStringLiteral("cut"), QStringLiteral("noise"), QStringLiteral("wrong-address"),
        QStringLiteral("wrong-length")};
    return list;
}

} // namespace

CardFaults::CardFaults(const std::array<int, Count>& percent, quint32 seed)
    : m_percent(percent)
    , m_random(seed)
{
}

std::array<int, CardFaults::Count> CardFaults::fromText(const QString& text, QString& error)
{
    std::array<int, Count> percent{};
    const QStringList items = text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString& item : items) {
        const qsizetype fault = names().indexOf(item.section(QLatin1Char('='), 0, 0));
        bool ok = true;
        const int share = item.contains(QLatin1Char('='))
            ? item.section(QLatin1Char('='), 1).toInt(&ok)
            : DefaultPercent;
        if (fault < 0 || !ok || share < 0 || share > 100) {
            error = QStringLiteral("no fault of a card: \"%1\"").arg(item);
            return {};
        }
        percent.at(static_cast<size_t>(fault)) = share;
    }
    if (std::accumulate(percent.begin(), percent.end(), 0) > 100) {
        error = QStringLiteral("more than 100 percent of faults: \"%1\"").arg(text);
        return {};
    }
    return percent;
}

CardFaults::Spoilt CardFaults::pass(const QByteArray& reply)
{
    auto dice = static_cast<int>(m_random() % 100);
    for (size_t fault = 0; fault < Count; ++fault) {
        dice -= m_percent.at(fault);
        if (dice < 0) {
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
        return {reply.left(static_cast<qsizetype>(m_random()) % reply.size()), 0};
    case Noise: {
        QByteArray noise(1 + static_cast<qsizetype>(m_random()) % MostNoise, '\0');
        std::generate(noise.begin(), noise.end(), [this] { return static_cast<char>(m_random()); });
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
