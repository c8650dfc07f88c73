#include "popups/Choices.h"

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

} // namespace

namespace choices {

QList<Choice> parse(const QString& list)
{
    QList<Choice> found;
    for (const QString& item : list.split(QLatin1Char(':'))) {
        if (item.trimmed().isEmpty() || found.size() >= MaxChoices) {
            continue;
        }
        const qsizetype blank = item.indexOf(QLatin1Char(' '));
        if (blank < 0) {
            found += Choice{item, item};
        } else {
            found += Choice{item.left(blank), item.mid(blank + 1)};
        }
    }
    return found;
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

} // namespace choices
