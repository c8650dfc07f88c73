#include "app/PictureMemory.h"

#include <malloc.h>

namespace pictureMemory {

void keepApart()
{
#ifdef __GLIBC__
    constexpr int PictureBytes = 65536;
    ::mallopt(M_MMAP_THRESHOLD, PictureBytes);
#endif
}

} // namespace pictureMemory
