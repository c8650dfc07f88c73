#pragma once

#include "popups/Limits.h"

#include <QList>
#include <QString>

#include <optional>

/// The choices of a selection list or file board, without the window: what the main unit's list
/// text holds, how each text is shown and in which cell its button stands.
namespace choices {

/// One choice of a list.
struct Choice
{
    QString value; ///< What is sent when it is pressed.
    QString text;  ///< What its button shows.
};

/// A place in a grid; row and column count from 0.
struct Cell
{
    int row = 0;    ///< From the top.
    int column = 0; ///< From the left.
    /// \return whether both are the same place.
    bool operator==(const Cell& other) const { return row == other.row && column == other.column; }
};

/// How a choice's text is shown.
struct Look
{
    QString text;           ///< The text, with a line break where it needs one.
    bool smallFont = false; ///< 18 px instead of 28 px.
};

/// What is known about the choice that is in effect now.
struct Present
{
    QString text;                ///< What shows it, such as the text of the key; may be empty.
    std::optional<double> value; ///< The value that the main unit has given, if it has.
};

/// Largest number of rows and of columns: buttons of more would be too small to see.
constexpr int MaxLines = 16;
/// Largest number of choices; those behind are left out, which is logged at debug level.
constexpr int MaxChoices = popUpLimits::MaxChoices;

/// Splits a list text into its choices. An empty item makes none; an item without a blank is value
/// and text in one.
/// \param list items separated by ":", each its value, one blank and its text, which may hold
/// blanks
QList<Choice> parse(const QString& list);

/// Finds the present choice: the one with the same text or, where there is none, the one whose
/// value is the same number in single precision, in which values come from the main unit. \return
/// its position from 0, or -1.
int presentAt(const QList<Choice>& offered, const Present& present);

/// Decides how a choice's text is shown.
/// \param text          the choice's text
/// \param columns       of its grid
/// \param keepLargeFont whether long texts keep the large font, too
Look look(const QString& text, int columns, bool keepLargeFont);

/// The cells of one list: choices fill it row by row and go on below its last row.
class Grid
{
public:
    /// Makes a grid; numbers out of bounds are moved to the nearest bound.
    /// \param rows       1 to MaxLines
    /// \param columns    \a minColumns to MaxLines
    /// \param minColumns the smallest number of columns
    Grid(int rows, int columns, int minColumns = 1);

    /// \return the number of rows, without those below the last one.
    int rows() const { return m_rows; }
    /// \return the number of columns.
    int columns() const { return m_columns; }
    /// \return the cell of a choice; \a index is its place in its list, from 0.
    Cell cell(int index) const;
    /// \return the cell of "Cancel", the last one of the last row.
    Cell cancelCell() const;
    /// \return the cell of "New File", left of "Cancel". Needs a grid of two columns.
    Cell newFileCell() const;
    /// \return how many rows \a count choices take, never fewer than rows().
    int rowsFor(qsizetype count) const;

    /// \return how many rows are shown at a time: all that \a count choices take, if they are at
    /// least touch::MinRowHeight high; otherwise those of the grid, as far as these are, and the
    /// list scrolls.
    /// \param room height of the shown rows together, in pixels
    int shownRows(qsizetype count, int room) const;
    /// \return how many rows a list that scrolls has: one more than \a count choices take when one
    /// of the last ones would stay under the \a fixedCells last cells of the last shown row.
    int scrolledRows(qsizetype count, int fixedCells) const;
    /// \return the pixels between the cells of so many shown rows.
    static int spacing(int shownRows);

private:
    int m_rows;
    int m_columns;
};

} // namespace choices
