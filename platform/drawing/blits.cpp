// Copying pixels: BitBlt, StretchBlt, AlphaBlend, PatBlt.
//
// All work on 32-bit pixels whose fourth byte is copied as it is (GDI gives it a meaning in AlphaBlend only).
// Stretching takes the nearest source pixel: a destination pixel i of n shows source pixel floor((2i + 1) * m / 2n) of
// m, the one under its centre. Raster operations other than SRCCOPY, PATCOPY, BLACKNESS and DSTINVERT are not
// implemented.
#include "platform/drawing/device_context.h"
#include "platform/drawing/icon.h"

#include <algorithm>
#include <cstring>

using namespace platform;

namespace
{

/// A rectangle as the blit calls give it: the size may be negative, which mirrors.
struct Extent
{
    int x;
    int y;
    int width;
    int height;

    RECT Normal() const
    {
        return {std::min(x, x + width), std::min(y, y + height), std::max(x, x + width), std::max(y, y + height)};
    }
};

int Nearest(int i, int count, int sourceCount)
{
    return static_cast<int>((2 * static_cast<std::int64_t>(i) + 1) * sourceCount /
                            (2 * static_cast<std::int64_t>(count)));
}

/// For each pixel of [from, to) along one axis, the source pixel that it shows.
std::vector<int> MapAxis(int from, int to, int start, int size, int sourceStart, int sourceSize)
{
    std::vector<int> map;
    map.reserve(static_cast<std::size_t>(to - from));
    const int first = std::min(start, start + size);
    const int count = std::abs(size);
    const int sourceFirst = std::min(sourceStart, sourceStart + sourceSize);
    const int sourceCount = std::abs(sourceSize);
    const bool mirrored = (size < 0) != (sourceSize < 0);
    for (int position = from; position < to; ++position)
    {
        const int offset = Nearest(position - first, count, sourceCount);
        map.push_back(sourceFirst + (mirrored ? sourceCount - 1 - offset : offset));
    }
    return map;
}

/// Rows of a box that may overlap its source, in the order that reads each row before it is overwritten.
template <typename Copy>
void ForRows(const pixman_box32_t& box, bool upward, Copy copy)
{
    if (upward)
    {
        for (int y = box.y2 - 1; y >= box.y1; --y)
            copy(y);
        return;
    }
    for (int y = box.y1; y < box.y2; ++y)
        copy(y);
}

/// Moves pixels from (x - dx, y - dy) to (x, y) for all (x, y) in the box.
void CopyBox(const Surface& to, const Surface& from, const pixman_box32_t& box, int dx, int dy)
{
    const auto bytes = static_cast<std::size_t>(box.x2 - box.x1) * sizeof(std::uint32_t);
    ForRows(box, dy > 0,
            [&](int y) { std::memmove(PixelAt(to, box.x1, y), PixelAt(from, box.x1 - dx, y - dy), bytes); });
}

/// The part of a region that an unscaled copy displaced by (dx, dy) can fill from the source.
ClipRegion Reachable(const Surface& from, int dx, int dy)
{
    return ClipRegion(RECT{dx, dy, from.width + dx, from.height + dy});
}

void CopyUnscaled(const Canvas& canvas, const Surface& from, const RECT& target, int dx, int dy)
{
    ClipRegion area(target);
    area.Intersect(canvas.Clip());
    area.Intersect(Reachable(from, dx, dy));
    if (area.Boxes().size() > 1 && from.pixels == canvas.Pixels().pixels)
    {
        // Boxes of a scrolled picture overlap each other's sources: copy through the side.
        std::vector<std::uint32_t> copy(static_cast<std::size_t>(from.width) * static_cast<std::size_t>(from.height));
        const Surface aside{copy.data(), from.width, from.height, from.width};
        CopyBox(aside, from, pixman_box32_t{0, 0, from.width, from.height}, 0, 0);
        for (const pixman_box32_t& box : area.Boxes())
            CopyBox(canvas.Pixels(), aside, box, dx, dy);
        return;
    }
    for (const pixman_box32_t& box : area.Boxes())
        CopyBox(canvas.Pixels(), from, box, dx, dy);
}

/// The stretched source, over the part of the destination that `bounds` says; source pixels outside the source's
/// surface are 0.
std::vector<std::uint32_t> Stretch(const Surface& from, const Extent& target, const Extent& source, const RECT& bounds)
{
    const std::vector<int> columns = MapAxis(bounds.left, bounds.right, target.x, target.width, source.x, source.width);
    const std::vector<int> rows = MapAxis(bounds.top, bounds.bottom, target.y, target.height, source.y, source.height);
    std::vector<std::uint32_t> pixels(columns.size() * rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        std::uint32_t* const line = pixels.data() + i * columns.size();
        // Stretching far repeats rows: most are copies of the one above.
        if (i > 0 && rows[i] == rows[i - 1])
        {
            std::copy_n(line - columns.size(), columns.size(), line);
            continue;
        }
        const bool rowInside = rows[i] >= 0 && rows[i] < from.height;
        std::transform(columns.begin(), columns.end(), line,
                       [&](int column) {
                           return rowInside && column >= 0 && column < from.width ? *PixelAt(from, column, rows[i]) : 0;
                       });
    }
    return pixels;
}

/// True when nothing of the source would show: blending it can be left out.
bool IsTransparent(const Surface& from, const RECT& area)
{
    const RECT all{0, 0, from.width, from.height};
    RECT inside{};
    if (!IntersectRect(&inside, &all, &area))
        return true;
    for (LONG y = inside.top; y < inside.bottom; ++y)
    {
        const std::uint32_t* const row = PixelAt(from, inside.left, y);
        if (std::any_of(row, row + (inside.right - inside.left), [](std::uint32_t pixel) { return pixel != 0; }))
            return false;
    }
    return true;
}

RECT VisiblePart(const Canvas& canvas, const Extent& target)
{
    ClipRegion area(target.Normal());
    area.Intersect(canvas.Clip());
    return area.Extents();
}

void CopyStretched(const Canvas& canvas, const Surface& from, const Extent& target, const Extent& source)
{
    const RECT bounds = VisiblePart(canvas, target);
    std::vector<std::uint32_t> pixels = Stretch(from, target, source, bounds);
    const int width = bounds.right - bounds.left;
    const Surface stretched{pixels.data(), width, bounds.bottom - bounds.top, width};
    CopyUnscaled(canvas, stretched, bounds, bounds.left, bounds.top);
}

struct ImageCloser
{
    void operator()(pixman_image_t* image) const { pixman_image_unref(image); }
};
using UniqueImage = std::unique_ptr<pixman_image_t, ImageCloser>;

UniqueImage ImageOn(const Surface& surface, pixman_format_code_t format)
{
    return UniqueImage(pixman_image_create_bits(format, surface.width, surface.height, surface.pixels,
                                                surface.stride * static_cast<int>(sizeof(std::uint32_t))));
}

UniqueImage ConstantAlpha(BYTE alpha)
{
    const pixman_color_t color{0, 0, 0, static_cast<std::uint16_t>(alpha * 0x101)};
    return alpha == 255 ? nullptr : UniqueImage(pixman_image_create_solid_fill(&color));
}

/// Blends `from` with its pixel (sourceX, sourceY) at the target's top left corner.
void BlendUnscaled(const Canvas& canvas, const Surface& from, const RECT& target, int sourceX, int sourceY,
                   const BLENDFUNCTION& blend)
{
    const UniqueImage source = ImageOn(from, blend.AlphaFormat == AC_SRC_ALPHA ? PIXMAN_a8r8g8b8 : PIXMAN_x8r8g8b8);
    const UniqueImage destination = ImageOn(canvas.Pixels(), PIXMAN_a8r8g8b8);
    const UniqueImage mask = ConstantAlpha(blend.SourceConstantAlpha);
    pixman_image_set_clip_region32(destination.get(), canvas.Clip().Raw());
    pixman_image_composite32(PIXMAN_OP_OVER, source.get(), mask.get(), destination.get(), sourceX, sourceY, 0, 0,
                             target.left, target.top, target.right - target.left, target.bottom - target.top);
}

void BlendStretched(const Canvas& canvas, const Surface& from, const Extent& target, const Extent& source,
                    const BLENDFUNCTION& blend)
{
    if (blend.AlphaFormat == AC_SRC_ALPHA && IsTransparent(from, source.Normal()))
        return;
    const RECT bounds = VisiblePart(canvas, target);
    std::vector<std::uint32_t> pixels = Stretch(from, target, source, bounds);
    const int width = bounds.right - bounds.left;
    if (!pixels.empty())
        BlendUnscaled(canvas, {pixels.data(), width, bounds.bottom - bounds.top, width}, bounds, 0, 0, blend);
}

bool InvertsOrFills(DWORD rop)
{
    return rop == PATCOPY || rop == BLACKNESS || rop == DSTINVERT;
}

void Invert(const Canvas& canvas, const RECT& rect)
{
    ClipRegion area(rect);
    area.Intersect(canvas.Clip());
    for (const pixman_box32_t& box : area.Boxes())
    {
        for (int y = box.y1; y < box.y2; ++y)
        {
            std::uint32_t* row = PixelAt(canvas.Pixels(), 0, y);
            std::for_each(row + box.x1, row + box.x2, [](std::uint32_t& pixel) { pixel = ~pixel; });
        }
    }
}

void FillByOperation(DeviceContext& context, const RECT& target, DWORD rop)
{
    const Canvas canvas(context);
    if (rop == DSTINVERT)
        Invert(canvas, target);
    else if (rop == BLACKNESS)
        canvas.Fill(target, 0);
    else if (!context.Brush().hollow)
        canvas.Fill(target, PixelFromColor(context.Brush().color));
}

Extent OnSurface(const DeviceContext& context, int x, int y, int width, int height)
{
    const POINT offset = context.Offset();
    return {x + offset.x, y + offset.y, width, height};
}

bool Inside(const RECT& rect, const Surface& surface)
{
    return rect.left >= 0 && rect.top >= 0 && rect.right <= surface.width && rect.bottom <= surface.height;
}

} // namespace

BOOL PatBlt(HDC dc, int x, int y, int width, int height, DWORD rop)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr || !InvertsOrFills(rop))
        return Fail(context == nullptr ? ERROR_INVALID_HANDLE : ERROR_NOT_SUPPORTED, FALSE);
    FillByOperation(*context, OnSurface(*context, x, y, width, height).Normal(), rop);
    return TRUE;
}

BOOL BitBlt(HDC destination, int x, int y, int width, int height, HDC source, int sourceX, int sourceY, DWORD rop)
{
    return InvertsOrFills(rop)
               ? PatBlt(destination, x, y, width, height, rop)
               : StretchBlt(destination, x, y, width, height, source, sourceX, sourceY, width, height, rop);
}

BOOL StretchBlt(HDC destination, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                int sourceWidth, int sourceHeight, DWORD rop)
{
    if (InvertsOrFills(rop))
        return PatBlt(destination, x, y, width, height, rop);
    DeviceContext* to = FindContext(destination);
    DeviceContext* from = FindContext(source);
    if (to == nullptr || from == nullptr || rop != SRCCOPY)
        return Fail(rop != SRCCOPY ? ERROR_NOT_SUPPORTED : ERROR_INVALID_HANDLE, FALSE);
    const SourcePixels pixels(*from);
    const Canvas canvas(*to);
    const Extent target = OnSurface(*to, x, y, width, height);
    const Extent origin = OnSurface(*from, sourceX, sourceY, sourceWidth, sourceHeight);
    if (width == sourceWidth && height == sourceHeight)
        CopyUnscaled(canvas, pixels.pixels, target.Normal(), target.x - origin.x, target.y - origin.y);
    else if (sourceWidth != 0 && sourceHeight != 0)
        CopyStretched(canvas, pixels.pixels, target, origin);
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
    const Extent origin = OnSurface(*from, sourceX, sourceY, sourceWidth, sourceHeight);
    if (blend.BlendOp != AC_SRC_OVER || width < 0 || height < 0 || sourceWidth < 0 || sourceHeight < 0 ||
        !Inside(origin.Normal(), pixels.pixels))
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    const Canvas canvas(*to);
    const Extent target = OnSurface(*to, x, y, width, height);
    if (width == sourceWidth && height == sourceHeight)
        BlendUnscaled(canvas, pixels.pixels, target.Normal(), origin.x, origin.y, blend);
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
    const RECT target = OnSurface(*context, x, y, image.width, image.height).Normal();
    // Read only, though a surface has no way to say so.
    const Surface from{const_cast<std::uint32_t*>(image.pixels.data()), image.width, image.height, image.width};
    BlendUnscaled(canvas, from, target, 0, 0, BLENDFUNCTION{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA});
    return true;
}
