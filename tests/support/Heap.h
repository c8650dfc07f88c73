#pragma once

#include <QtGlobal>

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
// of the sanitizer, whose header does not come with every compiler
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#else
#include <malloc.h>
#endif

// Bytes that the program holds on its heap: what is in use, not what the system has given for it.
inline qsizetype heapInUse()
{
#if defined(__SANITIZE_ADDRESS__)
    return static_cast<qsizetype>(__sanitizer_get_current_allocated_bytes());
#else
    const auto info = ::mallinfo2();
    return static_cast<qsizetype>(info.uordblks + info.hblkhd);
#endif
}
