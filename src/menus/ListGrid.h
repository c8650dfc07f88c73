#pragma once

#include <QString>

// How many rows and columns a list of choices or files gets.
struct ListGrid
{
    int rows = 0;
    int columns = 0;

    // In: the choices, separated by ":" (empty ones count too); the key's parameter: from 1 on it
    // is the number of columns. Out: the grid of the selection list.
    static ListGrid forChoices(const QString& options, int param);
    // In: the files of a file key. Out: the grid of the file board.
    static ListGrid forFiles(const QString& options);

    bool operator==(const ListGrid& other) const
    {
        return rows == other.rows && columns == other.columns;
    }
};
