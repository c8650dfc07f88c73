#pragma once

#include <QtGlobal>

/// What a message may make the panel keep, whatever it says. See "Limits" in docs/reliability.md.
namespace wire {

/// How many fields of a message count; what stands behind them is dropped. No message has more than
/// a hundred.
constexpr qsizetype MaxFields = 10'000;

} // namespace wire
