#pragma once

#if __has_include("app/PictureMemory.h")
#include "app/PictureMemory.h"
#endif

namespace bench {

/// Has memory allocated as in the panel's program. To be called before anything else.
inline void useMemoryAsThePanel()
{
#if __has_include("app/PictureMemory.h") // other versions of the panel do without
    pictureMemory::keepApart();
#endif
}

} // namespace bench
