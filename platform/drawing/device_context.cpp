// The device context: selection, saved states, clip.
#include "platform/drawing/device_context.h"

#include <algorithm>

namespace platform
{
namespace
{

/// Every memory context starts with this bitmap of one pixel, which is never shown.
HBITMAP DefaultBitmap()
{
    static const HBITMAP bitmap = []
    {
        auto object = MakeBitmap(1, 1, 32, false);
        object->permanent = true;
        return reinterpret_cast<HBITMAP>(InsertHandle(std::move(object)));
    }();
    return bitmap;
}

SelectableObject* FindSelectable(HGDIOBJ handle)
{
    return dynamic_cast<SelectableObject*>(FindHandle(reinterpret_cast<std::uintptr_t>(handle)));
}

void LetGo(HGDIOBJ handle)
{
    SelectableObject* object = FindSelectable(handle);
    if (object != nullptr && --object->selections == 0 && object->deleteWhenFree)
        TakeHandle(reinterpret_cast<std::uintptr_t>(handle));
}

void Hold(HGDIOBJ handle)
{
    if (SelectableObject* object = FindSelectable(handle))
        ++object->selections;
}

RECT BoundsOf(const Surface& surface)
{
    return {0, 0, surface.width, surface.height};
}

} // namespace

DeviceContext::DeviceContext() : HandleObject(kHandleKind)
{
    state.bitmap = DefaultBitmap();
    state.font = static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
    state.brush = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    state.pen = static_cast<HPEN>(GetStockObject(BLACK_PEN));
    for (const HGDIOBJ object : {HGDIOBJ{state.bitmap}, HGDIOBJ{state.font}, HGDIOBJ{state.brush}, HGDIOBJ{state.pen}})
        Hold(object);
}

DeviceContext::DeviceContext(const Surface& surface, POINT origin, Region visible) : DeviceContext()
{
    m_surface = surface;
    m_origin = origin;
    m_visible = std::move(visible);
    m_visible.Intersect(Region(BoundsOf(surface)));
}

DeviceContext::~DeviceContext()
{
    for (const HGDIOBJ object : {HGDIOBJ{state.bitmap}, HGDIOBJ{state.font}, HGDIOBJ{state.brush}, HGDIOBJ{state.pen}})
        LetGo(object);
}

RECT DeviceContext::ToSurface(const RECT& logical) const
{
    const POINT offset = Offset();
    return {logical.left + offset.x, logical.top + offset.y, logical.right + offset.x, logical.bottom + offset.y};
}

Region DeviceContext::Visible() const
{
    if (m_surface)
        return m_visible;
    const BitmapObject* bitmap = Bitmap();
    return Region(RECT{0, 0, bitmap->width, bitmap->height});
}

const Region& DeviceContext::Clip()
{
    if (!m_effectiveClip)
    {
        m_effectiveClip = Visible();
        if (state.clip)
            m_effectiveClip->Intersect(*state.clip);
    }
    return *m_effectiveClip;
}

void DeviceContext::SetClip(std::optional<Region> clip)
{
    state.clip = std::move(clip);
    m_effectiveClip.reset();
}

template <typename T, typename H>
HGDIOBJ DeviceContext::Exchange(H& slot, HGDIOBJ object)
{
    const HGDIOBJ previous = slot;
    Hold(object);
    slot = static_cast<H>(object);
    LetGo(previous);
    return previous;
}

HGDIOBJ DeviceContext::Select(HGDIOBJ object)
{
    const HandleObject* target = FindHandle(reinterpret_cast<std::uintptr_t>(object));
    switch (target != nullptr ? target->Kind() : HandleKind::Count)
    {
    case HandleKind::Bitmap:
        // A bitmap is in one memory context at a time, and a window's context has no bitmap to exchange.
        if (m_surface || (object != state.bitmap && object != DefaultBitmap() &&
                          static_cast<const BitmapObject*>(target)->selections > 0))
            return nullptr;
        m_effectiveClip.reset();
        return Exchange<BitmapObject>(state.bitmap, object);
    case HandleKind::Font:
        return Exchange<FontObject>(state.font, object);
    case HandleKind::Brush:
        return Exchange<BrushObject>(state.brush, object);
    case HandleKind::Pen:
        return Exchange<PenObject>(state.pen, object);
    default:
        return nullptr;
    }
}

int DeviceContext::Save()
{
    m_saved.push_back(state);
    return static_cast<int>(m_saved.size());
}

void DeviceContext::RestoreObjects(const ContextState& saved)
{
    for (const HGDIOBJ object : {HGDIOBJ{saved.bitmap}, HGDIOBJ{saved.font}, HGDIOBJ{saved.brush}, HGDIOBJ{saved.pen}})
    {
        // An object deleted since is left alone: the present one stays selected.
        Select(object);
    }
}

bool DeviceContext::Restore(int saved)
{
    const auto count = static_cast<int>(m_saved.size());
    const int level = saved < 0 ? count + saved + 1 : saved;
    if (level < 1 || level > count)
        return false;
    ContextState restored = std::move(m_saved[static_cast<std::size_t>(level) - 1]);
    m_saved.resize(static_cast<std::size_t>(level) - 1);
    RestoreObjects(restored);
    restored.bitmap = state.bitmap;
    restored.font = state.font;
    restored.brush = state.brush;
    restored.pen = state.pen;
    state = std::move(restored);
    m_effectiveClip.reset();
    return true;
}

} // namespace platform
