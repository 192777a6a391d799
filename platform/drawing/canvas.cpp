// Access to a context's pixels, whatever their depth.
#include "platform/drawing/device_context.h"
#include "platform/drawing/pixel_format.h"

#include <algorithm>

namespace platform
{

Surface BitmapObject::Pixels()
{
    return {reinterpret_cast<std::uint32_t*>(Row(0)), width, height, (bottomUp ? -stride : stride) / 4};
}

namespace
{

bool CanDrawOn(const DeviceContext& context)
{
    return context.OnSurface() || context.Bitmap()->bitsPerPixel == 32;
}

const Region& Nowhere()
{
    static const Region& region = *new Region;
    return region;
}

Surface PixelsOf(DeviceContext& context)
{
    return context.OnSurface() ? *context.FixedSurface() : context.Bitmap()->Pixels();
}

} // namespace

Canvas::Canvas(DeviceContext& context)
    : m_pixels(CanDrawOn(context) ? PixelsOf(context) : Surface{}),
      m_clip(CanDrawOn(context) ? context.Clip() : Nowhere())
{
}

void Canvas::Fill(const Region& region, std::uint32_t pixel) const
{
    Region visible(region);
    visible.Intersect(m_clip);
    for (const pixman_box32_t& box : visible.Boxes())
        for (int y = box.y1; y < box.y2; ++y)
            std::fill_n(PixelAt(m_pixels, box.x1, y), box.x2 - box.x1, pixel);
}

void Canvas::Fill(const RECT& rect, std::uint32_t pixel) const
{
    Fill(Region(rect), pixel);
}

SourcePixels::SourcePixels(DeviceContext& context)
    : pixels(CanDrawOn(context) ? PixelsOf(context) : ReadPixels(*context.Bitmap(), m_copy))
{
}

} // namespace platform
