// Pixels that belong to a window, and device contexts on them.
#pragma once

#include "windows.h"

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

/// A context that draws on `surface`, with its client origin at `origin` and nothing drawn outside `clip` (both in
/// surface coordinates; the region is copied, null means the whole surface). The surface must outlive it. Null when out
/// of handles.
HDC CreateSurfaceDC(const Surface& surface, POINT origin, HRGN clip);
/// Closes a context made by CreateSurfaceDC.
void DeleteSurfaceDC(HDC dc);

} // namespace platform
