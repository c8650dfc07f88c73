#include "menus/GroupCells.h"

#include <QString>

#include <array>

namespace {

struct Column
{
    QLatin1String sourceMenu;
    int col = 0;
};

// In the order of the counters.
constexpr std::array<Column, KeyBoard::GroupCounters> Columns{{
    {QLatin1String("Tuner CH1"), 0},
    {QLatin1String("Tuner CH2"), 2},
    {QLatin1String("Demod 1"), 1},
    {QLatin1String("Demod 2"), 3},
    {QLatin1String("Demod 3"), 5},
    {QLatin1String("Combiner"), 4},
}};

int& counter(KeyBoard& menu, std::size_t index)
{
    // Quirk: on the PAX main menu the counters of the two tuners are those of the fixed cells, so a
    // key that "CM" copies there moves the next fixed cell. See "Quirks" in docs/architecture.md.
    if (menu.kind() == KeyBoard::Kind::Pax && index == 0) {
        return menu.fixedCol;
    }
    if (menu.kind() == KeyBoard::Kind::Pax && index == 1) {
        return menu.fixedRow;
    }
    return menu.groupRows.at(index);
}

} // namespace

namespace groupCells {

KeyBoard::Cell nextOfColumn(KeyBoard& mainMenu, const QString& sourceMenu)
{
    for (std::size_t i = 0; i < Columns.size(); ++i) {
        if (sourceMenu == Columns.at(i).sourceMenu) {
            return {counter(mainMenu, i)++, Columns.at(i).col};
        }
    }
    return {};
}

KeyBoard::Cell nextFixed(KeyBoard& mainMenu)
{
    const KeyBoard::Cell cell{mainMenu.fixedRow, mainMenu.fixedCol};
    if (mainMenu.fixedCol == 1) {
        mainMenu.fixedCol = 0;
        ++mainMenu.fixedRow;
    } else {
        ++mainMenu.fixedCol;
    }
    return cell;
}

} // namespace groupCells
