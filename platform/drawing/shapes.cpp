// Filled and framed shapes. Polygons have no outline here: whoever draws one has selected NULL_PEN.
#include "platform/drawing/device_context.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <span>
#include <utility>

using namespace platform;

namespace
{

/// The colour that a brush argument paints; nothing for an invalid brush. Values up to the number of system
/// colours are a colour's index + 1.
std::optional<std::uint32_t> BrushPixel(HBRUSH brush)
{
    constexpr std::uintptr_t kSystemColors = 31;
    const auto value = reinterpret_cast<std::uintptr_t>(brush);
    if (value >= 1 && value <= kSystemColors)
        return PixelFromColor(GetSysColor(static_cast<int>(value) - 1));
    const BrushObject* object = FindObject<BrushObject>(brush);
    return object != nullptr ? std::optional(PixelFromColor(object->color)) : std::nullopt;
}

/// The pixels along a rectangle's edge, inside.
Region FrameOf(const RECT& rect)
{
    Region frame(rect);
    frame.Remove(Region(RECT{rect.left + 1, rect.top + 1, rect.right - 1, rect.bottom - 1}));
    return frame;
}

/// Where the polygon's edges cross a row of pixels, sorted. Edges are taken at the row's upper border and include their
/// upper end only, which gives each pixel to one of two polygons that share an edge.
std::vector<int> Crossings(std::span<const POINT> points, int y)
{
    std::vector<int> crossings;
    for (std::size_t i = 0; i < points.size(); ++i)
    {
        POINT top = points[i];
        POINT bottom = points[(i + 1) % points.size()];
        if (top.y > bottom.y)
            std::swap(top, bottom);
        if (y >= top.y && y < bottom.y)
        {
            const std::int64_t height = bottom.y - top.y;
            const std::int64_t run = static_cast<std::int64_t>(bottom.x - top.x) * (y - top.y);
            // Rounded up: a pixel belongs to the shape when its left border is not left of the edge.
            crossings.push_back(top.x + static_cast<int>(run >= 0 ? (run + height - 1) / height : -(-run / height)));
        }
    }
    std::sort(crossings.begin(), crossings.end());
    return crossings;
}

void FillPolygon(const Canvas& canvas, std::span<const POINT> points, std::uint32_t pixel)
{
    const auto [top, bottom] =
        std::minmax_element(points.begin(), points.end(), [](const POINT& a, const POINT& b) { return a.y < b.y; });
    const RECT visible = canvas.Clip().Bounds();
    const int last = std::min(bottom->y, visible.bottom);
    for (int y = std::max(top->y, visible.top); y < last; ++y)
    {
        const std::vector<int> crossings = Crossings(points, y);
        for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
            canvas.Fill(RECT{crossings[i], y, crossings[i + 1], y + 1}, pixel);
    }
}

/// Every second pixel of the frame inverted; drawing it again takes it away.
void InvertDots(const Canvas& canvas, const RECT& rect)
{
    Region frame = FrameOf(rect);
    frame.Intersect(canvas.Clip());
    for (const pixman_box32_t& box : frame.Boxes())
    {
        for (int y = box.y1; y < box.y2; ++y)
            for (int x = box.x1 + ((box.x1 + y) & 1); x < box.x2; x += 2)
                *PixelAt(canvas.Pixels(), x, y) ^= 0x00FFFFFF;
    }
}

bool PaintRect(HDC dc, const RECT* rect, HBRUSH brush, bool frameOnly)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr || rect == nullptr)
        return Fail(ERROR_INVALID_HANDLE, false);
    if (const auto pixel = BrushPixel(brush))
    {
        const RECT target = context->ToSurface(*rect);
        Canvas(*context).Fill(frameOnly ? FrameOf(target) : Region(target), *pixel);
    }
    return true;
}

} // namespace

int FillRect(HDC dc, const RECT* rect, HBRUSH brush)
{
    return PaintRect(dc, rect, brush, false);
}

int FrameRect(HDC dc, const RECT* rect, HBRUSH brush)
{
    const bool hasArea = rect != nullptr && rect->right > rect->left && rect->bottom > rect->top;
    return hasArea && PaintRect(dc, rect, brush, true);
}

BOOL DrawFocusRect(HDC dc, const RECT* rect)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr || rect == nullptr)
        return Fail(ERROR_INVALID_HANDLE, FALSE);
    InvertDots(Canvas(*context), context->ToSurface(*rect));
    return TRUE;
}

BOOL Polygon(HDC dc, const POINT* points, int count)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr || points == nullptr || count < 2)
        return Fail(context == nullptr ? ERROR_INVALID_HANDLE : ERROR_INVALID_PARAMETER, FALSE);
    std::vector<POINT> corners(points, points + count);
    std::transform(corners.begin(), corners.end(), corners.begin(),
                   [&](POINT point) { return context->ToSurface(point); });
    const Canvas canvas(*context);
    FillPolygon(canvas, corners, PixelFromColor(context->Brush().color));
    return TRUE;
}

COLORREF GetPixel(HDC dc, int x, int y)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr)
        return Fail<COLORREF>(ERROR_INVALID_HANDLE, CLR_INVALID);
    const POINT at = context->ToSurface(POINT{x, y});
    if (!context->Clip().Contains(at.x, at.y))
        return CLR_INVALID;
    return ColorFromPixel(*PixelAt(SourcePixels(*context).pixels, at.x, at.y));
}
