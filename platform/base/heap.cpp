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
    constexpr int kMost = 32 << 20; // of what malloc may be told
    constexpr std::size_t kPage = 4096;
    if (bytes < 16 * kPage || bytes > kMost || mallopt(M_MMAP_THRESHOLD, kMost) == 0 ||
        mallopt(M_TRIM_THRESHOLD, kMost) == 0)
        return;
    void* memory = std::malloc(bytes);
    if (memory == nullptr)
        return;
    const std::size_t before = -reinterpret_cast<std::uintptr_t>(memory) % kPage;
    madvise(static_cast<char*>(memory) + before, (bytes - before) / kPage * kPage, MADV_POPULATE_WRITE);
    std::free(memory);
}

} // namespace platform
