// The pixels of a window of the display.
#pragma once

#include <cstdint>

namespace platform
{

/// 32 bits per pixel, B G R X in memory, rows from the top. Does not own its pixels.
struct Surface
{
    std::uint32_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    int stride = 0; ///< pixels from one row to the next
};

} // namespace platform
