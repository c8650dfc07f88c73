#include "app/SpareMemory.h"

#include <malloc.h>

namespace {

constexpr int SoonMs = 1000;

} // namespace

SpareMemory::SpareMemory()
{
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [] {
#ifdef __GLIBC__
        ::malloc_trim(0);
#endif
    });
}

void SpareMemory::giveBackSoon()
{
    if (!m_timer.isActive()) {
        m_timer.start(SoonMs);
    }
}
