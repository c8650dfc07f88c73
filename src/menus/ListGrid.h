#pragma once

#include <QString>

/// How many rows and columns a list of choices or files gets.
struct ListGrid
{
    int rows = 0;    ///< Cells from top to bottom.
    int columns = 0; ///< Cells from left to right.

    /// \return the grid of a selection list.
    /// \param options the choices, separated by ":"; empty ones count too
    /// \param param   the key's parameter: from 1 on it is the number of columns
    static ListGrid forChoices(const QString& options, int param);
    /// \return the grid of a file board. \a options: the files, separated by ":".
    static ListGrid forFiles(const QString& options);

    /// \return whether both have as many rows and as many columns.
    bool operator==(const ListGrid& other) const
    {
        return rows == other.rows && columns == other.columns;
    }
};
