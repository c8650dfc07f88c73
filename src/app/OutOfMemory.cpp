#include "app/OutOfMemory.h"

#include "app/CommandLine.h"

#include <cstdlib>
#include <exception>
#include <new>

#include <unistd.h>

namespace {

std::terminate_handler g_otherwise = nullptr;

// Qt takes memory by malloc() and throws std::bad_alloc where that fails; nobody catches it.
void endOfUncaught()
{
    if (const std::exception_ptr thrown = std::current_exception()) {
        try {
            std::rethrow_exception(thrown);
        } catch (const std::bad_alloc&) {
            outOfMemory::end();
        } catch (...) {
            // Not a matter of memory.
        }
    }
    if (g_otherwise != nullptr) {
        g_otherwise();
    }
    std::abort();
}

} // namespace

namespace outOfMemory {

// Nothing here may ask for memory, not even to format a text.
void end()
{
    constexpr char Text[] = "qn740-panel: out of memory\n";
    if (::write(STDERR_FILENO, Text, sizeof Text - 1) < 0) {
        // There is nobody to whom it could be said.
    }
    std::_Exit(static_cast<int>(ExitStatus::OutOfMemory));
}

void endTheProcess()
{
    std::set_new_handler(outOfMemory::end);
    g_otherwise = std::set_terminate(endOfUncaught);
}

} // namespace outOfMemory
