// Where windows are: moving, sizing, showing, restacking, and the coordinates that follow from it.
#include "platform/windowing/window.h"

#include "platform/base/fault_points.h"
#include "platform/windowing/input_events.h"
#include "platform/windowing/message_queue.h"

#include <algorithm>

namespace platform
{
namespace
{

/// The beginning of NCCALCSIZE_PARAMS; its first rectangle stands where a lone RECT would.
struct ClientCalculation
{
    RECT rects[3];
    WINDOWPOS* position;
};

void SyncNativePlace(Window& window)
{
    if (window.native != 0)
        screen::PlaceNativeWindow(window.native, window.rect);
}

void SyncNativeStack(const Window& window)
{
    if (window.native == 0)
        return;
    const auto& all = TopLevels();
    const Window* above = nullptr;
    for (const Window* other : all)
    {
        if (other == &window)
            break;
        above = other->native != 0 && (other->style & WS_VISIBLE) != 0 ? other : above;
    }
    screen::StackNativeWindow(window.native, above != nullptr ? above->native : 0);
}

/// Clears what would change nothing, so that WM_WINDOWPOSCHANGED is sent for changes only.
void NormalizeFlags(const Window& window, WINDOWPOS& position)
{
    const bool visible = (window.style & WS_VISIBLE) != 0;
    position.cx = std::max(position.cx, 0);
    position.cy = std::max(position.cy, 0);
    if ((position.flags & SWP_NOSIZE) != 0 || (position.cx == Width(window.rect) && position.cy == Height(window.rect)))
    {
        position.flags |= SWP_NOSIZE;
        position.cx = Width(window.rect);
        position.cy = Height(window.rect);
    }
    if ((position.flags & SWP_NOMOVE) != 0 || (position.x == window.rect.left && position.y == window.rect.top))
    {
        position.flags |= SWP_NOMOVE;
        position.x = window.rect.left;
        position.y = window.rect.top;
    }
    position.flags &= ~static_cast<UINT>(visible ? SWP_SHOWWINDOW : SWP_HIDEWINDOW);
}

void ApplyZOrder(Window& window, WINDOWPOS& position)
{
    const bool alreadyThere =
        position.hwndInsertAfter == window.handle || !PutInZOrder(window, position.hwndInsertAfter);
    if (alreadyThere)
    {
        position.flags |= SWP_NOZORDER;
        return;
    }
    SyncNativeStack(window);
    if (window.parent != nullptr && IsShown(window))
        InvalidateWhole(window);
}

void ApplyPlace(Window& window, const WINDOWPOS& position)
{
    const int dx = position.x - window.rect.left;
    const int dy = position.y - window.rect.top;
    window.rect = {position.x, position.y, position.x + position.cx, position.y + position.cy};
    window.client = Moved(window.client, dx, dy);
    if ((position.flags & (SWP_NOSIZE | SWP_FRAMECHANGED)) != SWP_NOSIZE)
        CalculateClient(window.handle, TRUE);
}

void ApplyVisibility(Window& window, UINT flags)
{
    if ((flags & SWP_SHOWWINDOW) != 0)
    {
        window.style |= WS_VISIBLE;
        if (window.parent == nullptr && EnsureNativeWindow(window))
        {
            SyncNativeStack(window);
            screen::ShowNativeWindow(window.native, true);
        }
    }
    if ((flags & SWP_HIDEWINDOW) != 0)
    {
        window.style &= ~static_cast<DWORD>(WS_VISIBLE);
        window.damage.Clear();
        if (window.native != 0)
        {
            PointerLosesWindow(window.native);
            screen::ShowNativeWindow(window.native, false);
        }
    }
}

/// Redraws what a change of place, size or visibility has uncovered or brought.
void InvalidateChange(Window& window, const RECT& before, bool wasShown, UINT flags)
{
    const bool placed = (flags & (SWP_NOMOVE | SWP_NOSIZE)) != (SWP_NOMOVE | SWP_NOSIZE);
    const bool visibility = (flags & (SWP_SHOWWINDOW | SWP_HIDEWINDOW)) != 0;
    const bool shown = IsShown(window);
    if ((flags & SWP_NOREDRAW) != 0 || (!placed && !visibility && (flags & SWP_FRAMECHANGED) == 0))
        return;
    if (window.parent != nullptr)
    {
        RequestMouseRefresh();
        if (wasShown)
            InvalidateUncovered(*window.parent, before);
        if (shown)
            InvalidateWhole(window);
        return;
    }
    const bool onlyMoved = !visibility && (flags & (SWP_NOSIZE | SWP_FRAMECHANGED)) == SWP_NOSIZE;
    if (shown && !onlyMoved)
        InvalidateWhole(window);
}

void Activate(HWND handle, UINT flags)
{
    const Window* window = FindObject<Window>(handle);
    const bool wanted = window != nullptr && (flags & SWP_NOACTIVATE) == 0 && !window->IsChild() &&
                        (window->style & WS_VISIBLE) != 0 && !window->messageOnly;
    if (wanted)
        SetForegroundWindow(handle);
}

bool ChangesNothing(UINT flags)
{
    const UINT same = SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER;
    return (flags & same) == same && (flags & (SWP_SHOWWINDOW | SWP_HIDEWINDOW | SWP_FRAMECHANGED)) == 0;
}

void LeaveIfHidden(HWND handle, UINT flags)
{
    if ((flags & SWP_HIDEWINDOW) == 0)
        return;
    ForgetCaptureOf(handle);
    const Window* window = FindObject<Window>(handle);
    // With SWP_NOACTIVATE the focus is the caller's business, as it is while a window is being destroyed.
    if (window != nullptr && ((flags & SWP_NOACTIVATE) == 0 || window->IsChild()))
        LeaveFocusOf(handle);
}

} // namespace

void CalculateClient(HWND handle, BOOL why)
{
    const Window* window = FindObject<Window>(handle);
    if (window == nullptr)
        return;
    ClientCalculation calculation{{window->rect, window->rect, window->client}, nullptr};
    SendMessageW(handle, WM_NCCALCSIZE, static_cast<WPARAM>(why), reinterpret_cast<LPARAM>(&calculation));
    if (Window* after = FindObject<Window>(handle))
        after->client = calculation.rects[0];
}

bool EnsureNativeWindow(Window& window)
{
    if (window.native == 0 && window.parent == nullptr && !window.messageOnly)
    {
        screen::WindowOptions options;
        options.bounds = window.rect;
        options.kind = window.IsManaged() ? screen::WindowKind::Managed : screen::WindowKind::Popup;
        options.title = window.text;
        options.transientFor = window.owner != nullptr ? window.owner->native : 0;
        window.native = screen::CreateNativeWindow(options);
    }
    return window.native != 0;
}

void FollowPlacement(const Window& window, const RECT& bounds)
{
    // First of all, so that placing the window there asks for nothing.
    screen::NotePlacement(window.native, bounds);
    SetWindowPos(window.handle, nullptr, bounds.left, bounds.top, Width(bounds), Height(bounds),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace platform

using namespace platform;

BOOL SetWindowPos(HWND handle, HWND insertAfter, int x, int y, int width, int height, UINT flags)
{
    if (RequireWindow(handle) == nullptr)
        return FALSE;
    WINDOWPOS position{handle, insertAfter, x, y, width, height, flags};
    if ((flags & SWP_NOSENDCHANGING) == 0)
        SendMessageW(handle, WM_WINDOWPOSCHANGING, 0, reinterpret_cast<LPARAM>(&position));
    Window* window = RequireWindow(handle);
    if (window == nullptr)
        return FALSE;
    NormalizeFlags(*window, position);
    const RECT before = window->rect;
    const bool wasShown = IsShown(*window);
    if ((position.flags & SWP_NOZORDER) == 0)
        ApplyZOrder(*window, position);
    ApplyPlace(*window, position);
    window = FindObject<Window>(handle);
    if (window == nullptr)
        return FALSE; // destroyed by its own WM_NCCALCSIZE
    if (!EqualRect(&before, &window->rect))
        SyncNativePlace(*window);
    ApplyVisibility(*window, position.flags);
    InvalidateChange(*window, before, wasShown, position.flags);
    LeaveIfHidden(handle, position.flags);
    Activate(handle, position.flags);
    if (!ChangesNothing(position.flags) && IsWindow(handle))
        SendMessageW(handle, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&position));
    return TRUE;
}

BOOL ShowWindow(HWND handle, int command)
{
    const Window* window = RequireWindow(handle);
    if (window == nullptr)
        return FALSE;
    const bool wasVisible = (window->style & WS_VISIBLE) != 0;
    const bool show = command != SW_HIDE;
    if (show == wasVisible)
        return wasVisible;
    const bool quiet = window->IsChild() || command == SW_SHOWNOACTIVATE || command == SW_SHOWNA;
    const bool firstSize = !window->sizeReported;
    SendMessageW(handle, WM_SHOWWINDOW, show, 0);
    UINT flags = SWP_NOSIZE | SWP_NOMOVE | static_cast<UINT>(show ? SWP_SHOWWINDOW : SWP_HIDEWINDOW);
    flags |= quiet ? SWP_NOACTIVATE | SWP_NOZORDER : 0U;
    SetWindowPos(handle, HWND_TOP, 0, 0, 0, 0, flags);
    Window* after = FindObject<Window>(handle);
    if (after != nullptr && show && firstSize)
    {
        after->sizeReported = true;
        const LPARAM size = MAKELPARAM(Width(after->client), Height(after->client));
        const LPARAM place = MAKELPARAM(after->client.left, after->client.top);
        SendMessageW(handle, WM_SIZE, 0, size);
        SendMessageW(handle, WM_MOVE, 0, place);
    }
    return wasVisible;
}

HWND SetParent(HWND childHandle, HWND parentHandle)
{
    Window* child = RequireWindow(childHandle);
    Window* parent = parentHandle != nullptr ? RequireWindow(parentHandle) : nullptr;
    if (child == nullptr || parent == nullptr || child == parent || IsDescendant(*parent, *child) ||
        child->parent == nullptr)
    {
        // Only children change parents here: top-level windows have native windows.
        return child != nullptr && parent != nullptr ? Fail<HWND>(ERROR_INVALID_PARAMETER, nullptr) : nullptr;
    }
    const HWND oldParent = child->parent->handle;
    const bool wasVisible = (child->style & WS_VISIBLE) != 0;
    const UINT still = SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE;
    if (wasVisible)
    {
        child->style &= ~static_cast<DWORD>(WS_VISIBLE);
        InvalidateUncovered(*child->parent, child->rect);
    }
    RemoveFromZOrder(*child);
    child->parent = parent;
    PutInZOrder(*child, HWND_TOP);
    SetWindowPos(childHandle, HWND_TOP, 0, 0, 0, 0, still | (wasVisible ? SWP_SHOWWINDOW : 0U));
    return oldParent;
}

BOOL GetWindowRect(HWND handle, LPRECT rect)
{
    if (FaultPoint("GetWindowRect"))
        return Fail(ERROR_NOT_ENOUGH_MEMORY, FALSE);
    if (const Window* window = FindObject<Window>(handle))
    {
        *rect = ScreenRect(*window);
        return TRUE;
    }
    // Not ours: another program's window, named by its X window id.
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    const auto bounds = value != 0 && value <= 0xFFFFFFFF
                            ? screen::ForeignWindowBounds(static_cast<std::uint32_t>(value))
                            : std::nullopt;
    if (!bounds)
        return Fail(ERROR_INVALID_WINDOW_HANDLE, FALSE);
    *rect = *bounds;
    return TRUE;
}

BOOL GetClientRect(HWND handle, LPRECT rect)
{
    const Window* window = RequireWindow(handle);
    if (window == nullptr)
        return FALSE;
    *rect = {0, 0, Width(window->client), Height(window->client)};
    return TRUE;
}

BOOL AdjustWindowRect(LPRECT rect, DWORD style, BOOL menu)
{
    return AdjustWindowRectEx(rect, style, menu, 0);
}

BOOL AdjustWindowRectEx(LPRECT rect, DWORD style, BOOL, DWORD)
{
    // A caption and its frame are the window manager's, outside the window.
    return (style & WS_CAPTION) == WS_BORDER ? InflateRect(rect, 1, 1) : TRUE;
}

BOOL ClientToScreen(HWND window, LPPOINT point)
{
    const Window* found = RequireWindow(window);
    if (found == nullptr)
        return FALSE;
    const POINT origin = ClientOrigin(*found);
    *point = {point->x + origin.x, point->y + origin.y};
    return TRUE;
}

BOOL ScreenToClient(HWND window, LPPOINT point)
{
    const Window* found = RequireWindow(window);
    if (found == nullptr)
        return FALSE;
    const POINT origin = ClientOrigin(*found);
    *point = {point->x - origin.x, point->y - origin.y};
    return TRUE;
}

int MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count)
{
    const Window* source = from != nullptr ? RequireWindow(from) : nullptr;
    const Window* target = to != nullptr ? RequireWindow(to) : nullptr;
    if ((from != nullptr && source == nullptr) || (to != nullptr && target == nullptr))
        return 0;
    const POINT a = source != nullptr ? ClientOrigin(*source) : POINT{};
    const POINT b = target != nullptr ? ClientOrigin(*target) : POINT{};
    const POINT offset{a.x - b.x, a.y - b.y};
    for (UINT i = 0; i < count; ++i)
        points[i] = {points[i].x + offset.x, points[i].y + offset.y};
    return MAKELONG(offset.x, offset.y);
}
