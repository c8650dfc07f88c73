// What the operator types, as keys: the first line says into what, the rest is the keys.
//
// "N TYPE RANGES" is the number pad: digits, "-", "+", "<" backspace, "c" clear, "=" "k" "m" check.
// "A" is the address pad.
// "K LENGTH TEXT" is a line of the keyboard: "<" backspace, "d" delete, "l" left, "r" right.
// "C COLUMNS LIST" are the choices of a list, with as many columns as a key asks for.
#include "Target.h"

#include "menus/ListGrid.h"
#include "popups/AddressEntry.h"
#include "popups/Choices.h"
#include "popups/EditedLine.h"
#include "popups/EntryType.h"
#include "popups/NumberEntry.h"
#include "popups/NumberRanges.h"

#include <QStringList>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1String PadKeys("0123456789.ABCDEF");

void checkNumber(const NumberEntry& entry, const NumberRanges& ranges, int multiplier)
{
    const NumberEntry::Checked checked = entry.check(ranges, multiplier);
    FUZZ_CHECK(std::isfinite(checked.value));
    FUZZ_CHECK(!checked.valid || !ranges.ranges().isEmpty());
    FUZZ_CHECK(!entry.errorText(multiplier).isEmpty());
}

void typeNumber(int type, const QString& rangeText, const QString& keys)
{
    const NumberRanges ranges(rangeText, type);
    static_cast<void>(ranges.rangeLine(u"Title"_s) + ranges.errorText());
    NumberEntry entry(type);
    for (const QChar key : keys) {
        switch (key.unicode()) {
        case '<':
            entry.backspace();
            break;
        case '-':
            entry.minus();
            break;
        case '+':
            entry.plus();
            break;
        case 'c':
            entry.clear();
            break;
        case '=':
            checkNumber(entry, ranges, NumberEntry::Plain);
            break;
        case 'k':
            checkNumber(entry, ranges, NumberEntry::Thousand);
            break;
        case 'm':
            checkNumber(entry, ranges, NumberEntry::Million);
            break;
        case 'e':
            entry.clearAfterError();
            break;
        default:
            if (PadKeys.contains(key)) {
                entry.append(key);
            }
        }
        FUZZ_CHECK(entry.text().startsWith(u"      "_s));
        FUZZ_CHECK(entry.display().startsWith(entry.text()));
    }
    checkNumber(entry, ranges, NumberEntry::Plain);
    const double value = entry.check(ranges, NumberEntry::Plain).value;
    static_cast<void>(
        entryType::currentValueText(type, static_cast<float>(entryType::toSingle(value))));
    static_cast<void>(entryType::toHexadecimal(value));
}

bool isAddress(const QString& text)
{
    const QStringList parts = text.split(u'.');
    bool good = parts.size() == 4;
    for (const QString& part : parts) {
        bool ok = false;
        const int number = part.toInt(&ok);
        good = good && ok && number >= 0 && number <= 255 && part.at(0).isDigit();
    }
    return good;
}

void typeAddress(const QString& keys)
{
    AddressEntry entry;
    for (const QChar key : keys) {
        if (key == u'<') {
            entry.backspace();
        } else if (key == u'c') {
            entry.clear();
        } else if (key == u'.' || (key >= u'0' && key <= u'9')) {
            entry.append(key);
        }
        FUZZ_CHECK(entry.isValid() == isAddress(entry.text()));
    }
}

void typeText(int maxLength, const QString& text, const QString& keys)
{
    EditedLine line{text, static_cast<int>(text.size()), false};
    for (const QChar key : keys) {
        QString name(key);
        if (key == u'<') {
            name = u"BackSpace"_s;
        } else if (key == u'd') {
            name = u"Del"_s;
        } else if (key == u'l') {
            name = u"<<-"_s;
        } else if (key == u'r') {
            name = u"->>"_s;
        }
        const qsizetype before = line.text.size();
        line = line.after(name, maxLength);
        FUZZ_CHECK(line.cursor >= 0 && line.cursor <= line.text.size());
        FUZZ_CHECK(line.text.size() <= before || line.text.size() <= maxLength);
    }
}

void layOut(int param, const QString& list)
{
    const auto all = choices::parse(list);
    const ListGrid wanted = ListGrid::forChoices(list, param);
    const choices::Grid grid(wanted.rows, wanted.columns, 2);
    FUZZ_CHECK(grid.columns() <= choices::MaxLines && grid.rows() <= choices::MaxLines);
    for (int i = 0; i < all.size(); ++i) {
        const choices::Cell cell = grid.cell(i);
        FUZZ_CHECK(cell.row >= 0 && cell.column >= 0 && cell.column < grid.columns());
        FUZZ_CHECK(cell.row < grid.rowsFor(all.size()));
        static_cast<void>(choices::look(all.at(i).text, grid.columns(), i % 2 == 0));
        const QString& text = all.at(i).text;
        const int present = choices::presentAt(all, {text, {}});
        FUZZ_CHECK(text.trimmed().isEmpty() || (present >= 0 && present <= i));
    }
    FUZZ_CHECK(all.size() <= choices::MaxChoices);
    static_cast<void>(grid.scrolledRows(all.size(), 2));
    FUZZ_CHECK(grid.shownRows(all.size(), 400) >= 1);
}

} // namespace

void fuzz::takeEntry(const QByteArray& input)
{
    const QString text = QString::fromLatin1(input);
    const QString head = text.section(u'\n', 0, 0);
    const QString keys = text.section(u'\n', 1);
    const int number = head.section(u' ', 1, 1).left(4).toInt();
    switch (head.isEmpty() ? '\0' : head.at(0).toLatin1()) {
    case 'N':
        return typeNumber(number, head.section(u' ', 2), keys);
    case 'A':
        return typeAddress(keys);
    case 'K':
        return typeText(number, head.section(u' ', 2), keys);
    case 'C':
        return layOut(head.section(u' ', 1, 1).toInt(), head.section(u' ', 2));
    default:
        break;
    }
}
