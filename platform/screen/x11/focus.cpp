// The keyboard focus on X11.
#include "platform/screen/x11/focus.h"

#include "platform/base/clock.h"
#include "platform/base/product.h"
#include "platform/screen/x11/drags.h"
#include "platform/screen/x11/focus_policy.h"
#include "platform/screen/x11/windows.h"

#include <algorithm>
#include <unistd.h>
#include <xcb/xinput.h>

namespace platform::x11
{
namespace
{

constexpr xcb_window_t kPointerRoot = XCB_INPUT_FOCUS_POINTER_ROOT;

struct FocusState
{
    xcb_window_t keyWindow = 0;
    xcb_window_t handedTo = 0; ///< another program's window that we have given the focus to
    xcb_window_t focused = 0;  ///< our window that has the focus, as far as events have told
    bool wanted = false;       ///< take the keyboard at the next Commit
    bool active = false;       ///< the program has been told, or has assumed, that the keyboard is its own
    bool suspectLoss = false;
    FocusLoss loss;              ///< what has happened since the focus was taken
    bool grabbedByOther = false; ///< since the focus was taken

    bool previousAsked = false;
    xcb_get_input_focus_cookie_t previousCookie{};
    xcb_window_t previous = 0;

    std::optional<xcb_timestamp_t> press; ///< not yet known to be in one of our windows
    int buttonsDown = 0;                  ///< anywhere
    bool lossHeld = false;                ///< not told yet: the press that took the keyboard may drag something here
    bool moves = false;                   ///< raw movements are selected
};

FocusState& State()
{
    static FocusState& state = *new FocusState;
    return state;
}

bool IsOurs(xcb_window_t window)
{
    return window != 0 && (window == State().keyWindow || FindNative(window) != nullptr);
}

/// No window's, or the root window's, to which it reverts when the window that had it goes.
bool IsNobodys(xcb_window_t focus)
{
    return focus <= kPointerRoot || focus == TheConnection().Root();
}

screen::Event MakeEvent(screen::EventType type, screen::NativeWindow window)
{
    screen::Event event;
    event.type = type;
    event.window = window;
    event.time = NowMs();
    return event;
}

/// The property that marks a key window. A process that loses the focus to another process of this program leaves there
/// who had it before, since it will itself be gone when the other gives the focus back.
void SetHandedFocus(xcb_window_t keyWindow, xcb_window_t owner)
{
    IgnoreErrors(xcb_change_property_checked(Xcb(), XCB_PROP_MODE_REPLACE, keyWindow,
                                             TheConnection()[Atom::HandedFocus], XCB_ATOM_WINDOW, 32, 1, &owner));
}

void CreateKeyWindow()
{
    FocusState& state = State();
    if (state.keyWindow != 0)
        return;
    state.keyWindow = xcb_generate_id(Xcb());
    const std::uint32_t values[] = {1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                                           XCB_EVENT_MASK_FOCUS_CHANGE};
    xcb_create_window(Xcb(), 0, state.keyWindow, TheConnection().Root(), -10, -10, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    constexpr char kClass[] = ORB_PRODUCT "\0" ORB_PRODUCT_CLASS;
    xcb_change_property(Xcb(), XCB_PROP_MODE_REPLACE, state.keyWindow, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        sizeof(kClass), kClass);
    const std::uint32_t pid = static_cast<std::uint32_t>(getpid());
    xcb_change_property(Xcb(), XCB_PROP_MODE_REPLACE, state.keyWindow, TheConnection()[Atom::NetWmPid],
                        XCB_ATOM_CARDINAL, 32, 1, &pid);
    SetHandedFocus(state.keyWindow, 0);
    xcb_map_window(Xcb(), state.keyWindow);
}

void FocusKeyWindow()
{
    // The present time beats every older request that is still under way.
    IgnoreErrors(xcb_set_input_focus_checked(Xcb(), XCB_INPUT_FOCUS_POINTER_ROOT, State().keyWindow, XCB_CURRENT_TIME));
}

/// What the mark of a key window says; nothing when the window is none.
std::optional<xcb_window_t> HandedFocus(xcb_window_t window)
{
    return CollectWord(xcb_get_property(Xcb(), 0, window, TheConnection()[Atom::HandedFocus], XCB_ATOM_WINDOW, 0, 1));
}

/// Learns who had the focus before; the answer has long arrived when this is called.
void LearnPrevious()
{
    FocusState& state = State();
    if (!std::exchange(state.previousAsked, false))
        return;
    const auto reply = Collect(xcb_get_input_focus_reply, state.previousCookie);
    const xcb_window_t holder = reply != nullptr && !IsOurs(reply->focus) ? reply->focus : kPointerRoot;
    // Between two turns of ours (a message box has been closed) the focus may be nobody's; that is no news of who had
    // it.
    state.previous = !IsNobodys(holder) || state.previous == 0 ? holder : state.previous;
}

bool IsViewable(xcb_window_t window)
{
    if (window <= kPointerRoot)
        return false;
    const auto reply = Collect(xcb_get_window_attributes_reply, xcb_get_window_attributes(Xcb(), window));
    return reply != nullptr && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

xcb_window_t WhoGetsItBack()
{
    const FocusState& state = State();
    if (IsViewable(state.previous))
        return state.previous;
    const xcb_window_t handed = HandedFocus(state.keyWindow).value_or(0);
    return IsViewable(handed) ? handed : kPointerRoot;
}

/// Whether the pointer is inside a window, wherever that is in the tree.
bool PointerIsIn(xcb_window_t window, const xcb_query_pointer_reply_t& pointer)
{
    const auto geometryCookie = xcb_get_geometry(Xcb(), window);
    const auto placeCookie =
        xcb_translate_coordinates(Xcb(), TheConnection().Root(), window, pointer.root_x, pointer.root_y);
    const auto geometry = Collect(xcb_get_geometry_reply, geometryCookie);
    const auto place = Collect(xcb_translate_coordinates_reply, placeCookie);
    return geometry != nullptr && place != nullptr && place->dst_x >= 0 && place->dst_y >= 0 &&
           place->dst_x < geometry->width && place->dst_y < geometry->height &&
           !PointIsInPopup({pointer.root_x, pointer.root_y});
}

void DescribeLoss(xcb_window_t newFocus)
{
    FocusLoss& loss = State().loss;
    const auto pointer = Collect(xcb_query_pointer_reply, xcb_query_pointer(Xcb(), TheConnection().Root()));
    loss.now = NowMs();
    loss.keyGrab = State().grabbedByOther ? std::optional(loss.now) : loss.keyGrab;
    loss.focusIsNobodys = IsNobodys(newFocus);
    loss.focusIsLaunchers = false;
    loss.pointerOverNewFocus = false;
    if (!loss.focusIsNobodys)
    {
        loss.focusIsLaunchers = HandedFocus(newFocus).has_value();
        loss.pointerOverNewFocus = pointer != nullptr && PointerIsIn(newFocus, *pointer);
    }
}

/// Another program's press that has not ended, or has become a drag over our windows.
bool MayStillDrop()
{
    return State().buttonsDown > 0 || IsDraggedOver();
}

/// Tells it, once nothing can be dropped here any more: the menu would close under what a person drags to it.
void LoseKeyboard(std::deque<screen::Event>& out)
{
    FocusState& state = State();
    state.lossHeld = state.active && MayStillDrop();
    if (!state.lossHeld && std::exchange(state.active, false))
        out.push_back(MakeEvent(screen::EventType::Deactivated, 0));
}

void TakeBack()
{
    FocusLoss& loss = State().loss;
    loss.quickRetakes = IsQuickRetake(loss) ? loss.quickRetakes + 1 : 0;
    loss.retaken = loss.now;
    FocusKeyWindow();
    xcb_flush(Xcb());
}

/// The focus has left one of our windows and, when all events were known, had come to no other.
void CheckLoss(std::deque<screen::Event>& out)
{
    FocusState& state = State();
    const auto reply = Collect(xcb_get_input_focus_reply, xcb_get_input_focus(Xcb()));
    if (reply == nullptr || IsOurs(reply->focus))
        return;
    // What a managed window loses is the window manager's decision; only the menu itself insists.
    const bool menu = state.focused == state.keyWindow && AnyShown() && state.active && reply->focus != state.handedTo;
    if (menu)
        DescribeLoss(reply->focus);
    if (menu && AnswerFocusLoss(state.loss) == FocusAnswer::TakeBack)
    {
        TakeBack();
        return;
    }
    if (menu && state.loss.focusIsLaunchers)
        SetHandedFocus(reply->focus, WhoGetsItBack());
    state.focused = 0;
    // A box of ours has gone, and a window manager was quicker than the next Commit, which takes the keyboard back.
    const bool onlyBetween = state.wanted && AnyShown();
    if (!onlyBetween)
        LoseKeyboard(out);
}

/// Whether a press was in one of our windows is certain once an answer that was asked for later is there.
void CheckPress(std::deque<screen::Event>& out)
{
    FocusState& state = State();
    state.press.reset();
    state.loss.press = NowMs();
    const bool managed = FindNative(state.focused) != nullptr;
    if (!managed)
        LoseKeyboard(out);
}

void SelectRawEventMask(std::uint32_t mask)
{
    if (TheConnection().Extension(xcb_input_id) == nullptr)
        return;
    struct
    {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } selection{};
    selection.head.deviceid = XCB_INPUT_DEVICE_ALL_MASTER;
    selection.head.mask_len = 1;
    selection.mask = mask;
    xcb_input_xi_select_events(Xcb(), TheConnection().Root(), 1, &selection.head);
}

} // namespace

xcb_window_t FocusedWindow()
{
    return State().focused;
}

void SelectRawEvents(bool movements)
{
    std::uint32_t mask = XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;
    mask |= movements ? XCB_INPUT_XI_EVENT_MASK_RAW_MOTION : 0;
    SelectRawEventMask(mask);
    State().moves = movements;
}

void DeselectRawEvents()
{
    SelectRawEventMask(0);
}

void TakeWantedKeyboard()
{
    FocusState& state = State();
    if (!state.wanted || !AnyShown())
        return;
    state.wanted = false;
    CreateKeyWindow();
    if (!IsOurs(state.focused))
    {
        LearnPrevious();
        state.previousCookie = xcb_get_input_focus(Xcb());
        state.previousAsked = true;
    }
    FocusKeyWindow();
    state.handedTo = 0;
    state.focused = state.keyWindow;
    state.active = true;
    state.suspectLoss = false;
    state.lossHeld = false;
    state.grabbedByOther = false;
    state.loss = {};
    state.loss.taken = NowMs();
    SelectRawEvents(true);
}

void ReleaseKeyboard()
{
    FocusState& state = State();
    if (state.keyWindow == 0)
        return;
    LearnPrevious();
    const auto now = Collect(xcb_get_input_focus_reply, xcb_get_input_focus(Xcb()));
    // It is nobody's between the end of a message box of ours and the moment in which the menu would take it again.
    const bool leftByUs = now != nullptr && IsNobodys(now->focus) && (state.wanted || state.active);
    if (leftByUs || (now != nullptr && IsOurs(now->focus)))
    {
        IgnoreErrors(
            xcb_set_input_focus_checked(Xcb(), XCB_INPUT_FOCUS_POINTER_ROOT, WhoGetsItBack(), XCB_CURRENT_TIME));
    }
    xcb_destroy_window(Xcb(), state.keyWindow);
    const bool moves = state.moves;
    state = {};
    state.moves = moves;
    SelectRawEvents(false);
}

void OnFocusIn(const xcb_focus_in_event_t& event, std::deque<screen::Event>& out)
{
    FocusState& state = State();
    if (event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB)
    {
        // The end of a grab that is older than our focus (the key that closed a dialog of ours) is no news.
        if (std::exchange(state.grabbedByOther, false))
            state.loss.keyGrab = NowMs();
        return;
    }
    if (event.detail == XCB_NOTIFY_DETAIL_POINTER)
        return;
    state.suspectLoss = false;
    state.lossHeld = false;
    state.focused = event.event;
    const bool managed = FindNative(event.event) != nullptr;
    if (!std::exchange(state.active, true) || managed)
        out.push_back(MakeEvent(screen::EventType::Activated, managed ? event.event : 0));
}

void OnFocusOut(const xcb_focus_out_event_t& event)
{
    FocusState& state = State();
    if (event.mode == XCB_NOTIFY_MODE_GRAB)
    {
        // Another client has grabbed the keyboard: a hot key, a switcher, a locker. The focus itself has not moved.
        state.grabbedByOther = true;
        state.loss.keyGrab = NowMs();
        return;
    }
    const bool within = event.detail == XCB_NOTIFY_DETAIL_INFERIOR || event.detail == XCB_NOTIFY_DETAIL_POINTER;
    state.suspectLoss |= !within && event.mode != XCB_NOTIFY_MODE_UNGRAB && event.event == state.focused;
}

void OnRawPress(xcb_timestamp_t time)
{
    State().press = time;
    ++State().buttonsDown;
}

void OnRawRelease()
{
    State().buttonsDown = std::max(State().buttonsDown - 1, 0); // its press may be older than this process
}

void OnDropTaken()
{
    FocusState& state = State();
    state.wanted |= std::exchange(state.lossHeld, false);
}

void OnOwnPress(xcb_timestamp_t time)
{
    if (State().press == time)
        State().press.reset();
}

void OnRawMove()
{
    State().loss.pointerMove = NowMs();
}

void OnPointerInside(bool inside)
{
    if (!inside)
        OnRawMove(); // it has left by moving
    if (State().keyWindow != 0 && State().moves == inside)
        SelectRawEvents(!inside);
}

void HandKeyboardTo(xcb_window_t window)
{
    FocusState& state = State();
    if (state.keyWindow == 0 || state.focused != state.keyWindow)
        return;
    state.handedTo = window;
    IgnoreErrors(xcb_set_input_focus_checked(Xcb(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME));
}

bool FocusCheckPending()
{
    const FocusState& state = State();
    return state.press.has_value() || state.suspectLoss || (state.lossHeld && !MayStillDrop());
}

void CheckFocus(std::deque<screen::Event>& out)
{
    FocusState& state = State();
    LearnPrevious();
    if (state.press)
        CheckPress(out);
    if (std::exchange(state.suspectLoss, false))
        CheckLoss(out);
    if (state.lossHeld)
        LoseKeyboard(out);
}

} // namespace platform::x11

void platform::screen::TakeKeyboard(NativeWindow window)
{
    if (x11::NativeWindowState* managed = x11::FindNative(window))
    {
        x11::FocusManaged(*managed);
        return;
    }
    x11::State().wanted = true;
}
