#pragma once

#include <QtGlobal>

/// How much of a key's definition an editor takes. See "Limits" in docs/reliability.md.
namespace popUpLimits {

/// How many choices a list or a file board shows; those behind are left out. Each is a button of
/// about 30 kB.
constexpr int MaxChoices = 400;

constexpr int MaxSteps = 20; ///< how many step sizes a slider has; those behind are left out

/// How many ranges a number pad has; those behind are left out.
constexpr qsizetype MaxRanges = 1'000;

} // namespace popUpLimits
