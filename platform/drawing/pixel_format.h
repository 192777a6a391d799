// From bitmaps of 1, 4, 8 or 24 bits per pixel to 32-bit pixels.
#pragma once

#include "platform/drawing/gdi_objects.h"

#include <cstdint>
#include <vector>

namespace platform
{

/// Bytes of a row of `width` pixels: rows are padded to 4 bytes, as in every Windows bitmap.
int RowBytes(int width, int bitsPerPixel);

/// One pixel as 0x00RRGGBB. `row` is the row's first byte; an index beyond the colour table is black.
std::uint32_t ReadPixel(const unsigned char* row, int x, int bitsPerPixel, const std::vector<RGBQUAD>& colors);

/// Fills `storage` with the bitmap's pixels and returns a surface on it.
Surface ReadPixels(BitmapObject& bitmap, std::vector<std::uint32_t>& storage);

} // namespace platform
