#pragma once

/// What happens when there is no memory left.
namespace outOfMemory {

/// Says on standard error that there is no memory and ends the process at once with
/// ExitStatus::OutOfMemory. It takes no memory itself.
[[noreturn]] void end();

/// From now on, when memory is asked for and there is none, the process writes one line to standard
/// error and ends with ExitStatus::OutOfMemory. The service then starts the panel again, with the
/// memory that it had at the beginning. To be called once, before anything else.
void endTheProcess();

} // namespace outOfMemory
