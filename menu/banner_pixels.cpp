// Compositing the title onto the banner: arithmetic on pixels.
#include "menu/banner.h"

namespace
{

constexpr std::uint8_t Channel(std::uint32_t pixel, int shift)
{
    return static_cast<std::uint8_t>(pixel >> shift);
}

std::uint32_t BlendPixel(std::uint32_t under, std::uint32_t color, std::uint8_t mask)
{
    std::uint32_t pixel = static_cast<std::uint32_t>(BlendAlpha(Channel(under, 24), mask)) << 24;
    for (int shift = 0; shift < 24; shift += 8)
        pixel |= static_cast<std::uint32_t>(BlendChannel(Channel(under, shift), Channel(color, shift), mask)) << shift;
    return pixel;
}

} // namespace

void CompositeTitle(std::uint32_t* banner, SIZE bannerSize, const std::uint32_t* mask, SIZE maskSize,
                    std::uint32_t color)
{
    for (LONG x = 0; x < maskSize.cy; ++x)
    {
        for (LONG i = 0; i < maskSize.cx; ++i)
        {
            const std::uint8_t coverage = Channel(mask[x * maskSize.cx + i], 0);
            std::uint32_t& pixel = banner[(bannerSize.cy - 1 - i) * bannerSize.cx + x];
            pixel = BlendPixel(pixel, color, coverage);
        }
    }
}
