// Input: from what the screen reports to messages in the right window.
//
// As on Windows, an event becomes a message only when the program takes it: which window it goes to depends on capture
// and focus at that moment, and taking a button press is what activates the window under it.
#include "platform/windowing/focus.h"
#include "platform/windowing/input_events.h"
#include "platform/windowing/input_state.h"
#include "platform/windowing/message_queue.h"
#include "platform/windowing/window.h"

#include <cstdlib>
#include <deque>

namespace platform
{
namespace
{

using screen::Event;
using screen::EventType;

constexpr UINT kParentNotify = 0x0210; // WM_PARENTNOTIFY
constexpr int kHitError = -2;          // HTERROR

struct Press
{
    HWND window = nullptr;
    UINT message = 0;
    std::uint64_t time = 0;
    POINT position{};
};

struct InputQueue
{
    std::deque<Event> events;
    bool refresh = false;                   ///< windows have moved under the pointer
    screen::NativeWindow pointerWindow = 0; ///< where the pointer was last seen; 0 outside of this program's windows
    Press lastPress;
};

InputQueue& Input()
{
    static InputQueue& input = *new InputQueue;
    return input;
}

struct MouseTarget
{
    HWND window = nullptr;
    LRESULT hit = HTCLIENT;
};

Window* WindowOfNative(screen::NativeWindow native)
{
    for (Window* window : TopLevels())
        if (window->native == native && native != 0)
            return window;
    return nullptr;
}

Window* TopLevelAt(POINT position)
{
    for (Window* window : TopLevels())
        if ((window->style & WS_VISIBLE) != 0 && PtInRect(&window->rect, position))
            return window;
    return nullptr;
}

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

WPARAM ButtonFlag(screen::Button button)
{
    constexpr WPARAM kFlags[] = {MK_LBUTTON, MK_RBUTTON, MK_MBUTTON};
    return kFlags[static_cast<int>(button)];
}

bool IsDoubleClick(const Event& event, const MouseTarget& target, UINT message)
{
    const Press& last = Input().lastPress;
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
    }
}

/// What taking a button press does besides giving a message; false when the press is eaten.
bool CommitPress(const Event& event, const MSG& message, const MouseTarget& target)
{
    NoteKey(ButtonKey(event.button), true);
    const UINT press = WM_LBUTTONDOWN + 3 * static_cast<UINT>(event.button);
    const bool doubled = message.message == press + 2;
    Input().lastPress = doubled ? Press{} : Press{target.window, press, event.time, event.position};
    if (GetCapture() != nullptr)
        return true;
    NotifyParentsOfPress(message);
    return ActivateByMouse(message, target);
}

bool CommitMouse(const Event& event, const MSG& message, const MouseTarget& target)
{
    SetMessagePoint(event.position);
    if (event.window != 0)
        Input().pointerWindow = event.window;
    TrackPointer(target.window);
    if (event.type == EventType::ButtonUp)
        NoteKey(ButtonKey(event.button), false);
    if (event.type == EventType::ButtonDown && !CommitPress(event, message, target))
        return false;
    SetCursorFor(message, target);
    return IsWindow(message.hwnd);
}

enum class Outcome
{
    Message,  ///< taken (or left, when it was only looked at)
    Consumed, ///< handled or dropped; look at the queue anew
    Skipped,  ///< not what the filter wants; stays
};

void Drop(std::size_t index)
{
    auto& events = Input().events;
    if (index < events.size())
        events.erase(events.begin() + static_cast<std::ptrdiff_t>(index));
}

Outcome TakeMouse(std::size_t index, MSG& message, const MessageFilter& filter, bool remove)
{
    const Event event = Input().events[index];
    if (event.modifiers != kOwnModifiers)
        NoteModifiers(event.modifiers);
    const MouseTarget target = FindMouseTarget(event.position);
    if (target.window == nullptr || target.hit == kHitError || target.hit == HTNOWHERE)
    {
        Drop(index);
        SetMessagePoint(event.position);
        TrackPointer(nullptr);
        if (event.type != EventType::MouseMove)
            NoteKey(ButtonKey(event.button), event.type == EventType::ButtonDown);
        return Outcome::Consumed;
    }
    FillMouseMessage(event, target, message);
    message.time = static_cast<DWORD>(event.time);
    message.pt = event.position;
    if (!filter.Accepts(message.hwnd, message.message))
        return Outcome::Skipped;
    if (!remove)
        return Outcome::Message;
    Drop(index);
    return CommitMouse(event, message, target) ? Outcome::Message : Outcome::Consumed;
}

/// A message that goes to the focus window, or to the active window when nothing has the focus.
Outcome TakeForFocus(std::size_t index, MSG& message, const MessageFilter& filter, bool remove)
{
    const Event event = Input().events[index];
    if (event.modifiers != kOwnModifiers)
        NoteModifiers(event.modifiers);
    const Window* target = FindObject<Window>(GetFocus() != nullptr ? GetFocus() : GetActiveWindow());
    if (target == nullptr || (RootOf(*target).style & WS_DISABLED) != 0)
    {
        Drop(index);
        if (event.type != EventType::Wheel)
            CommitKey(event);
        return Outcome::Consumed;
    }
    message.hwnd = target->handle;
    message.time = static_cast<DWORD>(event.time);
    message.pt = event.type == EventType::Wheel ? event.position : MessagePoint();
    if (event.type == EventType::Wheel)
    {
        message.message = WM_MOUSEWHEEL;
        message.wParam = MAKEWPARAM(MouseKeys(), event.wheel);
        message.lParam = MAKELPARAM(event.position.x, event.position.y);
    }
    else
    {
        MakeKeyMessage(event, message);
    }
    if (!filter.Accepts(message.hwnd, message.message))
        return Outcome::Skipped;
    if (remove)
    {
        Drop(index);
        if (event.type == EventType::Wheel)
            SetMessagePoint(event.position);
        else
            CommitKey(event);
    }
    return Outcome::Message;
}

void HandlePointerLeft()
{
    Input().pointerWindow = 0;
    if (GetCapture() == nullptr)
        TrackPointer(nullptr);
}

/// Events that are no messages of their own.
void HandleScreenEvent(const Event& event)
{
    Window* window = WindowOfNative(event.window);
    switch (event.type)
    {
    case EventType::MouseLeave:
        HandlePointerLeft();
        break;
    case EventType::Activated:
        OnActivated(HandleOf(window));
        break;
    case EventType::Deactivated:
        OnDeactivated();
        break;
    case EventType::CloseRequest:
        if (window != nullptr && (window->style & WS_DISABLED) == 0)
            PostMessageW(window->handle, WM_CLOSE, 0, 0);
        break;
    case EventType::Placed:
        if (window != nullptr)
            FollowPlacement(*window, event.bounds);
        break;
    default:
        break;
    }
}

Outcome TakeEvent(std::size_t index, MSG& message, const MessageFilter& filter, bool remove)
{
    const Event event = Input().events[index];
    switch (event.type)
    {
    case EventType::MouseMove:
    case EventType::ButtonDown:
    case EventType::ButtonUp:
        return TakeMouse(index, message, filter, remove);
    case EventType::Wheel:
    case EventType::KeyDown:
    case EventType::KeyUp:
        return TakeForFocus(index, message, filter, remove);
    default:
        Drop(index);
        HandleScreenEvent(event);
        return Outcome::Consumed;
    }
}

void CollectEvents()
{
    InputQueue& input = Input();
    for (Event event; screen::NextEvent(event); event = Event())
        QueueInput(event);
    if (std::exchange(input.refresh, false) && input.pointerWindow != 0 && input.events.empty())
    {
        Event event;
        event.type = EventType::MouseMove;
        event.position = MessagePoint();
        event.time = GetTickCount();
        event.modifiers = kOwnModifiers;
        QueueInput(event);
    }
}

} // namespace

void QueueInput(const Event& event)
{
    auto& events = Input().events;
    // A program that is slow sees where the pointer is, not everywhere it has been.
    const bool onlyMoved = event.type == EventType::MouseMove && !events.empty() &&
                           events.back().type == EventType::MouseMove && events.back().window == event.window;
    if (onlyMoved)
        events.back() = event;
    else
        events.push_back(event);
}

void PointerLosesWindow(screen::NativeWindow window)
{
    if (Input().pointerWindow == window)
        Input().pointerWindow = 0;
}

void RequestMouseRefresh()
{
    Input().refresh = true;
}

bool TakeInput(MSG& message, const MessageFilter& filter, bool remove)
{
    CollectEvents();
    std::size_t index = 0;
    while (index < Input().events.size())
    {
        switch (TakeEvent(index, message, filter, remove))
        {
        case Outcome::Message:
            return true;
        case Outcome::Consumed:
            index = 0;
            break;
        case Outcome::Skipped:
            ++index;
            break;
        }
    }
    return false;
}

} // namespace platform
