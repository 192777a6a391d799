// Device contexts on windows: what of a window can be seen, and keeping account of what was drawn.
#include "platform/windowing/window_dc.h"

#include "platform/base/fault_points.h"
#include "platform/drawing/surface_dc.h"

#include <algorithm>

namespace platform
{
namespace
{

struct OpenDC
{
    HDC dc = nullptr;
    HWND window = nullptr;
    Region damage;
    std::shared_ptr<void> surface; ///< keeps the pixels while the window is resized
};

std::vector<OpenDC>& OpenContexts()
{
    static auto& contexts = *new std::vector<OpenDC>;
    return contexts;
}

POINT SurfaceOffset(const Window& window)
{
    const RECT& root = RootOf(window).rect;
    return {root.left, root.top};
}

void RemoveSiblingsAbove(Region& visible, const Window& window, POINT parentOrigin)
{
    for (const Window* sibling : window.parent->children)
    {
        if (sibling == &window)
            return;
        const bool covers = (sibling->style & WS_VISIBLE) != 0 && (sibling->exStyle & WS_EX_TRANSPARENT) == 0;
        if (covers)
            visible.Remove(Region(Moved(sibling->rect, parentOrigin.x, parentOrigin.y)));
    }
}

std::vector<OpenDC>::iterator FindOpen(HDC dc)
{
    auto& open = OpenContexts();
    return std::find_if(open.begin(), open.end(), [&](const OpenDC& candidate) { return candidate.dc == dc; });
}

void AddDamage(HWND handle, const Region& damage)
{
    Window* window = FindObject<Window>(handle);
    if (window != nullptr && IsShown(*window))
        RootOf(*window).damage.Add(damage);
}

HDC WindowContext(HWND handle, bool clientOnly)
{
    Window* window = handle != nullptr ? RequireWindow(handle) : nullptr;
    if (handle != nullptr && window == nullptr)
        return nullptr;
    if (window == nullptr)
    {
        // The screen's own context measures; it has no pixels.
        static const Surface& none = *new Surface;
        return CreateSurfaceDC(none, POINT{}, {});
    }
    Region visible = VisibleRegion(*window, clientOnly);
    return OpenContext(*window, clientOnly, visible, visible);
}

} // namespace

Region VisibleRegion(const Window& window, bool clientOnly)
{
    const POINT offset = SurfaceOffset(window);
    const Window& root = RootOf(window);
    if (!IsShown(window) || root.native == 0 || !window.redraw)
        return {};
    const POINT parentOrigin = window.parent != nullptr ? ClientOrigin(*window.parent) : POINT{};
    const RECT own = clientOnly ? window.client : window.rect;
    Region visible(Moved(own, parentOrigin.x - offset.x, parentOrigin.y - offset.y));
    for (const Window* w = &window; w->parent != nullptr; w = w->parent)
    {
        const POINT screenOrigin = ClientOrigin(*w->parent);
        const POINT origin{screenOrigin.x - offset.x, screenOrigin.y - offset.y};
        const RECT& area = w->parent->client;
        visible.Intersect(Region(RECT{origin.x, origin.y, origin.x + Width(area), origin.y + Height(area)}));
        RemoveSiblingsAbove(visible, *w, origin);
    }
    if ((window.style & WS_CLIPCHILDREN) != 0)
    {
        const POINT screenOrigin = ClientOrigin(window);
        for (const Window* child : window.children)
            if ((child->style & WS_VISIBLE) != 0)
                visible.Remove(Region(Moved(child->rect, screenOrigin.x - offset.x, screenOrigin.y - offset.y)));
    }
    return visible;
}

HDC OpenContext(Window& window, bool clientOrigin, const Region& clip, Region damage)
{
    const Window& root = RootOf(window);
    const POINT offset = SurfaceOffset(window);
    const RECT place = ScreenRect(window);
    const POINT origin = clientOrigin ? ClientOrigin(window) : POINT{place.left, place.top};
    const HDC dc =
        CreateSurfaceDC(screen::WindowSurface(root.native), {origin.x - offset.x, origin.y - offset.y}, clip);
    if (dc != nullptr)
        OpenContexts().push_back({dc, window.handle, std::move(damage), screen::KeepSurface(root.native)});
    return dc;
}

bool CloseContext(HDC dc)
{
    const auto found = FindOpen(dc);
    if (found == OpenContexts().end())
        return false;
    AddDamage(found->window, found->damage);
    OpenContexts().erase(found);
    DeleteSurfaceDC(dc);
    return true;
}

HWND WindowOfContext(HDC dc)
{
    const auto found = FindOpen(dc);
    return found != OpenContexts().end() ? found->window : nullptr;
}

void CloseContextsOf(HWND window)
{
    auto& open = OpenContexts();
    for (;;)
    {
        const auto found = std::find_if(open.begin(), open.end(), [&](const OpenDC& c) { return c.window == window; });
        if (found == open.end())
            return;
        CloseContext(found->dc);
    }
}

} // namespace platform

using namespace platform;

HDC GetDC(HWND window)
{
    return FaultPoint("GetDC") ? Fail<HDC>(ERROR_NOT_ENOUGH_MEMORY, nullptr) : WindowContext(window, true);
}

HDC GetWindowDC(HWND window)
{
    return FaultPoint("GetWindowDC") ? Fail<HDC>(ERROR_NOT_ENOUGH_MEMORY, nullptr) : WindowContext(window, false);
}

int ReleaseDC(HWND window, HDC dc)
{
    if (window == nullptr && dc != nullptr && WindowOfContext(dc) == nullptr)
    {
        DeleteSurfaceDC(dc);
        return 1;
    }
    return CloseContext(dc);
}
