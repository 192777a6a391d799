// Having the heap's pages ahead.
#include "platform/base/heap.h"

#include <cstdint>
#include <cstdlib>
#include <malloc.h>
#include <sys/mman.h>

namespace platform
{

void PrepareHeap(std::size_t bytes)
{
    // From the heap's end and back to it, which then stays: no mapping of its own, no giving back.
    constexpr int most = 32 << 20; // of what malloc may be told
    constexpr std::size_t page = 4096;
    if (bytes < 16 * page || bytes > most || mallopt(M_MMAP_THRESHOLD, most) == 0 ||
        mallopt(M_TRIM_THRESHOLD, most) == 0)
    {
        return;
    }
    void* memory = std::malloc(bytes);
    if (memory == nullptr)
    {
        return;
    }
    const std::size_t before = -reinterpret_cast<std::uintptr_t>(memory) % page;
    madvise(static_cast<char*>(memory) + before, (bytes - before) / page * page, MADV_POPULATE_WRITE);
    std::free(memory);
}

} // namespace platform
