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

Canvas::Canvas(DeviceContext& context) : m_clip(context.Clip())
{
    if (context.OnSurface())
    {
        m_pixels = *context.FixedSurface();
        return;
    }
    BitmapObject& bitmap = *context.Bitmap();
    if (bitmap.bitsPerPixel == 32)
    {
        m_pixels = bitmap.Pixels();
        return;
    }
    m_converted = &bitmap;
    m_pixels = ReadPixels(bitmap, m_copy);
}

Canvas::~Canvas()
{
    if (m_converted != nullptr)
        WritePixels(m_pixels, *m_converted);
}

void Canvas::Fill(const ClipRegion& region, std::uint32_t pixel) const
{
    ClipRegion visible(region);
    visible.Intersect(m_clip);
    for (const pixman_box32_t& box : visible.Boxes())
        for (int y = box.y1; y < box.y2; ++y)
            std::fill_n(PixelAt(m_pixels, box.x1, y), box.x2 - box.x1, pixel);
}

void Canvas::Fill(const RECT& rect, std::uint32_t pixel) const
{
    Fill(ClipRegion(rect), pixel);
}

SourcePixels::SourcePixels(DeviceContext& context)
{
    if (context.OnSurface())
    {
        pixels = *context.FixedSurface();
        return;
    }
    BitmapObject& bitmap = *context.Bitmap();
    pixels = bitmap.bitsPerPixel == 32 ? bitmap.Pixels() : ReadPixels(bitmap, m_copy);
}

} // namespace platform
