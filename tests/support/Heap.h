#pragma once

#include <QtGlobal>

#include <cstddef>

#if defined(QN740_SANITIZED)
// Not every compiler installs the header of the sanitizer.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#else
#include <malloc.h>
#endif

/// \return the bytes in use on the heap of the program, without the free memory that the
/// allocator keeps
inline qsizetype heapInUse()
{
#if defined(QN740_SANITIZED)
    return static_cast<qsizetype>(__sanitizer_get_current_allocated_bytes());
#else
    const auto info = ::mallinfo2();
    return static_cast<qsizetype>(info.uordblks + info.hblkhd);
#endif
}
