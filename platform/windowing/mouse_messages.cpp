// From the mouse's events to messages: which window they go to, what they say, and what a press does besides.
#include "platform/windowing/focus.h"
#include "platform/windowing/input_state.h"
#include "platform/windowing/message_queue.h"

#include <cstdlib>

namespace platform
{
namespace
{

using screen::Event;
using screen::EventType;

constexpr UINT kParentNotify = 0x0210; // WM_PARENTNOTIFY

struct Press
{
    HWND window = nullptr;
    UINT message = 0;
    std::uint64_t time = 0;
    POINT position{};
};

constinit Press g_lastPress;

Window* TopLevelAt(POINT position)
{
    for (Window* window : TopLevels())
        if ((window->style & WS_VISIBLE) != 0 && PtInRect(&window->rect, position))
            return window;
    return nullptr;
}

WPARAM ButtonFlag(screen::Button button)
{
    constexpr WPARAM kFlags[] = {MK_LBUTTON, MK_RBUTTON, MK_MBUTTON};
    return kFlags[static_cast<int>(button)];
}

bool IsDoubleClick(const Event& event, const MouseTarget& target, UINT message)
{
    const Press& last = g_lastPress;
    const Window* window = FindObject<Window>(target.window);
    return window != nullptr && (window->windowClass->style & CS_DBLCLKS) != 0 && last.window == target.window &&
           last.message == message && event.time - last.time <= GetDoubleClickTime() &&
           std::abs(event.position.x - last.position.x) <= GetSystemMetrics(SM_CXDOUBLECLK) / 2 &&
           std::abs(event.position.y - last.position.y) <= GetSystemMetrics(SM_CYDOUBLECLK) / 2;
}

UINT MouseMessage(const Event& event, const MouseTarget& target)
{
    const auto button = static_cast<UINT>(event.button);
    if (event.type == EventType::MouseMove)
        return WM_MOUSEMOVE;
    if (event.type == EventType::ButtonUp)
        return WM_LBUTTONUP + 3 * button;
    const UINT press = WM_LBUTTONDOWN + 3 * button;
    return IsDoubleClick(event, target, press) ? WM_LBUTTONDBLCLK + 3 * button : press;
}

WPARAM KeysAfter(const Event& event)
{
    const WPARAM keys = MouseKeys();
    if (event.type == EventType::ButtonDown)
        return keys | ButtonFlag(event.button);
    return event.type == EventType::ButtonUp ? keys & ~ButtonFlag(event.button) : keys;
}

/// WM_MOUSEACTIVATE and what follows from its answer; false when the press is to be eaten.
bool ActivateByMouse(const MSG& message, const MouseTarget& target)
{
    Window* window = FindObject<Window>(target.window);
    if (window == nullptr || target.window == GetForegroundWindow())
        return window != nullptr;
    const HWND root = RootOf(*window).handle;
    const LRESULT answer = SendMessageW(target.window, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(root),
                                        MAKELPARAM(target.hit, message.message));
    if (answer != MA_NOACTIVATE && answer != MA_NOACTIVATEANDEAT && IsWindow(root) && root != GetForegroundWindow())
        SetForeground(root, true);
    return answer != MA_ACTIVATEANDEAT && answer != MA_NOACTIVATEANDEAT;
}

void NotifyParentsOfPress(const MSG& message)
{
    const Window* window = FindObject<Window>(message.hwnd);
    while (window != nullptr && window->IsChild() && window->parent != nullptr)
    {
        const HWND parent = window->parent->handle;
        POINT position = message.pt;
        ScreenToClient(parent, &position);
        SendMessageW(parent, kParentNotify, message.message, MAKELPARAM(position.x, position.y));
        window = FindObject<Window>(parent);
    }
}

void SetCursorFor(const MSG& message, const MouseTarget& target)
{
    if (GetCapture() == nullptr && IsWindow(target.window))
    {
        const UINT plain = target.hit == HTCLIENT ? message.message : message.message - WM_NCMOUSEMOVE + WM_MOUSEMOVE;
        SendMessageW(target.window, WM_SETCURSOR, reinterpret_cast<WPARAM>(target.window),
                     MAKELPARAM(target.hit, plain));
        if (const Window* window = FindObject<Window>(target.window))
            screen::SetPointerShape(RootOf(*window).native, CursorShape());
    }
}

/// What taking a button press does besides giving a message; false when the press is eaten.
bool CommitPress(const Event& event, const MSG& message, const MouseTarget& target)
{
    NoteKey(ButtonKey(event.button), true);
    const UINT press = WM_LBUTTONDOWN + 3 * static_cast<UINT>(event.button);
    const bool doubled = message.message == press + 2;
    g_lastPress = doubled ? Press{} : Press{target.window, press, event.time, event.position};
    if (GetCapture() != nullptr)
        return true;
    NotifyParentsOfPress(message);
    return ActivateByMouse(message, target);
}

} // namespace

MouseTarget FindMouseTarget(POINT position)
{
    if (const HWND capture = GetCapture())
        return {capture, HTCLIENT};
    Window* root = TopLevelAt(position);
    if (root == nullptr)
        return {};
    if ((root->style & WS_DISABLED) != 0)
        return {root->handle, kHitError};
    const HWND window = WindowAtPoint(root->handle, position);
    if (window == nullptr)
        return {};
    return {window, SendMessageW(window, WM_NCHITTEST, 0, MAKELPARAM(position.x, position.y))};
}

BYTE ButtonKey(screen::Button button)
{
    constexpr BYTE kKeys[] = {VK_LBUTTON, VK_RBUTTON, VK_MBUTTON};
    return kKeys[static_cast<int>(button)];
}

void FillMouseMessage(const Event& event, const MouseTarget& target, MSG& message)
{
    message.hwnd = target.window;
    message.message = MouseMessage(event, target);
    POINT position = event.position;
    if (target.hit == HTCLIENT)
    {
        ScreenToClient(target.window, &position);
        message.wParam = KeysAfter(event);
    }
    else
    {
        message.message += WM_NCMOUSEMOVE - WM_MOUSEMOVE;
        message.wParam = static_cast<WPARAM>(target.hit);
    }
    message.lParam = MAKELPARAM(position.x, position.y);
}

bool CommitMouse(const Event& event, const MSG& message, const MouseTarget& target)
{
    SetMessagePoint(event.position);
    TrackPointer(target.window);
    if (event.type == EventType::ButtonUp)
        NoteKey(ButtonKey(event.button), false);
    if (event.type == EventType::ButtonDown && !CommitPress(event, message, target))
        return false;
    SetCursorFor(message, target);
    return IsWindow(message.hwnd);
}

} // namespace platform
