// Some libraries below Qt do not look at what malloc() gives them, and a panel without memory would
// crash in them. The functions here take the place of the C library's in the whole process;
// they do what those do, and end the panel in order where those would give nothing.
#include "app/OutOfMemory.h"

#include <cstdlib>
#include <malloc.h>

#ifdef __GLIBC__

namespace {

// Whoever asks for as much as this at once looks at what it gets; Qt's pictures do.
constexpr std::size_t LargeBytes = std::size_t{64} * 1024 * 1024;

void* checked(void* memory, std::size_t bytes)
{
    if (memory == nullptr && bytes > 0 && bytes < LargeBytes) {
        outOfMemory::end();
    }
    return memory;
}

} // namespace

extern "C" {

void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* memory, std::size_t bytes);

void* malloc(std::size_t bytes)
{
    return checked(__libc_malloc(bytes), bytes);
}

void* calloc(std::size_t count, std::size_t bytes)
{
    return checked(__libc_calloc(count, bytes), count < LargeBytes ? count * bytes : LargeBytes);
}

void* realloc(void* memory, std::size_t bytes)
{
    return checked(__libc_realloc(memory, bytes), bytes);
}

} // extern "C"

#endif
