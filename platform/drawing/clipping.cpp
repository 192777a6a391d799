// The clip of a context.
#include "platform/drawing/device_context.h"

using namespace platform;

namespace
{

/// NULLREGION, SIMPLEREGION or COMPLEXREGION.
int Complexity(const Region& region)
{
    return region.Empty() ? NULLREGION : region.Boxes().size() == 1 ? SIMPLEREGION : COMPLEXREGION;
}

} // namespace

int ExcludeClipRect(HDC dc, int left, int top, int right, int bottom)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr)
        return Fail(ERROR_INVALID_HANDLE, ERROR);
    Region clip = context->Clip();
    clip.Remove(Region(context->ToSurface(RECT{left, top, right, bottom})));
    context->SetClip(std::move(clip));
    return Complexity(context->Clip());
}

int GetClipBox(HDC dc, LPRECT box)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr || box == nullptr)
        return Fail(ERROR_INVALID_HANDLE, ERROR);
    const Region& clip = context->Clip();
    *box = clip.Bounds();
    if (!clip.Empty())
    {
        const POINT offset = context->Offset();
        *box = {box->left - offset.x, box->top - offset.y, box->right - offset.x, box->bottom - offset.y};
    }
    return Complexity(clip);
}
