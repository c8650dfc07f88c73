#include "menus/ListGrid.h"

#include <array>

namespace {

constexpr int Rows = 4;

// The grid of lists with no more choices than this.
struct GridRow
{
    qsizetype upTo = 0;
    ListGrid grid;
};
constexpr std::array GridRows{
    GridRow{16, {4, 4}},
    GridRow{21, {4, 5}},
    GridRow{47, {6, 6}},
    GridRow{51, {6, 9}},
};
constexpr ListGrid LargestGrid{9, 6};

// Quirk: this counts the characters of the whole list text, not its files. See "Quirks" in
// docs/architecture.md.
constexpr int ShortFileList = 16;
constexpr int FileColumns = 4;
constexpr int FileColumnsOfLong = 5;

} // namespace

ListGrid ListGrid::forChoices(const QString& options, int param)
{
    if (param >= 1) {
        return {Rows, param};
    }
    const qsizetype count = options.count(QLatin1Char(':')) + 1;
    for (const GridRow& row : GridRows) {
        if (count <= row.upTo) {
            return row.grid;
        }
    }
    return LargestGrid;
}

ListGrid ListGrid::forFiles(const QString& options)
{
    return {Rows, options.size() < ShortFileList ? FileColumns : FileColumnsOfLong};
}
