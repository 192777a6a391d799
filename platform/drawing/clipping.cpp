// Clip regions of contexts, and region objects.
#include "platform/drawing/device_context.h"

#include <algorithm>

using namespace platform;

namespace
{

/// The caller's clip to narrow down: all that is visible when none is set.
ClipRegion CurrentClip(DeviceContext& context)
{
    return context.state.clip ? *context.state.clip : context.Visible();
}

template <typename Change>
int ChangeClip(HDC dc, Change change)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr)
        return Fail(ERROR_INVALID_HANDLE, ERROR);
    ClipRegion clip = CurrentClip(*context);
    change(*context, clip);
    context->SetClip(std::move(clip));
    return context->Clip().Complexity();
}

bool CombineInto(ClipRegion& result, const ClipRegion& b, int mode)
{
    switch (mode)
    {
    case RGN_AND:
        result.Intersect(b);
        return true;
    case RGN_OR:
        result.Unite(b);
        return true;
    case RGN_DIFF:
        result.Subtract(b);
        return true;
    case RGN_XOR:
    {
        ClipRegion both(result);
        both.Intersect(b);
        result.Unite(b);
        result.Subtract(both);
        return true;
    }
    default:
        return false;
    }
}

} // namespace

int ExcludeClipRect(HDC dc, int left, int top, int right, int bottom)
{
    return ChangeClip(
        dc,
        [&](const DeviceContext& context, ClipRegion& clip) {
            clip.Subtract(ClipRegion(context.ToSurface(RECT{left, top, right, bottom})));
        });
}

int IntersectClipRect(HDC dc, int left, int top, int right, int bottom)
{
    return ChangeClip(
        dc,
        [&](const DeviceContext& context, ClipRegion& clip) {
            clip.Intersect(ClipRegion(context.ToSurface(RECT{left, top, right, bottom})));
        });
}

int GetClipBox(HDC dc, LPRECT box)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr || box == nullptr)
        return Fail(ERROR_INVALID_HANDLE, ERROR);
    const ClipRegion& clip = context->Clip();
    *box = clip.Extents();
    if (!clip.Empty())
    {
        const POINT offset = context->Offset();
        *box = {box->left - offset.x, box->top - offset.y, box->right - offset.x, box->bottom - offset.y};
    }
    return clip.Complexity();
}

// The region is in device coordinates: the viewport origin does not move it.
int SelectClipRgn(HDC dc, HRGN region)
{
    DeviceContext* context = FindContext(dc);
    const RegionObject* object = FindObject<RegionObject>(region);
    if (context == nullptr || (region != nullptr && object == nullptr))
        return Fail(ERROR_INVALID_HANDLE, ERROR);
    if (object == nullptr)
    {
        context->SetClip(std::nullopt);
        return context->Clip().Complexity();
    }
    ClipRegion clip(object->region);
    clip.Translate(context->Origin().x, context->Origin().y);
    context->SetClip(std::move(clip));
    return context->Clip().Complexity();
}

BOOL RectVisible(HDC dc, const RECT* rect)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr || rect == nullptr)
        return Fail(ERROR_INVALID_HANDLE, FALSE);
    ClipRegion wanted(context->ToSurface(*rect));
    wanted.Intersect(context->Clip());
    return !wanted.Empty();
}

HRGN CreateRectRgn(int left, int top, int right, int bottom)
{
    // Corners come in any order.
    const RECT rect{std::min(left, right), std::min(top, bottom), std::max(left, right), std::max(top, bottom)};
    return OpenHandle<HRGN>("CreateRectRgn", std::make_unique<RegionObject>(ClipRegion(rect)));
}

int CombineRgn(HRGN destination, HRGN a, HRGN b, int mode)
{
    RegionObject* to = FindObject<RegionObject>(destination);
    const RegionObject* first = FindObject<RegionObject>(a);
    const RegionObject* second = FindObject<RegionObject>(b);
    if (to == nullptr || first == nullptr || (mode != RGN_COPY && second == nullptr))
        return Fail(ERROR_INVALID_HANDLE, ERROR);
    ClipRegion result(first->region);
    if (mode != RGN_COPY && !CombineInto(result, second->region, mode))
        return Fail(ERROR_INVALID_PARAMETER, ERROR);
    to->region = result;
    return result.Complexity();
}

int GetRgnBox(HRGN region, LPRECT box)
{
    const RegionObject* object = FindObject<RegionObject>(region);
    if (object == nullptr || box == nullptr)
        return Fail(ERROR_INVALID_HANDLE, ERROR);
    *box = object->region.Extents();
    return object->region.Complexity();
}
