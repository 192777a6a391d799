// Focus, activation and the foreground: who is told what when the keyboard changes hands.
#include "platform/windowing/focus.h"

#include "platform/base/fault_points.h"
#include "platform/windowing/input_state.h"

namespace platform
{
namespace
{

struct FocusState
{
    HWND active = nullptr;
    HWND focus = nullptr;
    HWND lastActive = nullptr; ///< when the program lost the foreground
    HWND keyboard = nullptr;   ///< the managed window for which the display's focus was taken; null: our key window
    bool foreground = false;
};

FocusState& State()
{
    static FocusState& state = *new FocusState;
    return state;
}

HWND RootHandle(HWND window)
{
    Window* found = FindObject<Window>(window);
    return found != nullptr ? RootOf(*found).handle : nullptr;
}

void ChangeFocus(HWND next)
{
    FocusState& state = State();
    const HWND previous = state.focus;
    if (previous == next)
        return;
    state.focus = next;
    if (Window* root = FindObject<Window>(RootHandle(next)))
        root->lastFocus = next;
    if (IsWindow(previous))
        SendMessageW(previous, WM_KILLFOCUS, reinterpret_cast<WPARAM>(next), 0);
    if (IsWindow(next) && state.focus == next)
        SendMessageW(next, WM_SETFOCUS, reinterpret_cast<WPARAM>(previous), 0);
}

void TellAllOfActivation(BOOL active)
{
    for (const HWND handle : HandlesOf(TopLevels()))
    {
        const Window* window = FindObject<Window>(handle);
        if (window != nullptr && !window->messageOnly)
            SendMessageW(handle, WM_ACTIVATEAPP, static_cast<WPARAM>(active), 0);
    }
}

void TellActivation(HWND window, WPARAM how, HWND other)
{
    if (IsWindow(window))
        SendMessageW(window, WM_NCACTIVATE, how != WA_INACTIVE, reinterpret_cast<LPARAM>(other));
    if (IsWindow(window))
        SendMessageW(window, WM_ACTIVATE, how, reinterpret_cast<LPARAM>(other));
}

void BringToTop(HWND window)
{
    const Window* found = FindObject<Window>(window);
    const auto& all = TopLevels();
    for (const Window* other : all)
    {
        const bool sameGroup = found != nullptr && ((other->exStyle ^ found->exStyle) & WS_EX_TOPMOST) == 0;
        if (sameGroup && (other->style & WS_VISIBLE) != 0)
        {
            if (other != found)
                SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
            return;
        }
    }
}

bool CanBeActive(const Window& window)
{
    return (window.style & WS_VISIBLE) != 0 && (window.style & WS_DISABLED) == 0 && !window.destroying &&
           !window.messageOnly && (window.exStyle & WS_EX_NOACTIVATE) == 0;
}

/// Who becomes active when `leaving` goes: its owner, else the next window in the Z-order.
HWND Successor(const Window& leaving)
{
    if (leaving.owner != nullptr && CanBeActive(*leaving.owner))
        return leaving.owner->handle;
    for (const Window* window : TopLevels())
        if (window != &leaving && CanBeActive(*window))
            return window->handle;
    return nullptr;
}

/// The program's windows have nothing active left: what Windows says when another program takes over.
void LoseForeground()
{
    FocusState& state = State();
    state.lastActive = state.active;
    const HWND focus = state.focus;
    const HWND leaving = std::exchange(state.active, nullptr);
    const bool wasForeground = std::exchange(state.foreground, false);
    CancelCapture();
    TellActivation(leaving, WA_INACTIVE, nullptr);
    if (wasForeground)
        TellAllOfActivation(FALSE);
    if (state.focus == focus)
    {
        state.focus = nullptr;
        if (IsWindow(focus))
            SendMessageW(focus, WM_KILLFOCUS, 0, 0);
    }
}

bool FocusIsIn(const Window& window)
{
    const Window* focus = FindObject<Window>(State().focus);
    return focus != nullptr && (focus == &window || IsDescendant(*focus, window));
}

/// The display's focus, unless the window has it: a managed window has its own, all others share one.
void TakeKeyboardFor(const Window& window)
{
    FocusState& state = State();
    const HWND keyboard = window.IsManaged() ? window.handle : nullptr;
    if (std::exchange(state.keyboard, keyboard) != keyboard || !state.foreground)
        screen::TakeKeyboard(window.IsManaged() ? window.native : 0);
}

} // namespace

bool SetActive(HWND next, bool byMouse)
{
    FocusState& state = State();
    const HWND previous = state.active;
    if (previous == next)
        return true;
    if (previous != nullptr)
        TellActivation(previous, WA_INACTIVE, next);
    const bool gone = next != nullptr && !IsWindow(next); // destroyed by the one that was active
    state.active = gone ? nullptr : next;
    if (state.active == nullptr)
    {
        ChangeFocus(nullptr);
        return !gone;
    }
    BringToTop(next);
    TellActivation(next, byMouse ? WA_CLICKACTIVE : WA_ACTIVE, previous);
    if (state.active == next && RootHandle(state.focus) != next && IsWindow(next))
        ChangeFocus(next);
    return state.active == next;
}

bool SetForeground(HWND next, bool byMouse)
{
    FocusState& state = State();
    const Window* window = FindObject<Window>(next);
    if (window == nullptr)
        return false;
    TakeKeyboardFor(*window);
    if (!std::exchange(state.foreground, true))
        TellAllOfActivation(TRUE);
    return SetActive(next, byMouse);
}

void OnActivated(HWND managed)
{
    FocusState& state = State();
    const HWND last = state.active != nullptr ? state.active : state.lastActive;
    const HWND target = managed != nullptr ? managed : last;
    const bool late = TopLevels().empty(); // the window that asked for the keyboard is gone
    if (late || (state.foreground && (managed == nullptr || state.active == managed)))
        return;
    state.keyboard = managed;
    if (!std::exchange(state.foreground, true))
        TellAllOfActivation(TRUE);
    const Window* window = FindObject<Window>(target);
    if (window != nullptr && CanBeActive(*window))
    {
        const HWND lastFocus = window->lastFocus;
        SetActive(target, false);
        if (state.active == target && IsWindow(lastFocus))
            SetFocus(lastFocus);
    }
}

void OnDeactivated()
{
    if (State().foreground)
        LoseForeground();
}

void LeaveFocusOf(HWND handle)
{
    FocusState& state = State();
    const Window* window = FindObject<Window>(handle);
    if (window == nullptr)
        return;
    if (window->parent != nullptr || state.active != handle)
    {
        if (FocusIsIn(*window))
            ChangeFocus(HandleOf(window->parent));
        return;
    }
    const HWND successor = Successor(*window);
    if (successor == nullptr)
        LoseForeground();
    else if (state.foreground)
        SetForeground(successor, false);
    else
        SetActive(successor, false);
}

} // namespace platform

using namespace platform;

HWND SetFocus(HWND handle)
{
    FocusState& state = State();
    const HWND previous = state.focus;
    if (handle == previous)
        return previous;
    if (handle == nullptr)
    {
        ChangeFocus(nullptr);
        return previous;
    }
    const Window* window = RequireWindow(handle);
    if (window == nullptr || !IsReachable(*window))
        return nullptr;
    const HWND root = RootOf(*window).handle;
    if (!SetActive(root, false) || !IsWindow(handle) || state.active != root)
        return nullptr;
    ChangeFocus(handle);
    return previous;
}

HWND GetFocus()
{
    return State().focus;
}

HWND SetActiveWindow(HWND handle)
{
    const Window* window = handle != nullptr ? RequireWindow(handle) : nullptr;
    if (handle != nullptr && (window == nullptr || window->parent != nullptr || (window->style & WS_DISABLED) != 0))
        return nullptr;
    const HWND previous = State().active;
    return SetActive(handle, false) ? previous : nullptr;
}

HWND GetActiveWindow()
{
    return State().active;
}

BOOL SetForegroundWindow(HWND handle)
{
    if (FaultPoint("SetForegroundWindow"))
        return Fail(ERROR_ACCESS_DENIED, FALSE);
    Window* window = RequireWindow(handle);
    return window != nullptr && SetForeground(RootOf(*window).handle, false);
}

HWND GetForegroundWindow()
{
    return State().foreground ? State().active : nullptr;
}
