#include "popups/NumberEntry.h"

#include "popups/EntryType.h"
#include "popups/NumberRanges.h"

#include <cmath>

namespace {

constexpr int StartBlanks = 6;
// Quirk: one more than at the start. See "Quirks" in docs/architecture.md.
constexpr int BlanksAfterError = 7;
constexpr int HexadecimalBase = 16;
constexpr double Ten = 10.0;
constexpr QChar Blank{u' '};
constexpr QChar Minus{u'-'};

// The error box shortens longer entries in the middle.
constexpr qsizetype MaxShown = 36;
constexpr qsizetype ShownEnd = 12;

QString blanks(int count)
{
    return QString(count, Blank);
}

int powerOfTen(int multiplier)
{
    return multiplier == NumberEntry::Thousand || multiplier == NumberEntry::Million ? multiplier
                                                                                     : 0;
}

// Reads a decimal number times a power of ten. A product of two binary numbers would miss bounds by
// a rounding error, so the power is written behind the digits and the text read once: 16.1 and 6
// give exactly 16100000.
double shiftedNumber(const QString& digits, int power, bool* isNumber)
{
    const QString end = power != 0 ? QLatin1Char('e') + QString::number(power) : QString();
    return (digits + end).toDouble(isNumber);
}

QString prefix(int multiplier)
{
    switch (multiplier) {
    case NumberEntry::Thousand:
        return QStringLiteral(" K");
    case NumberEntry::Million:
        return QStringLiteral(" M");
    default:
        return QStringLiteral(" ");
    }
}

} // namespace

NumberEntry::NumberEntry(int type)
    : m_type(type)
    , m_text(blanks(StartBlanks))
{
}

QString NumberEntry::display() const
{
    return m_type == entryType::Frequency ? m_text + QStringLiteral(" MHz ") : m_text;
}

void NumberEntry::append(const QString& characters)
{
    m_text += characters;
}

void NumberEntry::backspace()
{
    // Quirk: a negative entry cannot be shortened. See "Quirks" in docs/architecture.md.
    if (!negative() && m_text.size() > StartBlanks) {
        m_text.chop(1);
    }
}

void NumberEntry::minus()
{
    if (!negative()) {
        m_text = QStringLiteral("       -") + m_text.mid(m_text.count(Blank));
    }
}

void NumberEntry::plus()
{
    if (negative()) {
        m_text.remove(m_text.indexOf(Minus), 1);
    }
}

bool NumberEntry::clear()
{
    if (m_text == blanks(StartBlanks)) {
        return false;
    }
    m_text = blanks(StartBlanks);
    return true;
}

NumberEntry::Checked NumberEntry::check(const NumberRanges& ranges, int multiplier) const
{
    const QString typed = m_text.trimmed();
    bool isNumber = false;
    double value = 0.0;
    if (m_type == entryType::Hexadecimal) {
        value = static_cast<double>(typed.toULongLong(&isNumber, HexadecimalBase)) *
            std::pow(Ten, powerOfTen(multiplier));
    } else {
        value = shiftedNumber(typed, powerOfTen(multiplier), &isNumber);
    }
    if (!isNumber) {
        return {};
    }
    return {std::isfinite(value) && ranges.contains(value), value};
}

QString NumberEntry::errorText(int multiplier) const
{
    QString shown = m_text;
    if (shown.size() > MaxShown) {
        shown = shown.left(MaxShown - ShownEnd - 1) + QChar(0x2026) + shown.right(ShownEnd);
    }
    return QStringLiteral("<font size = 5>Invalid Entry %1 %2%3</font>")
        .arg(shown.toHtmlEscaped(), prefix(multiplier), entryType::unit(m_type));
}

QString NumberEntry::clearAfterError()
{
    m_text = blanks(BlanksAfterError);
    return m_text + entryType::unit(m_type);
}

bool NumberEntry::negative() const
{
    return m_text.toDouble() < 0.0; // what is not a number reads as 0
}
