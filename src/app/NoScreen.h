#pragma once

/// Ends the program in order when Qt finds nothing to draw on.
///
/// Qt itself aborts when it cannot load a platform plugin, after several lines of advice for
/// developers; with some plugins it goes on without a screen and fails at the first window.
namespace noScreen {

/// While it exists, a fatal message of Qt ends the program with ExitStatus::NoScreen after one line
/// on standard error, and what Qt says before that is not printed.
class Guard
{
public:
    Guard();
    ~Guard();
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
};

/// Says on standard error that there is no screen and ends the program with ExitStatus::NoScreen,
/// at once: a platform plugin that was set up by half cannot be relied upon to clean up.
[[noreturn]] void end();

} // namespace noScreen
