#include "popups/Choices.h"

#include "touch/Sizes.h"
#include "wire/Log.h"

#include <QStringList>

#include <algorithm>

namespace {

// Grids with fewer columns have room for longer texts.
constexpr int ManyColumns = 5;
constexpr int LongText = 15;
constexpr int MediumText = 10;
constexpr int LongTextInManyColumns = 9;
constexpr int MediumTextInManyColumns = 6;
// Quirk: the same for both column counts. See "Quirks" in docs/architecture.md.
constexpr int BreakPosition = 15;

constexpr int Spacing = 4;
constexpr int SpacingOfMany = 1;
constexpr int ManyRows = 6; // with more rows each pixel between them counts

bool areHighEnough(int rows, int room)
{
    const int gap = choices::Grid::spacing(rows);
    return (room + gap) / rows - gap >= touch::MinRowHeight;
}

QString comparable(const QString& text)
{
    return QString(text).replace(QStringLiteral("&&"), QStringLiteral("&")).simplified();
}

} // namespace

namespace choices {

QList<Choice> parse(const QString& list)
{
    QList<Choice> found;
    qsizetype leftOut = 0;
    for (const QString& item : list.split(QLatin1Char(':'))) {
        if (item.trimmed().isEmpty()) {
            continue;
        }
        if (found.size() >= MaxChoices) {
            ++leftOut;
            continue;
        }
        const qsizetype blank = item.indexOf(QLatin1Char(' '));
        if (blank < 0) {
            found += Choice{item, item};
        } else {
            found += Choice{item.left(blank), item.mid(blank + 1)};
        }
    }
    if (leftOut > 0) {
        qCDebug(logPopups) << "list: the choices after" << MaxChoices << "are left out:" << leftOut;
    }
    return found;
}

int presentAt(const QList<Choice>& offered, const Present& present)
{
    const QString text = comparable(present.text);
    const auto find = [&offered](const auto& isIt) {
        const auto at = std::find_if(offered.cbegin(), offered.cend(), isIt);
        return at != offered.cend() ? static_cast<int>(at - offered.cbegin()) : -1;
    };
    const int byText = find([&text](const Choice& choice) {
        return !text.isEmpty() && comparable(choice.text) == text;
    });
    if (byText >= 0 || !present.value) {
        return byText;
    }
    return find([value = static_cast<float>(*present.value)](const Choice& choice) {
        bool isNumber = false;
        return choice.value.toFloat(&isNumber) == value && isNumber;
    });
}

Look look(const QString& text, int columns, bool keepLargeFont)
{
    const bool many = columns >= ManyColumns;
    const int longLimit = many ? LongTextInManyColumns : LongText;
    const int mediumLimit = many ? MediumTextInManyColumns : MediumText;
    if (keepLargeFont || text.size() <= mediumLimit) {
        return {text, false};
    }
    if (text.size() <= longLimit) {
        return {text, true};
    }
    // A shorter text is filled up with blanks as far as the break.
    QString broken = text.leftJustified(BreakPosition);
    broken.insert(BreakPosition, QLatin1Char('\n'));
    return {broken, true};
}

Grid::Grid(int rows, int columns, int minColumns)
    : m_rows(std::clamp(rows, 1, MaxLines))
    , m_columns(std::clamp(columns, minColumns, MaxLines))
{
    if (columns > MaxLines) {
        qCDebug(logPopups) << "list:" << columns << "columns asked for," << MaxLines << "shown";
    }
}

Cell Grid::cell(int index) const
{
    return {index / m_columns, index % m_columns};
}

Cell Grid::cancelCell() const
{
    return {m_rows - 1, m_columns - 1};
}

Cell Grid::newFileCell() const
{
    return {m_rows - 1, std::max(0, m_columns - 2)};
}

int Grid::rowsFor(qsizetype count) const
{
    const qsizetype filled = (count + m_columns - 1) / m_columns;
    return std::max(m_rows, static_cast<int>(filled));
}

int Grid::shownRows(qsizetype count, int room) const
{
    const int all = rowsFor(count);
    if (areHighEnough(all, room)) {
        return all;
    }
    int rows = m_rows;
    while (rows > 1 && !areHighEnough(rows, room)) {
        --rows;
    }
    return rows;
}

int Grid::scrolledRows(qsizetype count, int fixedCells) const
{
    const int rows = rowsFor(count);
    const qsizetype inLastRow = count - qsizetype{rows - 1} * m_columns;
    return inLastRow > m_columns - fixedCells ? rows + 1 : rows;
}

int Grid::spacing(int shownRows)
{
    return shownRows > ManyRows ? SpacingOfMany : Spacing;
}

} // namespace choices
