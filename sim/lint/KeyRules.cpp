#include "sim/lint/KeyRules.h"

#include "sim/lint/ListRules.h"
#include "sim/menus/MenuFields.h"
#include "wire/Commands.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace lint {

namespace {

using namespace menuFields;

// Kinds of numbers that the check treats differently.
constexpr int SignedKind = 0;
constexpr int PercentKind = 5;
constexpr int SpecialKind = 6;
constexpr int PinKind = 7;
constexpr int LastKind = 8;

constexpr int MaxSteps = 20;
constexpr double LowestSlider = -2147483648.0;
constexpr double HighestSlider = 2147483647.0;
constexpr double Percent = 100.0;

struct Range
{
    double low;
    double high;
};

std::optional<double> number(const QString& text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    return ok && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

// Returns the range that an item means; nothing when the panel does not read it so. The panel reads
// what is in front of the second blank, and nothing behind it.
std::optional<Range> rangeOf(const QString& item)
{
    const QStringList bounds = item.split(QLatin1Char(' '));
    if (bounds.size() < 2) {
        return std::nullopt;
    }
    const auto first = number(bounds.at(0));
    const auto second = number(bounds.at(1));
    return first && second ? std::optional(Range{*first, *second}) : std::nullopt;
}

QString text(double value)
{
    return QString::number(value, 'g', 12);
}

// Whether something stands behind the two bounds of a range.
bool hasSurplus(const QString& item)
{
    return !item.section(QLatin1Char(' '), 2).trimmed().isEmpty();
}

// The ranges of a key: of a number as they stand there, of a slider the one that it has.
struct Ranges
{
    QList<Range> all;
    QStringList unreadable;
    QStringList withSurplus;
};

Ranges rangesOf(const QStringList& fields)
{
    Ranges ranges;
    const bool isSlider = fields.value(Type).toInt() == SliderKey;
    const QString units = fields.value(Units);
    const QStringList items = isSlider ? QStringList{units} : units.split(QLatin1Char(':'));
    for (const QString& item : items) {
        auto range = rangeOf(item);
        if (range && isSlider) {
            range = Range{std::min(range->low, range->high), std::max(range->low, range->high)};
        }
        if (range) {
            ranges.all.append(*range);
            if (hasSurplus(item)) {
                ranges.withSurplus.append(item);
            }
        } else if (!item.isEmpty()) {
            ranges.unreadable.append(item);
        }
    }
    return ranges;
}

// Whether a value is one that the key's editor could have given. Values that say nothing are.
bool isInside(const QStringList& fields, double value, const Ranges& ranges)
{
    const bool isNumber = fields.value(Type).toInt() == NumberKey;
    const int kind = fields.value(Param).toInt();
    if (isNumber && kind == PinKind) {
        return true;
    }
    if (isNumber && kind == SpecialKind &&
        number(fields.value(Options).section(QLatin1Char(' '), 0, 0)) == value) {
        return true;
    }
    const double typed = isNumber && kind == PercentKind ? value * Percent : value;
    // A fraction times 100 may miss a bound by its last digits.
    const double slack = isNumber && kind == PercentKind ? 1e-9 * std::fabs(typed) : 0.0;
    return ranges.all.isEmpty() ||
        std::any_of(ranges.all.begin(), ranges.all.end(), [&](const Range& range) {
            return range.low - slack <= typed && typed <= range.high + slack;
        });
}

void checkRanges(const QStringList& fields, const MenuPlace& place, Findings& findings)
{
    const bool isSlider = fields.value(Type).toInt() == SliderKey;
    const Ranges ranges = rangesOf(fields);
    if (ranges.all.isEmpty() && ranges.unreadable.isEmpty()) {
        findings.add("QN304", place,
            isSlider ? QStringLiteral("the slider has no range: it cannot move")
                     : QStringLiteral("the number has no range: every entry is out of range"),
            isSlider ? QStringLiteral("units are \"maximum minimum\"")
                     : QStringLiteral("units are \"low high\", or \"low high:low high\""));
        return;
    }
    for (const QString& item : ranges.unreadable.mid(0, 1)) {
        findings.add("QN305", place,
            QStringLiteral("the range \"%1\" is not two numbers with one blank between them")
                .arg(wire::excerpt(item)));
    }
    for (const QString& item : ranges.withSurplus.mid(0, 1)) {
        findings.add("QN312", place,
            QStringLiteral(
                "the panel reads the first two numbers of \"%1\", and nothing behind them")
                .arg(wire::excerpt(item)),
            QStringLiteral("a number's ranges are separated by \":\", and have no unit"));
    }
    for (const Range& range : ranges.all) {
        if (range.low > range.high) {
            findings.add("QN306", place,
                QStringLiteral("the range from %1 to %2 is reversed: nothing lies in it")
                    .arg(text(range.low), text(range.high)),
                QStringLiteral("the low bound comes first"));
            break;
        }
    }
}

void checkSteps(const QStringList& fields, double width, const MenuPlace& place, Findings& findings)
{
    const QStringList steps = fields.value(Options).split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (qsizetype i = 0; i < steps.size(); ++i) {
        const auto step = number(steps.at(i).trimmed());
        const bool isLost =
            !step || std::fabs(*step) < 1 || std::fabs(*step) > width || i >= MaxSteps;
        if (isLost || *step != std::floor(*step)) {
            findings.add("QN310", place,
                (isLost ? QStringLiteral("the step \"%1\" has no effect")
                        : QStringLiteral("the step \"%1\" loses its fraction"))
                    .arg(wire::excerpt(steps.at(i))),
                QStringLiteral("steps are up to %1 whole numbers from 1 to the width of the range")
                    .arg(MaxSteps));
            break;
        }
    }
}

void checkSlider(const QStringList& fields, const MenuPlace& place, Findings& findings)
{
    const auto range = rangeOf(fields.value(Units));
    if (!range) {
        return;
    }
    if (range->low < range->high) {
        findings.add("QN307", place,
            QStringLiteral("a slider's range is \"maximum minimum\", this is \"%1\"")
                .arg(fields.value(Units)),
            QStringLiteral("the panel takes the larger one for the maximum"));
    } else if (range->low == range->high || range->low > HighestSlider ||
        range->high < LowestSlider || range->low != std::floor(range->low) ||
        range->high != std::floor(range->high)) {
        findings.add("QN305", place,
            QStringLiteral("a slider goes in whole numbers from %1 to %2, and its two ends differ")
                .arg(text(LowestSlider), text(HighestSlider)));
    }
    checkSteps(fields, std::fabs(range->low - range->high), place, findings);
}

void checkNumber(const QStringList& fields, const MenuPlace& place, Findings& findings)
{
    const int kind = fields.value(Param).toInt();
    if (kind < 0 || kind > LastKind) {
        findings.add("QN302", place, QStringLiteral("there is no kind %1 of number").arg(kind),
            QStringLiteral("kinds are 0 to %1; the panel shows a plain pad").arg(LastKind));
    }
    const Ranges ranges = rangesOf(fields);
    const bool isBelowZero = std::any_of(
        ranges.all.begin(), ranges.all.end(), [](const Range& range) { return range.low < 0; });
    if (isBelowZero && kind != SignedKind) {
        findings.add("QN309", place,
            QStringLiteral("the range reaches below zero, and the pad of kind %1 has no \"-\"")
                .arg(kind),
            QStringLiteral("only kind 0 has one"));
    }
    const QString special = fields.value(Options).section(QLatin1Char(' '), 0, 0);
    if (kind == SpecialKind && !number(special)) {
        findings.add("QN311", place, QStringLiteral("the special key has no number to send"),
            QStringLiteral(
                "options are the number, one blank and the text of the key: \"0 Auto\""));
    }
}

void checkCommand(const QStringList& fields, const MenuPlace& place, Findings& findings)
{
    const QString command = fields.value(Command);
    if (command.isEmpty()) {
        findings.add(
            "QN603", place, QStringLiteral("the key has no command: it sends its value alone"));
    } else if (command.back().isLetterOrNumber()) {
        findings.add("QN602", place,
            QStringLiteral("nothing separates the command \"%1\" from its value")
                .arg(wire::excerpt(command)),
            QStringLiteral("\"%1\" and 1 are sent as \"%1%2\"; end the command with \":\"")
                .arg(wire::excerpt(command), QStringLiteral("1")));
    }
}

} // namespace

void checkKey(const QStringList& fields, const MenuPlace& place, Findings& findings)
{
    const int type = fields.value(Type).toInt();
    if (type < 0 || type >= KeyTypes) {
        findings.add("QN301", place, QStringLiteral("there is no key type %1").arg(type),
            QStringLiteral("types are 0 to %1; a press of this key only shows a message box")
                .arg(KeyTypes - 1));
        return;
    }
    checkCommand(fields, place, findings);
    if (type == SelectionKey || type == FileKey) {
        checkList(fields, place, findings);
    }
    if (type != NumberKey && type != SliderKey) {
        return;
    }
    checkRanges(fields, place, findings);
    if (type == SliderKey) {
        checkSlider(fields, place, findings);
    } else {
        checkNumber(fields, place, findings);
    }
    // 0 is what many menus send for a value that is not known yet.
    if (number(fields.value(Value)).value_or(0) != 0) {
        checkValue(fields, fields.value(Value), place, findings);
    }
}

void checkValue(
    const QStringList& fields, const QString& value, const MenuPlace& place, Findings& findings)
{
    const int type = fields.value(Type).toInt();
    const auto given = number(value);
    if (!given || (type != NumberKey && type != SliderKey)) {
        return;
    }
    if (!isInside(fields, *given, rangesOf(fields))) {
        const bool isPercent = type == NumberKey && fields.value(Param).toInt() == PercentKind;
        findings.add("QN308", place,
            QStringLiteral("the value %1 lies outside the range \"%2\"")
                .arg(wire::excerpt(value), wire::excerpt(fields.value(Units))),
            isPercent ? QStringLiteral("a percentage's value is a fraction: 0.5 for 50 %")
                      : QString());
    }
}

void checkLocked(
    const QStringList& fields, const QString& positions, const MenuPlace& place, Findings& findings)
{
    if (fields.value(Type).toInt() != SelectionKey) {
        findings.add("QN407", place, QStringLiteral("the key is no selection: it has no choices"));
        return;
    }
    const qsizetype count = listItems(fields.value(Options)).size();
    for (const QString& item : positions.split(QLatin1Char(':'), Qt::SkipEmptyParts)) {
        const int position = item.toInt();
        if (position < 0 || position >= count) {
            findings.add("QN407", place,
                QStringLiteral("there is no choice %1: the list has %2").arg(position).arg(count),
                QStringLiteral("positions count from 0"));
            return;
        }
    }
}

} // namespace lint
