// From X's mouse, key and focus events to the screen's events.
#include "platform/screen/x11/input.h"

#include "platform/base/clock.h"
#include "platform/screen/x11/drags.h"
#include "platform/screen/x11/focus.h"
#include "platform/screen/x11/keymap.h"
#include "platform/screen/x11/text_input.h"
#include "platform/screen/x11/windows.h"

namespace platform::x11
{
namespace
{

using screen::Event;
using screen::EventType;

constexpr int kNotch = 120;

struct Input
{
    unsigned pressed = 0; ///< buttons whose press was reported, one bit each
    std::optional<std::int64_t> clockOffset;
};
constinit Input g_input;

/// The server's milliseconds on the layer's clock.
std::uint64_t ClockTime(xcb_timestamp_t serverTime)
{
    auto& offset = g_input.clockOffset;
    const auto now = static_cast<std::int64_t>(NowMs());
    const auto server = static_cast<std::int64_t>(serverTime);
    // Taken anew when the server's time has wrapped (after 49 days) or the clock has been changed.
    if (!offset || server + *offset > now || now - (server + *offset) > 10000)
        offset = now - server;
    return static_cast<std::uint64_t>(server + *offset);
}

template <typename T>
Event MouseEvent(EventType type, const T& from)
{
    Event event;
    event.type = type;
    event.window = FindNative(from.event) != nullptr ? from.event : 0; // a grab's window is nobody's
    event.position = {from.root_x, from.root_y};
    event.time = ClockTime(from.time);
    event.modifiers = ModifiersOf(from.state);
    return event;
}

std::optional<screen::Button> ButtonOf(xcb_button_t button)
{
    switch (button)
    {
    case XCB_BUTTON_INDEX_1:
        return screen::Button::Left;
    case XCB_BUTTON_INDEX_2:
        return screen::Button::Middle;
    case XCB_BUTTON_INDEX_3:
        return screen::Button::Right;
    default:
        return std::nullopt;
    }
}

void OnButton(const xcb_button_press_event_t& from, bool down)
{
    const bool wheel = from.detail == XCB_BUTTON_INDEX_4 || from.detail == XCB_BUTTON_INDEX_5;
    if (down)
        OnOwnPress(from.time);
    if (wheel && down)
    {
        Event event = MouseEvent(EventType::Wheel, from);
        event.wheel = from.detail == XCB_BUTTON_INDEX_4 ? kNotch : -kNotch;
        AddEvent(event);
        return;
    }
    const auto button = ButtonOf(from.detail);
    const unsigned bit = 1U << from.detail % 32;
    unsigned& pressed = g_input.pressed;
    // A release without its press belongs to a click that began elsewhere, such as the one that opened the menu.
    if (!button || (!down && (pressed & bit) == 0))
        return;
    pressed = down ? pressed | bit : pressed & ~bit;
    Event event = MouseEvent(down ? EventType::ButtonDown : EventType::ButtonUp, from);
    event.button = *button;
    AddEvent(event);
}

void OnCrossing(const xcb_enter_notify_event_t& from, bool entered)
{
    // This program's own drag has mouse and picture wherever the pointer goes.
    if (IsDragging())
    {
        if (from.mode != XCB_NOTIFY_MODE_NORMAL || !entered)
            return;
        NoteDragPointer(reinterpret_cast<const xcb_motion_notify_event_t&>(from));
        AddEvent(MouseEvent(EventType::MouseMove, from));
        return;
    }
    OnPointerInside(entered || PointIsInPopup({from.root_x, from.root_y}));
    AddEvent(MouseEvent(entered ? EventType::MouseMove : EventType::MouseLeave, from));
}

void OnKey(const xcb_key_press_event_t& from, bool down)
{
    static std::uint8_t held[32] = {};
    std::uint8_t& bits = held[from.detail / 8];
    const auto bit = static_cast<std::uint8_t>(1U << from.detail % 8);
    Event event = MouseEvent(down ? EventType::KeyDown : EventType::KeyUp, from);
    event.repeat = down && (bits & bit) != 0;
    bits = static_cast<std::uint8_t>(down ? bits | bit : bits & ~bit);
    const KeyMeaning meaning = TranslateKey(from.detail, from.state, down);
    event.virtualKey = meaning.virtualKey;
    event.extended = meaning.extended;
    // evdev's key codes are those of the PC keyboard for all keys that it had.
    event.scanCode = static_cast<BYTE>(from.detail - 8);
    static_assert(sizeof(event.text) == sizeof(meaning.text));
    std::copy(std::begin(meaning.text), std::end(meaning.text), event.text);
    if (event.virtualKey != 0 || event.text[0] != 0)
        AddEvent(event);
}

} // namespace

unsigned ModifiersOf(std::uint16_t state)
{
    unsigned modifiers = 0;
    modifiers |= (state & XCB_MOD_MASK_SHIFT) != 0 ? screen::kShift : 0;
    modifiers |= (state & XCB_MOD_MASK_CONTROL) != 0 ? screen::kControl : 0;
    modifiers |= (state & XCB_MOD_MASK_1) != 0 ? screen::kAlt : 0;
    modifiers |= (state & XCB_MOD_MASK_LOCK) != 0 ? screen::kCapsLock : 0;
    modifiers |= (state & XCB_MOD_MASK_2) != 0 ? screen::kNumLock : 0;
    return modifiers;
}

std::deque<Event>& ReadyEvents()
{
    static auto& ready = *new std::deque<Event>;
    return ready;
}

void AddEvent(const Event& event)
{
    auto& ready = ReadyEvents();
    const bool onlyMoved = event.type == EventType::MouseMove && !ready.empty() &&
                           ready.back().type == EventType::MouseMove && ready.back().window == event.window;
    if (onlyMoved)
        ready.back() = event;
    else
        ready.push_back(event);
}

void ReleaseButtons(POINT position, unsigned modifiers)
{
    const unsigned pressed = std::exchange(g_input.pressed, 0);
    for (xcb_button_t button = XCB_BUTTON_INDEX_1; button <= XCB_BUTTON_INDEX_3; ++button)
    {
        if ((pressed & 1U << button) == 0)
            continue;
        Event event;
        event.type = EventType::ButtonUp;
        event.position = position;
        event.modifiers = modifiers;
        event.time = NowMs();
        event.button = *ButtonOf(button);
        AddEvent(event);
    }
}

void HandleKey(const xcb_key_press_event_t& event)
{
    OnKey(event, (event.response_type & 0x7F) == XCB_KEY_PRESS);
}

bool HandleInputEvent(const xcb_generic_event_t& event, std::uint8_t type)
{
    switch (type)
    {
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE:
        if (!OfferKey(reinterpret_cast<const xcb_key_press_event_t&>(event)))
            HandleKey(reinterpret_cast<const xcb_key_press_event_t&>(event));
        return true;
    case XCB_BUTTON_PRESS:
    case XCB_BUTTON_RELEASE:
        NoteDragPointer(reinterpret_cast<const xcb_motion_notify_event_t&>(event));
        OnButton(reinterpret_cast<const xcb_button_press_event_t&>(event), type == XCB_BUTTON_PRESS);
        return true;
    case XCB_MOTION_NOTIFY:
        NoteDragPointer(reinterpret_cast<const xcb_motion_notify_event_t&>(event));
        AddEvent(MouseEvent(EventType::MouseMove, reinterpret_cast<const xcb_motion_notify_event_t&>(event)));
        return true;
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY:
        OnCrossing(reinterpret_cast<const xcb_enter_notify_event_t&>(event), type == XCB_ENTER_NOTIFY);
        return true;
    case XCB_FOCUS_IN:
        OnFocusIn(reinterpret_cast<const xcb_focus_in_event_t&>(event), ReadyEvents());
        return true;
    case XCB_FOCUS_OUT:
        OnFocusOut(reinterpret_cast<const xcb_focus_out_event_t&>(event));
        return true;
    default:
        return false;
    }
}

} // namespace platform::x11
