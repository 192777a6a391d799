// Reading pixels of less than 32 bits: high bits of a byte are the left pixels, as in every Windows bitmap.
#include "platform/drawing/pixel_format.h"

#include "platform/drawing/device_context.h"

namespace platform
{
namespace
{

constexpr std::uint32_t PixelFromQuad(const RGBQUAD& quad)
{
    return static_cast<std::uint32_t>(quad.rgbRed) << 16 | static_cast<std::uint32_t>(quad.rgbGreen) << 8 |
           quad.rgbBlue;
}

unsigned IndexAt(const unsigned char* row, int x, int bits)
{
    const int perByte = 8 / bits;
    const int shift = (perByte - 1 - x % perByte) * bits;
    return row[x / perByte] >> shift & ((1u << bits) - 1);
}

} // namespace

int RowBytes(int width, int bitsPerPixel)
{
    return (width * bitsPerPixel + 31) / 32 * 4;
}

std::uint32_t ReadPixel(const unsigned char* row, int x, int bitsPerPixel, const std::vector<RGBQUAD>& colors)
{
    if (bitsPerPixel == 24)
    {
        const unsigned char* p = row + 3 * static_cast<std::ptrdiff_t>(x);
        return static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[1]) << 8 | p[0];
    }
    const unsigned index = IndexAt(row, x, bitsPerPixel);
    return index < colors.size() ? PixelFromQuad(colors[index]) : 0;
}

Surface ReadPixels(BitmapObject& bitmap, std::vector<std::uint32_t>& storage)
{
    storage.resize(static_cast<std::size_t>(bitmap.width) * static_cast<std::size_t>(bitmap.height));
    const Surface surface{storage.data(), bitmap.width, bitmap.height, bitmap.width};
    for (int y = 0; y < bitmap.height; ++y)
        for (int x = 0; x < bitmap.width; ++x)
            *PixelAt(surface, x, y) = ReadPixel(bitmap.Row(y), x, bitmap.bitsPerPixel, bitmap.colors);
    return surface;
}

} // namespace platform
