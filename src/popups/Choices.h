#pragma once

#include <QList>
#include <QString>

// The choices of a selection list or file board, without the window: what the main unit's list
// text holds, how each text is shown and in which cell its button stands.
namespace choices {

struct Choice
{
    QString value; // what is sent
    QString text;  // what the button shows
};

struct Cell
{
    int row = 0;
    int column = 0;
    bool operator==(const Cell& other) const { return row == other.row && column == other.column; }
};

struct Look
{
    QString text;           // with a line break where there is one
    bool smallFont = false; // 18 px instead of 28 px
};

// Buttons beyond these counts would be too small to see; rows and columns are held within 1 to
// MostLines, and the choices behind MostChoices are left out.
constexpr int MostLines = 16;
constexpr int MostChoices = 400;

// In: items separated by ":", each its value, one blank and its text (which may hold blanks); an
// item without a blank is value and text in one. Out: the choices in order; an empty item makes
// none.
QList<Choice> parse(const QString& list);

// In: a choice's text, the columns of its grid, whether long texts keep the large font. Out: how
// the text is shown.
Look look(const QString& text, int columns, bool keepLargeFont);

// The cells of one list: choices fill it row by row and go on below its last row.
class Grid
{
public:
    // In: rows and columns, held within 1 (`leastColumns`) to MostLines.
    Grid(int rows, int columns, int leastColumns = 1);

    int rows() const { return m_rows; }
    int columns() const { return m_columns; }
    // In: the place of a choice in its list, from 0. Out: its cell.
    Cell cell(int index) const;
    // Out: the cell of "Cancel", the last one of the last row.
    Cell cancelCell() const;
    // Out: the cell of "New File", left of "Cancel". Wants two columns.
    Cell newFileCell() const;
    // Out: how many rows this many choices take, never fewer than rows().
    int rowsFor(qsizetype count) const;

private:
    int m_rows;
    int m_columns;
};

} // namespace choices
