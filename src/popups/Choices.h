#pragma once

#include <QList>
#include <QString>

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

/// Largest number of rows and of columns: buttons of more would be too small to see.
constexpr int MaxLines = 16;
/// Largest number of choices for the same reason; those behind are left out.
constexpr int MaxChoices = 400;

/// Splits a list text into its choices. An empty item makes none; an item without a blank is value
/// and text in one.
/// \param list items separated by ":", each its value, one blank and its text, which may hold
/// blanks
QList<Choice> parse(const QString& list);

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

private:
    int m_rows;
    int m_columns;
};

} // namespace choices
