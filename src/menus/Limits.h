#pragma once

#include <QtGlobal>

/// What the main unit may define. See "Limits" in docs/reliability.md.
namespace menuLimits {

constexpr qsizetype MaxMenus = 500;   ///< how many menus there are; further ones are not made
constexpr qsizetype MaxKeys = 15'000; ///< of all menus together, copies included

/// The characters of one key's definition, all its texts together: "AK" or "IK" with more is
/// ignored.
constexpr qsizetype MaxKeyCharacters = qsizetype{256} * 1024;

/// The characters of all definitions together, names of menus included: a definition that would
/// exceed them is ignored.
constexpr qsizetype MaxCharacters = qsizetype{8} * 1024 * 1024;

/// How many choices of one key "EI" locks; further positions are dropped.
constexpr qsizetype MaxLocked = 1'000;

} // namespace menuLimits
