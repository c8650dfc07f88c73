#pragma once

#include <QtGlobal>

/// What a card and its messages may make the panel keep. See "Limits" in docs/reliability.md.
namespace spectrumLimits {

/// How many requests and markers wait for the bus, and how many are sent in turns; further ones are
/// dropped.
constexpr qsizetype MaxQueued = 10'000;

/// How many received bytes wait for the end of their reply, when they are no spectrum. The longest
/// spectrum has 65,547 bytes.
constexpr qsizetype MaxReplyBytes = qsizetype{256} * 1024;

/// How many bytes may wait to be sent to the card; they are dropped when there are more.
constexpr qint64 MaxUnsentBytes = 4096;

constexpr qsizetype MaxMarkers = 64; ///< horizontal markers of a chart; further ones are left out

} // namespace spectrumLimits
