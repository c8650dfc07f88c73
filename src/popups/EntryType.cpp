#include "popups/EntryType.h"

#include <cmath>
#include <limits>

namespace {

constexpr double Kilo = 1000.0;
constexpr double Mega = 1000000.0;
constexpr double Percent = 100.0;
constexpr double UnsignedEnd = 18446744073709551616.0; // 2^64
constexpr int HexadecimalBase = 16;

QString twoDecimals(double value)
{
    return QString::number(value, 'f', 2);
}

QString scaled(double value, const QString& mega, const QString& kilo, const QString& plain)
{
    if (value > Mega) {
        return twoDecimals(value / Mega) + mega;
    }
    if (value <= Kilo) {
        return twoDecimals(value) + plain;
    }
    return twoDecimals(value / Kilo) + kilo;
}

QString valueText(int type, double value)
{
    switch (type) {
    case entryType::BitRate:
        return scaled(
            value, QStringLiteral(" Mbps"), QStringLiteral(" kbps"), QStringLiteral(" bps"));
    case entryType::Hertz:
        return scaled(value, QStringLiteral(" MHz"), QStringLiteral(" KHz"), QStringLiteral(" Hz"));
    case entryType::Percentage:
        return twoDecimals(value * Percent) + QStringLiteral(" %");
    case entryType::Hexadecimal:
        return entryType::toHexadecimal(value);
    default:
        return twoDecimals(value);
    }
}

} // namespace

namespace entryType {

QString unit(int type)
{
    switch (type) {
    case Frequency:
        return QStringLiteral("MHz");
    case BitRate:
        return QStringLiteral("bps");
    case Hertz:
        return QStringLiteral("Hz");
    case Angle:
        return QStringLiteral("Rads");
    case Percentage:
        return QStringLiteral("%");
    default:
        return {};
    }
}

QString currentValueText(int type, float value)
{
    if (type == Pin) {
        return QStringLiteral("Enter PIN to unlock ");
    }
    const double current = static_cast<double>(value);
    if (type == Frequency) {
        return QStringLiteral("Current Value:\r\n") + QString::number(current, 'f', 1) +
            QStringLiteral(" MHz");
    }
    const QString sides = QStringLiteral("      ");
    return QStringLiteral("      Current Value: ") + valueText(type, current) + sides;
}

float toSingle(double value)
{
    constexpr double Largest = std::numeric_limits<float>::max();
    if (std::isnan(value)) {
        return std::numeric_limits<float>::quiet_NaN();
    }
    return static_cast<float>(qBound(-Largest, value, Largest));
}

QString toHexadecimal(double value)
{
    quint64 whole = 0;
    if (value >= UnsignedEnd) {
        whole = std::numeric_limits<quint64>::max();
    } else if (value > 0.0) {
        whole = static_cast<quint64>(value);
    }
    return QString::number(whole, HexadecimalBase).toUpper();
}

} // namespace entryType
