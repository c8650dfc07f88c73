#include "popups/NumberRanges.h"

#include "popups/EntryType.h"
#include "popups/Limits.h"
#include "wire/Log.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {

constexpr double Kilo = 1000.0;
constexpr double Mega = 1000000.0;
constexpr int RangesPerLine = 3;
constexpr int Indent = 26;
constexpr int GeneralDigits = 6;

// QString reads "nan" as a number, but nothing lies within a bound that is NaN.
double bound(const QString& text)
{
    const double value = text.toDouble();
    return std::isnan(value) ? 0.0 : value;
}

QString scaled(double value, const QString& mega, const QString& kilo, const QString& plain)
{
    if (value >= Mega) {
        return QString::number(value / Mega, 'f', 1) + mega;
    }
    if (value >= Kilo) {
        return QString::number(value / Kilo, 'f', 1) + kilo;
    }
    return QString::number(value, 'f', 1) + plain;
}

QString magnitudeText(double value, int type)
{
    switch (type) {
    case entryType::Frequency:
        return QString::number(value, 'f', value < 1.0 ? 0 : 1);
    case entryType::BitRate:
        return scaled(
            value, QStringLiteral(" Mbps"), QStringLiteral(" Kbps"), QStringLiteral(" bps"));
    case entryType::Hertz:
        return scaled(value, QStringLiteral(" MHz"), QStringLiteral(" KHz"), QStringLiteral(" Hz"));
    case entryType::Hexadecimal:
        return entryType::toHexadecimal(value);
    default:
        return QString::number(value, 'g', GeneralDigits);
    }
}

QString boundText(double value, int type)
{
    const QString magnitude = magnitudeText(std::fabs(value), type);
    return value < 0.0 ? QLatin1Char('-') + magnitude : magnitude;
}

} // namespace

NumberRanges::NumberRanges(const QString& text, int type)
    : m_type(type)
{
    for (const QString& item : text.split(QLatin1Char(':'))) {
        if (m_ranges.size() >= popUpLimits::MaxRanges) {
            qCDebug(logPopups) << "the ranges after" << popUpLimits::MaxRanges << "are left out";
            break;
        }
        const QStringList bounds = item.split(QLatin1Char(' '));
        if (bounds.size() >= 2) {
            m_ranges.append({bound(bounds.at(0)), bound(bounds.at(1))});
        }
    }
    std::stable_sort(m_ranges.begin(), m_ranges.end(),
        [](const Range& left, const Range& right) { return left.first < right.first; });
}

bool NumberRanges::contains(double value) const
{
    return std::any_of(m_ranges.cbegin(), m_ranges.cend(),
        [value](const Range& range) { return range.first <= value && value <= range.second; });
}

QString NumberRanges::padText() const
{
    QString text;
    for (qsizetype n = 0; n < m_ranges.size(); ++n) {
        if (n > 0 && n % RangesPerLine == 0) {
            text += QStringLiteral("\r\n") + QString(Indent, QLatin1Char(' '));
        } else if (n > 0) {
            text += QStringLiteral(", ");
        }
        text += rangeString(m_ranges.at(n), m_type);
    }
    return text;
}

QString NumberRanges::rangeLine(const QString& title) const
{
    switch (m_type) {
    case entryType::Pin:
        return title;
    case entryType::Frequency:
        return QStringLiteral("Valid Range(s)(MHz): %1")
            .arg(padText().replace(QLatin1Char('\n'), QStringLiteral("\n     ")));
    default:
        return QStringLiteral("Valid Range(s): %1").arg(padText());
    }
}

QString NumberRanges::errorText() const
{
    QStringList lines;
    for (const Range& range : m_ranges) {
        lines += rangeString(range, m_type);
    }
    return lines.join(QStringLiteral("\r\n"));
}

QString NumberRanges::rangeString(const Range& range, int type)
{
    const QString text =
        boundText(range.first, type) + QStringLiteral(" to ") + boundText(range.second, type);
    return type == entryType::Frequency ? QLatin1Char('(') + text + QLatin1Char(')') : text;
}
