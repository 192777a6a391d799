// Memory for the pixels of one bitmap, zeroed.
#pragma once

#include <cstddef>
#include <memory>

namespace platform
{

struct FreePixels
{
    std::size_t mapped = 0; ///< bytes of a mapping of its own; 0 for memory of the heap
    void operator()(unsigned char* bytes) const;
};

class PixelMemory
{
public:
    PixelMemory() = default;
    /// Aligned for any pixel format; null bytes when out of memory.
    explicit PixelMemory(std::size_t bytes);

    unsigned char* Bytes() const { return m_bytes.get(); }

private:
    std::unique_ptr<unsigned char[], FreePixels> m_bytes;
};

} // namespace platform
