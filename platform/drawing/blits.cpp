// Copying and blending pixels: BitBlt, AlphaBlend, icons.
//
// All work on 32-bit pixels whose fourth byte is copied as it is (GDI gives it a meaning in AlphaBlend only). BitBlt
// copies only (SRCCOPY), and not within one bitmap. AlphaBlend stretches to the nearest source pixel: a destination
// pixel i of n shows source pixel floor((2i + 1) * m / 2n) of m, the one under its centre.
#include "platform/drawing/device_context.h"
#include "platform/drawing/icon.h"
#include "platform/drawing/pixman_image.h"

#include <algorithm>

using namespace platform;

namespace
{

RECT OnSurface(const DeviceContext& context, int x, int y, int width, int height)
{
    return context.ToSurface(RECT{x, y, x + width, y + height});
}

/// For each pixel of [from, to) along one axis, the source pixel that it shows.
std::vector<int> MapAxis(int from, int to, int start, int size, int sourceStart, int sourceSize)
{
    std::vector<int> map;
    for (int position = from; position < to; ++position)
    {
        const std::int64_t centre = (2 * static_cast<std::int64_t>(position - start) + 1) * sourceSize;
        map.push_back(sourceStart + static_cast<int>(centre / (2 * static_cast<std::int64_t>(size))));
    }
    return map;
}

/// `source`, which lies inside its surface, stretched to `target`: the part of it that `bounds` says.
std::vector<std::uint32_t> Stretch(const Surface& from, const RECT& target, const RECT& source, const RECT& bounds)
{
    const std::vector<int> columns = MapAxis(bounds.left, bounds.right, target.left, target.right - target.left,
                                             source.left, source.right - source.left);
    const std::vector<int> rows = MapAxis(bounds.top, bounds.bottom, target.top, target.bottom - target.top, source.top,
                                          source.bottom - source.top);
    std::vector<std::uint32_t> pixels;
    pixels.reserve(columns.size() * rows.size());
    for (const int row : rows)
        for (const int column : columns)
            pixels.push_back(*PixelAt(from, column, row));
    return pixels;
}

/// True when nothing of the source would show: blending it can be left out.
bool IsTransparent(const Surface& from, const RECT& area)
{
    for (LONG y = area.top; y < area.bottom; ++y)
    {
        const std::uint32_t* const row = PixelAt(from, area.left, y);
        if (std::any_of(row, row + (area.right - area.left), [](std::uint32_t pixel) { return pixel != 0; }))
            return false;
    }
    return true;
}

/// Blends `from` with its pixel (sourceX, sourceY) at the target's top left corner.
void BlendUnscaled(const Canvas& canvas, const Surface& from, const RECT& target, int sourceX, int sourceY,
                   const BLENDFUNCTION& blend)
{
    const PixmanImage source = ImageOn(from, blend.AlphaFormat == AC_SRC_ALPHA ? PIXMAN_a8r8g8b8 : PIXMAN_x8r8g8b8);
    const PixmanImage destination = ImageOn(canvas.Pixels());
    const PixmanImage mask = blend.SourceConstantAlpha == 255 ? nullptr : SolidImage(0, blend.SourceConstantAlpha);
    pixman_image_set_clip_region32(destination.get(), canvas.Clip().Raw());
    pixman_image_composite32(PIXMAN_OP_OVER, source.get(), mask.get(), destination.get(), sourceX, sourceY, 0, 0,
                             target.left, target.top, target.right - target.left, target.bottom - target.top);
}

void BlendStretched(const Canvas& canvas, const Surface& from, const RECT& target, const RECT& source,
                    const BLENDFUNCTION& blend)
{
    if (blend.AlphaFormat == AC_SRC_ALPHA && IsTransparent(from, source))
        return;
    Region area(target);
    area.Intersect(canvas.Clip());
    const RECT bounds = area.Bounds();
    std::vector<std::uint32_t> pixels = Stretch(from, target, source, bounds);
    const int width = bounds.right - bounds.left;
    if (!pixels.empty())
        BlendUnscaled(canvas, {pixels.data(), width, bounds.bottom - bounds.top, width}, bounds, 0, 0, blend);
}

} // namespace

BOOL BitBlt(HDC destination, int x, int y, int width, int height, HDC source, int sourceX, int sourceY, DWORD rop)
{
    DeviceContext* to = FindContext(destination);
    DeviceContext* from = FindContext(source);
    if (to == nullptr || from == nullptr || rop != SRCCOPY)
        return Fail(rop != SRCCOPY ? ERROR_NOT_SUPPORTED : ERROR_INVALID_HANDLE, FALSE);
    const SourcePixels pixels(*from);
    const Canvas canvas(*to);
    const RECT target = OnSurface(*to, x, y, width, height);
    const POINT corner = from->ToSurface(POINT{sourceX, sourceY});
    const POINT shift{target.left - corner.x, target.top - corner.y};
    Region area(target);
    area.Intersect(canvas.Clip());
    area.Intersect(Region(RECT{shift.x, shift.y, pixels.pixels.width + shift.x, pixels.pixels.height + shift.y}));
    for (const pixman_box32_t& box : area.Boxes())
        for (int row = box.y1; row < box.y2; ++row)
            std::copy_n(PixelAt(pixels.pixels, box.x1 - shift.x, row - shift.y), box.x2 - box.x1,
                        PixelAt(canvas.Pixels(), box.x1, row));
    return TRUE;
}

BOOL AlphaBlend(HDC destination, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                int sourceWidth, int sourceHeight, BLENDFUNCTION blend)
{
    DeviceContext* to = FindContext(destination);
    DeviceContext* from = FindContext(source);
    if (to == nullptr || from == nullptr)
        return Fail(ERROR_INVALID_HANDLE, FALSE);
    const SourcePixels pixels(*from);
    const RECT origin = OnSurface(*from, sourceX, sourceY, sourceWidth, sourceHeight);
    const bool inside = origin.left >= 0 && origin.top >= 0 && origin.right <= pixels.pixels.width &&
                        origin.bottom <= pixels.pixels.height;
    if (blend.BlendOp != AC_SRC_OVER || width < 0 || height < 0 || sourceWidth < 0 || sourceHeight < 0 || !inside)
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    const Canvas canvas(*to);
    const RECT target = OnSurface(*to, x, y, width, height);
    if (width == sourceWidth && height == sourceHeight)
        BlendUnscaled(canvas, pixels.pixels, target, origin.left, origin.top, blend);
    else if (sourceWidth != 0 && sourceHeight != 0)
        BlendStretched(canvas, pixels.pixels, target, origin, blend);
    return TRUE;
}

bool platform::DrawIconImage(HDC dc, int x, int y, const IconImage& image)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr || image.width <= 0 || image.height <= 0)
        return false;
    const Canvas canvas(*context);
    // Read only, though a surface has no way to say so.
    const Surface from{const_cast<std::uint32_t*>(image.pixels.data()), image.width, image.height, image.width};
    BlendUnscaled(canvas, from, OnSurface(*context, x, y, image.width, image.height), 0, 0,
                  BLENDFUNCTION{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA});
    return true;
}
