#pragma once

/// Lines on standard error that say why the panel ends.
///
/// The journal takes a "<3>" in front of a line as the priority of an error and does not show it.
/// Elsewhere, on a terminal or in a file, it would only be in the way.
namespace errorLine {

/// Asks for no memory. \return whether the journal reads standard error, by JOURNAL_STREAM: the
/// service manager puts device and inode of the journal's stream there, for every process that
/// comes of a service, also for those on a terminal
bool isForJournal();

/// \return what stands in front of an error: "<3>" for the journal, otherwise nothing
const char* prefix();

} // namespace errorLine
