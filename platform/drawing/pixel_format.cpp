// Reading and writing pixels of less than 32 bits: high bits of a byte are the left pixels, as in every Windows bitmap.
#include "platform/drawing/pixel_format.h"

#include "platform/drawing/device_context.h"

#include <limits>

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

void SetIndexAt(unsigned char* row, int x, int bits, unsigned index)
{
    const int perByte = 8 / bits;
    const int shift = (perByte - 1 - x % perByte) * bits;
    const unsigned mask = ((1u << bits) - 1) << shift;
    unsigned char& byte = row[x / perByte];
    byte = static_cast<unsigned char>((byte & ~mask) | index << shift);
}

int Distance(std::uint32_t a, std::uint32_t b)
{
    int sum = 0;
    for (int shift = 0; shift < 24; shift += 8)
    {
        const int difference = static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF);
        sum += difference * difference;
    }
    return sum;
}

/// Finds nearest colours, remembering the last answer: neighbours are mostly alike.
class NearestColor
{
public:
    explicit NearestColor(const std::vector<RGBQUAD>& colors) : m_colors(colors) {}

    unsigned operator()(std::uint32_t pixel)
    {
        if (pixel != m_lastPixel)
        {
            m_lastPixel = pixel;
            m_lastIndex = Search(pixel & 0xFFFFFF);
        }
        return m_lastIndex;
    }

private:
    unsigned Search(std::uint32_t pixel) const
    {
        unsigned best = 0;
        int bestDistance = std::numeric_limits<int>::max();
        for (unsigned i = 0; i < m_colors.size() && bestDistance != 0; ++i)
        {
            const int distance = Distance(pixel, PixelFromQuad(m_colors[i]));
            if (distance < bestDistance)
            {
                best = i;
                bestDistance = distance;
            }
        }
        return best;
    }

    const std::vector<RGBQUAD>& m_colors;
    std::uint64_t m_lastPixel = ~std::uint64_t{0}; ///< wider than a pixel, so that no pixel equals the start value
    unsigned m_lastIndex = 0;
};

void WriteRow24(const std::uint32_t* from, unsigned char* to, int width)
{
    for (int x = 0; x < width; ++x, to += 3)
    {
        to[0] = static_cast<unsigned char>(from[x]);
        to[1] = static_cast<unsigned char>(from[x] >> 8);
        to[2] = static_cast<unsigned char>(from[x] >> 16);
    }
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

void WritePixels(const Surface& pixels, BitmapObject& bitmap)
{
    NearestColor nearest(bitmap.colors);
    for (int y = 0; y < bitmap.height; ++y)
    {
        const std::uint32_t* from = PixelAt(pixels, 0, y);
        if (bitmap.bitsPerPixel == 24)
        {
            WriteRow24(from, bitmap.Row(y), bitmap.width);
            continue;
        }
        for (int x = 0; x < bitmap.width; ++x)
        {
            // An unchanged pixel keeps its index: a table may hold one colour twice.
            const bool same = ReadPixel(bitmap.Row(y), x, bitmap.bitsPerPixel, bitmap.colors) == (from[x] & 0xFFFFFF);
            if (!same)
                SetIndexAt(bitmap.Row(y), x, bitmap.bitsPerPixel, nearest(from[x]));
        }
    }
}

} // namespace platform
