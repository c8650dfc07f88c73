#pragma once

#include "sim/lint/Findings.h"

#include <QString>
#include <QStringList>

namespace lint {

/// Checks the items of a selection or a file list, and where its choices stand.
/// \param fields those of "AK", the menu first
void checkList(const QStringList& fields, const MenuPlace& place, Findings& findings);

/// The items of a list, as the panel takes them.
/// \param options items separated by ":" \return those that are not blank
QStringList listItems(const QString& options);

/// Where the choices of a list stand.
struct ListCells
{
    int rows;        ///< of the grid, without those below its last row
    int columns;     ///< of the grid
    int fixed;       ///< how many of its last cells hold "Cancel" and "New File"
    bool doesScroll; ///< whether the list scrolls

    /// \return the position of the first choice of \a count that lies under a fixed key, from 0; -1
    /// when none does, or when it can be scrolled away from under it.
    int firstCovered(qsizetype count) const;
};

/// \return where the choices of a list stand. \param fields those of "AK", the menu first
ListCells listCells(const QStringList& fields);

} // namespace lint
