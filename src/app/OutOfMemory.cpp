#include "app/OutOfMemory.h"

#include "app/CommandLine.h"
#include "app/ErrorLine.h"

#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>

#include <unistd.h>

namespace {

std::terminate_handler g_otherwise = nullptr;

constexpr std::string_view Text = "qn740-panel: out of memory\n";
constexpr std::string_view JournalText = "<3>qn740-panel: out of memory\n";
std::string_view g_text = Text; // chosen while there is memory

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
    if (::write(STDERR_FILENO, g_text.data(), g_text.size()) < 0) {
        // There is nobody to whom it could be said.
    }
    std::_Exit(static_cast<int>(ExitStatus::OutOfMemory));
}

void endTheProcess()
{
    g_text = errorLine::isForJournal() ? JournalText : Text;
    std::set_new_handler(outOfMemory::end);
    g_otherwise = std::set_terminate(endOfUncaught);
}

} // namespace outOfMemory
