#pragma once

#include <QtGlobal>

/// What the window itself keeps of messages. See "Limits" in docs/reliability.md.
namespace appLimits {

/// The characters of the status bar's text; the rest is cut off.
constexpr qsizetype MaxStatusCharacters = 1 << 20;

} // namespace appLimits
