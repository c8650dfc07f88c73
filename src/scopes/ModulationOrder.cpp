#include "scopes/ModulationOrder.h"

#include <array>

namespace {

using Points = std::vector<std::complex<double>>;

constexpr double Pi = 3.14159265358979323846;

Points ring(int count, double firstTurn)
{
    Points points;
    for (int k = 0; k < count; ++k) {
        points.push_back(std::polar(1.0, 2.0 * Pi * (firstTurn + static_cast<double>(k) / count)));
    }
    return points;
}

Points square()
{
    Points points;
    for (const int i : {-3, -1, 1, 3}) {
        for (const int q : {-3, -1, 1, 3}) {
            points.push_back(std::complex<double>(i, q) / std::sqrt(10.0));
        }
    }
    return points;
}

} // namespace

QString modulationOrder::name(ModulationOrder order)
{
    switch (order) {
    case ModulationOrder::Bpsk:
        return QStringLiteral("BPSK");
    case ModulationOrder::Qpsk:
        return QStringLiteral("QPSK");
    case ModulationOrder::Psk8:
        return QStringLiteral("8PSK");
    case ModulationOrder::Qam16:
        return QStringLiteral("16QAM");
    case ModulationOrder::Unknown:
        break;
    }
    return QStringLiteral("unknown");
}

const std::vector<std::complex<double>>& modulationOrder::points(ModulationOrder order)
{
    static const std::array<Points, 5> all{
        Points{}, ring(2, 0.0), ring(4, 0.125), ring(8, 0.0625), square()};
    return all.at(static_cast<size_t>(order));
}
