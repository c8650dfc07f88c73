#pragma once

#include <QtGlobal>

/// What the main unit's line may make the panel keep. See "Limits" in docs/reliability.md.
namespace linkLimits {

/// The longest message, in characters. What has come of one that is longer is dropped, and what
/// follows is taken from the next STX on. The line needs 24 minutes for so many.
constexpr qsizetype MaxMessage = qsizetype{16} * 1024 * 1024;

/// How many bytes may wait in the port while a modal editor keeps a handler busy; the line is then
/// not read until there is room, and the kernel drops what it has no room for.
constexpr qint64 MaxBytesWaiting = qint64{1} << 20;

/// How many bytes may wait to be sent. A main unit that asks and never reads must not fill the
/// memory of the panel: what is sent while more are waiting is lost.
constexpr qint64 MaxUnsentBytes = qint64{1} << 20;

constexpr qsizetype MaxOpenBoxes = 16;         ///< how many message boxes stand at a time
constexpr qsizetype MaxWaitingBoxes = 1000;    ///< how many wait; what comes then is lost
constexpr qsizetype MaxBoxCharacters = 20'000; ///< of a box's text; the rest is cut off

/// How many characters a message without an end may keep on the line for re-sent messages.
constexpr qsizetype MaxResent = 1024;

/// A settings file that is larger is not one, and is replaced.
constexpr qint64 MaxSettingsBytes = qint64{64} * 1024;

} // namespace linkLimits
