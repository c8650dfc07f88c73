#pragma once

#include "sim/lint/Findings.h"

#include <QString>
#include <QStringList>

namespace lint {

/// Checks what a key's own fields say: its type, what it sends, its ranges and value, its items.
/// \param fields those of "AK", the menu first
/// \param place  of the message
void checkKey(const QStringList& fields, const MenuPlace& place, Findings& findings);

/// Checks a value that "CV" sets against the ranges of its key.
/// \param fields those of the key's "AK" \param value the new one
void checkValue(
    const QStringList& fields, const QString& value, const MenuPlace& place, Findings& findings);

/// Checks the positions of "EI" against the items of its key.
/// \param fields those of the key's "AK" \param positions separated by ":"
void checkLocked(const QStringList& fields, const QString& positions, const MenuPlace& place,
    Findings& findings);

} // namespace lint
