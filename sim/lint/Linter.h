#pragma once

#include "sim/lint/Findings.h"

class MenuFile;

namespace lint {

/// Checks a menu file: first whether each of its lines is a message, then what the panel would make
/// of the messages, one after the other, and last the menus that they leave.
///
/// The effort grows with the length of the file alone. \return the findings that no comment of the
/// file silences, sorted by line
QList<Finding> check(const MenuFile& file);

} // namespace lint
