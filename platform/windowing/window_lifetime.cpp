// Creating and destroying windows.
#include "platform/windowing/window.h"

#include "platform/base/fault_points.h"
#include "platform/windowing/drag_events.h"
#include "platform/windowing/input_events.h"

#include <algorithm>

namespace platform
{
namespace
{

constexpr UINT kParentNotify = 0x0210;        // WM_PARENTNOTIFY
constexpr DWORD kNoParentNotify = 0x00000004; // WS_EX_NOPARENTNOTIFY

struct Parents
{
    Window* parent = nullptr;
    Window* owner = nullptr;
    bool messageOnly = false;
    bool valid = true;
};

Parents ResolveParents(HWND parent, DWORD style)
{
    if (parent == HWND_MESSAGE)
        return {nullptr, nullptr, true, true};
    const bool child = (style & (WS_CHILD | WS_POPUP)) == WS_CHILD;
    if (parent == nullptr)
        return child ? Fail(ERROR_TLW_WITH_WSCHILD, Parents{nullptr, nullptr, false, false}) : Parents{};
    Window* found = RequireWindow(parent);
    if (found == nullptr)
        return {nullptr, nullptr, false, false};
    return child ? Parents{found, nullptr, false, true} : Parents{nullptr, &RootOf(*found), false, true};
}

RECT InitialRect(int x, int y, int width, int height)
{
    const bool defaultPlace = x == CW_USEDEFAULT;
    const bool defaultSize = width == CW_USEDEFAULT;
    const RECT origin{defaultPlace ? 0 : x, defaultPlace ? 0 : y, 0, 0};
    return {origin.left, origin.top, origin.left + (defaultSize ? 0 : std::max(width, 0)),
            origin.top + (defaultSize ? 0 : std::max(height, 0))};
}

DWORD NormalStyle(DWORD style)
{
    if ((style & WS_CHILD) == 0 || (style & WS_POPUP) != 0)
        style |= WS_CLIPSIBLINGS;
    // A window that is neither child nor pop-up is an overlapped one, which always has a caption.
    return (style & (WS_CHILD | WS_POPUP)) == 0 ? style | WS_CAPTION : style;
}

std::unique_ptr<Window> MakeWindow(WindowClass& windowClass, const CREATESTRUCTW& create, const Parents& parents)
{
    auto window = std::make_unique<Window>();
    window->windowClass = &windowClass;
    window->procedure = windowClass.procedure;
    window->style = NormalStyle(static_cast<DWORD>(create.style)) & ~static_cast<DWORD>(WS_VISIBLE);
    window->exStyle = create.dwExStyle;
    window->parent = parents.parent;
    window->owner = parents.owner;
    window->messageOnly = parents.messageOnly;
    window->instance = create.hInstance;
    window->extra.resize(static_cast<std::size_t>(windowClass.windowExtra));
    window->rect = {create.x, create.y, create.x + create.cx, create.y + create.cy};
    window->client = window->rect;
    if ((create.style & (WS_CHILD | WS_POPUP)) == WS_CHILD)
        window->id = reinterpret_cast<UINT_PTR>(create.hMenu);
    return window;
}

void SendSizeAndMove(HWND handle)
{
    if (const Window* window = FindObject<Window>(handle))
        SendMessageW(handle, WM_SIZE, 0, MAKELPARAM(Width(window->client), Height(window->client)));
    if (const Window* window = FindObject<Window>(handle))
        SendMessageW(handle, WM_MOVE, 0, MAKELPARAM(window->client.left, window->client.top));
}

void NotifyParents(HWND handle, UINT event)
{
    const Window* window = FindObject<Window>(handle);
    if (window == nullptr || !window->IsChild() || (window->exStyle & kNoParentNotify) != 0 ||
        window->parent == nullptr)
        return;
    SendMessageW(window->parent->handle, kParentNotify, MAKEWPARAM(event, window->id),
                 reinterpret_cast<LPARAM>(handle));
}

/// Removes a window from every table; its last message has been sent.
void FreeWindow(HWND handle)
{
    Window* window = FindObject<Window>(handle);
    if (window == nullptr)
        return;
    CloseContextsOf(handle);
    ForgetTimersOf(handle);
    ForgetMessagesOf(handle);
    ForgetTrackingOf(handle);
    RemoveFromZOrder(*window);
    for (Window* other : TopLevels())
        if (other->owner == window)
            other->owner = nullptr;
    if (window->native != 0)
    {
        PointerLosesWindow(window->native);
        screen::DestroyNativeWindow(window->native);
    }
    --window->windowClass->windows;
    TakeHandle(reinterpret_cast<std::uintptr_t>(handle));
    if (const DragHandler* handler = TheDragHandler())
        handler->onWindowGone(handle);
}

void SendDestroyMessages(HWND handle)
{
    SendMessageW(handle, WM_DESTROY, 0, 0);
    if (const Window* window = FindObject<Window>(handle))
        for (const HWND child : HandlesOf(window->children))
            if (IsWindow(child))
                SendDestroyMessages(child);
}

void FinishTree(HWND handle);

void FinishChildren(HWND handle)
{
    const Window* window = FindObject<Window>(handle);
    while (window != nullptr && !window->children.empty())
    {
        FinishTree(window->children.front()->handle);
        window = FindObject<Window>(handle);
    }
}

/// A control that was given another procedure may never have heard of its end: what it keeps with its window (the
/// pointer in its extra bytes) goes now.
void FreeControl(HWND handle)
{
    const Window* window = FindObject<Window>(handle);
    if (window == nullptr || (window->windowClass->style & CS_GLOBALCLASS) == 0)
        return;
    const WNDPROC own = window->windowClass->procedure;
    if (window->procedure != own && GetWindowLongPtrW(handle, 0) != 0)
        own(handle, WM_NCDESTROY, 0, 0);
}

/// WM_NCDESTROY, a window's last message, children first.
void FinishTree(HWND handle)
{
    FinishChildren(handle);
    if (!IsWindow(handle))
        return;
    SendMessageW(handle, WM_NCDESTROY, 0, 0);
    FreeControl(handle);
    FinishChildren(handle); // made in answer to that
    FreeWindow(handle);
}

void DestroyOwned(HWND handle)
{
    for (;;)
    {
        const Window* owner = FindObject<Window>(handle);
        const auto& all = TopLevels();
        const auto owned =
            std::find_if(all.begin(), all.end(),
                         [&](const Window* w) { return owner != nullptr && w->owner == owner && !w->destroying; });
        if (owned == all.end())
            return;
        DestroyWindow((*owned)->handle);
    }
}

/// The messages from WM_NCCREATE to WM_MOVE; false when the window refused to be created.
bool SendCreationMessages(HWND handle, CREATESTRUCTW& create)
{
    const auto param = reinterpret_cast<LPARAM>(&create);
    if (SendMessageW(handle, WM_NCCREATE, 0, param) == 0)
    {
        FinishTree(handle);
        return false;
    }
    CalculateClient(handle, FALSE);
    if (SendMessageW(handle, WM_CREATE, 0, param) == -1)
    {
        FinishTree(handle);
        return false;
    }
    if (Window* window = FindObject<Window>(handle))
    {
        // An overlapped window hears of its place when it is first shown.
        window->sizeReported = (window->style & (WS_CHILD | WS_POPUP)) != 0;
        if (window->sizeReported)
            SendSizeAndMove(handle);
    }
    NotifyParents(handle, WM_CREATE);
    return FindObject<Window>(handle) != nullptr;
}

} // namespace
} // namespace platform

using namespace platform;

HWND CreateWindowExW(DWORD exStyle, LPCWSTR className, LPCWSTR windowName, DWORD style, int x, int y, int width,
                     int height, HWND parent, HMENU menuOrId, HINSTANCE instance, LPVOID param)
{
    if (FaultPoint("CreateWindowExW"))
        return Fail<HWND>(ERROR_NOT_ENOUGH_MEMORY, nullptr);
    WindowClass* windowClass = FindWindowClass(className);
    if (windowClass == nullptr)
        return Fail<HWND>(ERROR_CANNOT_FIND_WND_CLASS, nullptr);
    const Parents parents = ResolveParents(parent, style);
    if (!parents.valid)
        return nullptr;
    const RECT rect = InitialRect(x, y, width, height);
    CREATESTRUCTW create{param,      instance,     menuOrId,
                         parent,     Height(rect), Width(rect),
                         rect.top,   rect.left,    static_cast<LONG>(style),
                         windowName, className,    exStyle};
    auto made = MakeWindow(*windowClass, create, parents);
    Window& window = *made;
    const auto value = InsertHandle(std::move(made));
    if (value == 0)
        return Fail<HWND>(ERROR_NOT_ENOUGH_MEMORY, nullptr);
    const HWND handle = reinterpret_cast<HWND>(value);
    window.handle = handle;
    ++windowClass->windows;
    PutInZOrder(window, window.parent != nullptr ? HWND_BOTTOM : HWND_TOP);
    if (!SendCreationMessages(handle, create))
        return nullptr;
    if ((style & WS_VISIBLE) != 0)
        ShowWindow(handle, SW_SHOW);
    return IsWindow(handle) ? handle : nullptr;
}

BOOL DestroyWindow(HWND handle)
{
    Window* window = RequireWindow(handle);
    if (window == nullptr)
        return FALSE;
    if (window->destroying)
        return TRUE;
    window->destroying = true;
    NotifyParents(handle, WM_DESTROY);
    DestroyOwned(handle);
    window = FindObject<Window>(handle);
    if (window != nullptr && (window->style & WS_VISIBLE) != 0)
    {
        const UINT flags = SWP_HIDEWINDOW | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;
        SetWindowPos(handle, nullptr, 0, 0, 0, 0, flags);
    }
    ForgetCaptureOf(handle);
    LeaveFocusOf(handle);
    if (IsWindow(handle))
    {
        SendDestroyMessages(handle);
        FinishTree(handle);
    }
    return TRUE;
}
