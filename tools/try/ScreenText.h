#pragma once

#include <QStringList>

/// What stands on the screen, as lines of a report.
namespace screenText {

/// \return the texts in reading order: those that stand side by side in one line, with " | "
/// between, and behind the text of a key what else it shows: "AGC On [on] | AFC [disabled]".
QStringList lines();

} // namespace screenText
