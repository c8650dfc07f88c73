#pragma once

#include <QGridLayout>
#include <QGroupBox>
#include <QString>

/// The parts that the main menus are built of.
///
/// A cell of a main menu is counted over the whole page: two columns for each of the groups
/// "Channel 1", "Channel 2" and "Combiner", from left to right, and below their five rows the one
/// row of "Options".
namespace menuGroups {

constexpr int GroupRows = 5;    ///< Rows of keys in a channel's group and in the combiner's.
constexpr int GroupColumns = 2; ///< Columns of keys in each of these groups.
constexpr int KeyColumns = 6;   ///< Columns of keys in the three groups together.

constexpr int KeyWidth = 150; ///< Smallest width of a column of keys, in pixels.
constexpr int KeyHeight = 80; ///< Smallest height of a row of keys, in pixels.

/// A cell inside one group.
struct GroupCell
{
    QGridLayout* grid = nullptr; ///< The group's grid, nullptr when the cell lies in no group.
    int row = 0;                 ///< Row in that grid.
    int col = 0;                 ///< Column in that grid.
};

/// The grids of a main menu's groups. A menu without one of the groups has nullptr there.
struct GroupGrids
{
    QGridLayout* channel1 = nullptr; ///< Columns 0 and 1.
    QGridLayout* channel2 = nullptr; ///< Columns 2 and 3.
    QGridLayout* combiner = nullptr; ///< Columns 4 and 5.
    QGridLayout* options = nullptr;  ///< Every row from GroupRows on, any column.

    /// \return where the cell (\a row, \a col) of the main menu lies, both counted from 0.
    GroupCell at(int row, int col) const;
};

/// The four groups of the normal main menu: their grids and the boxes around them.
struct FourGroups
{
    GroupGrids grids;              ///< The grids, each the layout of its box.
    QGroupBox* channel1 = nullptr; ///< "Channel 1"
    QGroupBox* channel2 = nullptr; ///< "Channel 2"
    QGroupBox* combiner = nullptr; ///< "Combiner"
    QGroupBox* options = nullptr;  ///< "Options"
};

/// Builds the four groups of the normal main menu, empty, and puts them into \a outer: three side
/// by side and "Options" below all of them.
/// \param sheet style sheet of each of the four boxes
FourGroups addFourGroups(QGridLayout* outer, const QString& sheet);

/// Builds a group: a box with a title and a style sheet around a grid, which it takes over.
QGroupBox* newGroup(const QString& title, QGridLayout* grid, const QString& sheet);

/// Gives columns 0 to \a lastCol of a grid a minimum width and rows 0 to \a lastRow a minimum
/// height, both in pixels.
void setCellSizes(QGridLayout* grid, int lastCol, int minWidth, int lastRow, int minHeight);

} // namespace menuGroups
