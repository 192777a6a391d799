// Owned pixman images.
#pragma once

#include "platform/screen/surface.h"

#include "windef.h"

#include <memory>
#include <pixman.h>

namespace platform
{

struct PixmanImageCloser
{
    void operator()(pixman_image_t* image) const { pixman_image_unref(image); }
};
using PixmanImage = std::unique_ptr<pixman_image_t, PixmanImageCloser>;

/// An image on a surface's pixels, which must outlive it.
inline PixmanImage ImageOn(const Surface& surface, pixman_format_code_t format = PIXMAN_a8r8g8b8)
{
    return PixmanImage(pixman_image_create_bits(format, surface.width, surface.height, surface.pixels,
                                                surface.stride * static_cast<int>(sizeof(std::uint32_t))));
}

/// One colour everywhere.
inline PixmanImage SolidImage(COLORREF color, BYTE alpha = 255)
{
    const auto channel = [](COLORREF value) { return static_cast<std::uint16_t>((value & 0xFF) * 0x101); };
    const pixman_color_t solid{channel(color), channel(color >> 8), channel(color >> 16), channel(alpha)};
    return PixmanImage(pixman_image_create_solid_fill(&solid));
}

} // namespace platform
