#pragma once

#include "sim/lint/Findings.h"
#include "sim/menus/PanelMenus.h"

#include <QSet>
#include <QString>

namespace lint {

/// Checks the menus as they are in the end, or when "CLEAR" deletes them: where their keys stand,
/// what they open, whether their labels have room, whether the operator can reach them.
/// \param refused names of menus that messages with a fault would have made
void checkMenus(const PanelMenus& menus, const QSet<QString>& refused, Findings& findings);

} // namespace lint
