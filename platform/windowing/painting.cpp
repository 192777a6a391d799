// Update regions: what has to be painted, in which order, and when it goes to the screen.
#include "platform/base/fault_points.h"
#include "platform/windowing/window.h"
#include "platform/windowing/window_class.h"
#include "platform/windowing/window_dc.h"

namespace platform
{
namespace
{

// Whether anything may have to be painted; spares the search through the tree when nothing has been invalidated.
constinit bool g_mayPaint = false;

RECT ClientArea(const Window& window)
{
    return {0, 0, Width(window.client), Height(window.client)};
}

/// The part of a client-coordinate region that the window's parents do not clip away.
void ClipToParents(const Window& window, Region& area)
{
    area.Intersect(Region(ClientArea(window)));
    POINT offset{};
    for (const Window* w = &window; w->parent != nullptr; w = w->parent)
    {
        offset.x += w->client.left;
        offset.y += w->client.top;
        area.Intersect(Region(Moved(ClientArea(*w->parent), -offset.x, -offset.y)));
    }
}

enum class Children
{
    IfNotClipped, ///< unless the parent has WS_CLIPCHILDREN
    Always,
};

void InvalidateTree(Window& window, Region area, bool erase, Children children);

void InvalidateChildren(Window& window, const Region& area, bool erase, Children children)
{
    if (children == Children::IfNotClipped && (window.style & WS_CLIPCHILDREN) != 0)
        return;
    for (Window* child : window.children)
    {
        Region part = area;
        part.Intersect(Region(child->rect));
        if (!part.Empty())
        {
            child->framePending |= child->HasNonClientArea();
            part.Move(-child->client.left, -child->client.top);
            InvalidateTree(*child, std::move(part), erase, children);
        }
    }
}

void InvalidateTree(Window& window, Region area, bool erase, Children children)
{
    if ((window.style & WS_VISIBLE) == 0 || !window.redraw)
        return;
    area.Intersect(Region(ClientArea(window)));
    g_mayPaint = true;
    if (area.Empty())
        return;
    window.erasePending |= erase;
    window.update.Add(area);
    InvalidateChildren(window, area, erase, children);
}

bool NeedsPaint(const Window& window)
{
    return !window.update.Empty() || window.framePending;
}

Window* FirstToPaint(const std::vector<Window*>& windows)
{
    for (Window* window : windows)
    {
        if ((window->style & WS_VISIBLE) == 0)
            continue;
        if (NeedsPaint(*window))
            return window;
        if (Window* child = FirstToPaint(window->children))
            return child;
    }
    return nullptr;
}

void PaintNow(HWND handle)
{
    const Window* window = FindObject<Window>(handle);
    if (window == nullptr || !IsShown(*window))
        return;
    if (!window->update.Empty())
        SendMessageW(handle, WM_PAINT, 0, 0);
    else if (window->framePending)
        PaintFrame(*FindObject<Window>(handle));
}

void PaintTree(HWND handle)
{
    PaintNow(handle);
    const Window* window = FindObject<Window>(handle);
    for (const HWND child : window != nullptr ? HandlesOf(window->children) : std::vector<HWND>())
        PaintTree(child);
}

/// A parent that does not clip its children would erase what a child has painted before it.
void PaintParentsFirst(const Window& window)
{
    std::vector<HWND> parents;
    for (const Window* w = window.parent; w != nullptr; w = w->parent)
        if ((w->style & WS_CLIPCHILDREN) == 0 && NeedsPaint(*w))
            parents.insert(parents.begin(), w->handle);
    for (const HWND parent : parents)
        PaintNow(parent);
}

void UpdateNow(HWND handle)
{
    const Window* window = FindObject<Window>(handle);
    if (window == nullptr || !IsShown(*window))
        return;
    PaintParentsFirst(*window);
    PaintTree(handle);
    if (Window* painted = FindObject<Window>(handle))
    {
        PresentWindow(RootOf(*painted));
        screen::Commit();
    }
}

bool IsNative(const Window& root)
{
    return root.native != 0 && (root.style & WS_VISIBLE) != 0;
}

void InvalidateAllTopLevels()
{
    for (Window* window : TopLevels())
        InvalidateWhole(*window);
}

/// Erases the background but where children that are about to be painted will have it done.
bool Erase(const Window& window, HDC dc)
{
    const int saved = SaveDC(dc);
    for (const Window* child : window.children)
    {
        const bool erasesLater = (child->style & WS_VISIBLE) != 0 && child->redraw &&
                                 (child->windowClass->style & kErasedByParent) != 0 &&
                                 (window.style & WS_CLIPCHILDREN) == 0;
        if (erasesLater)
            ExcludeClipRect(dc, child->client.left, child->client.top, child->client.right, child->client.bottom);
    }
    const LRESULT erased = SendMessageW(window.handle, WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc), 0);
    RestoreDC(dc, saved);
    return erased != 0;
}

} // namespace

void InvalidateWhole(Window& window)
{
    if (IsShown(window))
    {
        window.framePending |= window.HasNonClientArea();
        Region area(ClientArea(window));
        ClipToParents(window, area);
        InvalidateTree(window, std::move(area), true, Children::Always);
    }
}

void InvalidateUncovered(Window& parent, const RECT& rect)
{
    if (IsShown(parent))
    {
        Region area(rect);
        ClipToParents(parent, area);
        InvalidateTree(parent, std::move(area), true, Children::Always);
    }
}

Window* NextWindowToPaint()
{
    Window* window = g_mayPaint ? FirstToPaint(TopLevels()) : nullptr;
    g_mayPaint = window != nullptr;
    return window;
}

void PaintFrame(Window& window)
{
    window.framePending = false;
    SendMessageW(window.handle, WM_NCPAINT, 1, 0);
}

void PresentWindow(Window& root)
{
    if (root.damage.Empty() || !IsNative(root))
        return;
    const Surface& surface = screen::WindowSurface(root.native);
    root.damage.Intersect(Region(RECT{0, 0, surface.width, surface.height}));
    std::vector<RECT> rects;
    for (const auto& box : root.damage.Boxes())
        rects.push_back({box.x1, box.y1, box.x2, box.y2});
    screen::Present(root.native, rects);
    root.damage.Clear();
}

void PresentAll()
{
    for (Window* root : TopLevels())
        PresentWindow(*root);
    screen::Commit();
}

} // namespace platform

using namespace platform;

HDC BeginPaint(HWND handle, PAINTSTRUCT* paint)
{
    if (FaultPoint("BeginPaint"))
        return Fail<HDC>(ERROR_NOT_ENOUGH_MEMORY, nullptr);
    Window* window = paint != nullptr ? RequireWindow(handle) : nullptr;
    if (window == nullptr)
        return nullptr;
    *paint = {};
    if (window->framePending)
    {
        PaintFrame(*window);
        window = RequireWindow(handle);
        if (window == nullptr)
            return nullptr;
    }
    Region region = std::exchange(window->update, Region());
    const bool erase = std::exchange(window->erasePending, false);
    // Children share the parent's pixels: what is painted over has to be painted again.
    InvalidateChildren(*window, region, true, Children::IfNotClipped);
    const POINT origin = ClientOrigin(*window);
    const RECT& root = RootOf(*window).rect;
    region.Move(origin.x - root.left, origin.y - root.top);
    region.Intersect(VisibleRegion(*window, true));
    const RECT bounds = region.Bounds();
    paint->rcPaint = Moved(bounds, root.left - origin.x, root.top - origin.y);
    paint->hdc = OpenContext(*window, true, region, region);
    if (paint->hdc != nullptr && erase)
        paint->fErase = !Erase(*window, paint->hdc);
    return paint->hdc;
}

BOOL EndPaint(HWND, const PAINTSTRUCT* paint)
{
    if (paint != nullptr)
        CloseContext(paint->hdc);
    return TRUE;
}

BOOL InvalidateRect(HWND handle, const RECT* rect, BOOL erase)
{
    if (handle == nullptr)
    {
        InvalidateAllTopLevels();
        return TRUE;
    }
    Window* window = RequireWindow(handle);
    if (window == nullptr)
        return FALSE;
    if (IsShown(*window))
    {
        Region area(rect != nullptr ? *rect : ClientArea(*window));
        ClipToParents(*window, area);
        InvalidateTree(*window, std::move(area), erase != FALSE, Children::IfNotClipped);
    }
    return TRUE;
}

BOOL ValidateRect(HWND handle, const RECT* rect)
{
    Window* window = RequireWindow(handle);
    if (window == nullptr)
        return FALSE;
    window->update.Remove(Region(rect != nullptr ? *rect : ClientArea(*window)));
    window->erasePending &= !window->update.Empty();
    return TRUE;
}

BOOL UpdateWindow(HWND handle)
{
    if (RequireWindow(handle) == nullptr)
        return FALSE;
    UpdateNow(handle);
    return TRUE;
}
