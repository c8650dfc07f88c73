#include "sim/lint/ListRules.h"

#include "sim/menus/MenuFields.h"
#include "wire/Commands.h"

#include <algorithm>
#include <array>

namespace lint {

namespace {

using namespace menuFields;

constexpr int MaxColumns = 16;
constexpr qsizetype MaxChoices = 400;
constexpr int Rows = 4;
// With more rows than these a list scrolls: they would be lower than a finger needs.
constexpr qsizetype MaxSelectionRows = 10;
constexpr qsizetype MaxFileRows = 11;
// A file list gets its fifth column by the characters of its options, not by its files.
constexpr qsizetype ShortFileOptions = 16;

// The grid of a selection with so many items and no number of columns of its own.
struct Grid
{
    qsizetype upTo;
    int rows;
    int columns;
};
constexpr std::array Grids{Grid{16, 4, 4}, Grid{21, 4, 5}, Grid{47, 6, 6}, Grid{51, 6, 9}};
constexpr Grid LargestGrid{0, 9, 6};

Grid gridOf(const QStringList& fields)
{
    const QString options = fields.value(Options);
    const int columns = fields.value(Param).toInt();
    if (fields.value(Type).toInt() == FileKey) {
        return {0, Rows, options.size() < ShortFileOptions ? 4 : 5};
    }
    if (columns >= 1) {
        return {0, Rows, std::min(columns, MaxColumns)};
    }
    const qsizetype count = options.count(QLatin1Char(':')) + 1;
    const auto* const found = std::find_if(
        Grids.begin(), Grids.end(), [count](const Grid& grid) { return count <= grid.upTo; });
    return found != Grids.end() ? *found : LargestGrid;
}

void checkColumns(const QStringList& fields, const MenuPlace& place, Findings& findings)
{
    const int columns = fields.value(Param).toInt();
    if (columns < 0 || columns > MaxColumns) {
        findings.add("QN303", place,
            QStringLiteral("a list has 1 to %1 columns, or 0 for a fit, not %2")
                .arg(MaxColumns)
                .arg(columns),
            columns < 0 ? QStringLiteral("the panel chooses the columns itself")
                        : QStringLiteral("the panel makes %1 columns").arg(MaxColumns));
    }
}

void checkBlanks(const QStringList& items, const MenuPlace& place, Findings& findings)
{
    const auto without = [](const QString& item) { return !item.contains(QLatin1Char(' ')); };
    const auto first = std::find_if(items.begin(), items.end(), without);
    if (first != items.end()) {
        const auto count = std::count_if(first, items.end(), without);
        const QString others =
            count > 1 ? QStringLiteral(", nor have %1 more").arg(count - 1) : QString();
        findings.add("QN403", place,
            QStringLiteral("the item \"%1\" has no blank%2").arg(wire::excerpt(*first), others),
            QStringLiteral("an item is its value, one blank and its text; this one is both"));
    }
}

void checkRoom(
    const QStringList& fields, const QStringList& items, const MenuPlace& place, Findings& findings)
{
    if (items.size() > MaxChoices) {
        findings.add("QN406", place,
            QStringLiteral("%1 items; those after the %2th are left out")
                .arg(items.size())
                .arg(MaxChoices));
        return;
    }
    const ListCells cells = listCells(fields);
    if (cells.doesScroll) {
        findings.add("QN405", place,
            QStringLiteral("%1 items do not fit the screen: the list scrolls").arg(items.size()),
            QStringLiteral("more columns show more of them"));
    }
    const int covered = cells.firstCovered(items.size());
    if (covered >= 0) {
        const bool isCancel = covered == cells.rows * cells.columns - 1;
        findings.add("QN404", place,
            QStringLiteral("item %1, \"%2\", lies under \"%3\" and cannot be chosen")
                .arg(QString::number(covered + 1), wire::excerpt(items.at(covered)),
                    isCancel ? QStringLiteral("Cancel") : QStringLiteral("New File")),
            QStringLiteral("leave that cell free with an item that nobody needs, or choose another "
                           "number of columns"));
    }
}

} // namespace

QStringList listItems(const QString& options)
{
    QStringList items;
    for (const QString& item : options.split(QLatin1Char(':'))) {
        if (!item.trimmed().isEmpty()) {
            items.append(item);
        }
    }
    return items;
}

ListCells listCells(const QStringList& fields)
{
    const Grid grid = gridOf(fields);
    const bool isFile = fields.value(Type).toInt() == FileKey;
    const qsizetype count = std::min(listItems(fields.value(Options)).size(), MaxChoices);
    const qsizetype rows = (count + grid.columns - 1) / grid.columns;
    return {
        grid.rows, grid.columns, isFile ? 2 : 1, rows > (isFile ? MaxFileRows : MaxSelectionRows)};
}

int ListCells::firstCovered(qsizetype count) const
{
    const int first = std::max(0, rows * columns - fixed);
    return doesScroll || count <= first ? -1 : first;
}

void checkList(const QStringList& fields, const MenuPlace& place, Findings& findings)
{
    const bool isFile = fields.value(Type).toInt() == FileKey;
    const QStringList items = listItems(fields.value(Options));
    if (!isFile) {
        checkColumns(fields, place, findings);
    }
    if (items.isEmpty()) {
        findings.add(isFile ? "QN402" : "QN401", place,
            isFile ? QStringLiteral("the list has no files, only \"New File\"")
                   : QStringLiteral("the list has no items: nothing can be chosen"),
            QStringLiteral("options are \"value text:value text\""));
        return;
    }
    checkBlanks(items, place, findings);
    checkRoom(fields, items, place, findings);
}

} // namespace lint
