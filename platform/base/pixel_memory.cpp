// Large bitmaps come in one piece from the system, which costs far less than a page fault for each of their pages.
#include "platform/base/pixel_memory.h"

#include <cstdlib>
#include <sys/mman.h>

namespace platform
{

PixelMemory::PixelMemory(std::size_t bytes)
{
    constexpr std::size_t kLarge = 64 * 1024;
    if (bytes < kLarge)
    {
        m_bytes = {static_cast<unsigned char*>(std::calloc(bytes, 1)), FreePixels{0}};
        return;
    }
    void* memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
    if (memory != MAP_FAILED)
        m_bytes = {static_cast<unsigned char*>(memory), FreePixels{bytes}};
}

void FreePixels::operator()(unsigned char* bytes) const
{
    if (mapped != 0)
        munmap(bytes, mapped);
    else
        std::free(bytes);
}

} // namespace platform
