#pragma once

/// What happens when there is no memory left.
namespace outOfMemory {

/// From now on, when memory is asked for and there is none, the process writes one line to standard
/// error and ends with ExitStatus::OutOfMemory. The service then starts the panel again, with the
/// memory that it had at the beginning. To be called once, before anything else.
void endTheProcess();

} // namespace outOfMemory
