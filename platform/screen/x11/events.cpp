// From X events to the screen's events.
#include "platform/screen/x11/connection.h"
#include "platform/screen/x11/focus.h"
#include "platform/screen/x11/keymap.h"
#include "platform/screen/x11/monitors.h"
#include "platform/screen/x11/windows.h"
#include "platform/screen/x11/xkb_protocol.h"

#include "platform/base/clock.h"

#include <cstdio>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <xcb/xinput.h>

namespace platform::x11
{
namespace
{

using screen::Event;
using screen::EventType;

constexpr int kNotch = 120;

struct Events
{
    std::deque<Event> ready;
    unsigned pressed = 0; ///< buttons whose press was reported, one bit each
    std::optional<std::int64_t> clockOffset;
    int wakeFd = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
};

Events& TheEvents()
{
    static Events& events = *new Events;
    return events;
}

/// The server's milliseconds on the layer's clock.
std::uint64_t ClockTime(xcb_timestamp_t serverTime)
{
    auto& offset = TheEvents().clockOffset;
    const auto now = static_cast<std::int64_t>(NowMs());
    const auto server = static_cast<std::int64_t>(serverTime);
    // Taken anew when the server's time has wrapped (after 49 days) or the clock has been changed.
    if (!offset || server + *offset > now || now - (server + *offset) > 10000)
        offset = now - server;
    return static_cast<std::uint64_t>(server + *offset);
}

unsigned Modifiers(std::uint16_t state)
{
    unsigned modifiers = 0;
    modifiers |= (state & XCB_MOD_MASK_SHIFT) != 0 ? screen::kShift : 0;
    modifiers |= (state & XCB_MOD_MASK_CONTROL) != 0 ? screen::kControl : 0;
    modifiers |= (state & XCB_MOD_MASK_1) != 0 ? screen::kAlt : 0;
    modifiers |= (state & XCB_MOD_MASK_LOCK) != 0 ? screen::kCapsLock : 0;
    modifiers |= (state & XCB_MOD_MASK_2) != 0 ? screen::kNumLock : 0;
    return modifiers;
}

template <typename T>
Event MouseEvent(EventType type, const T& from)
{
    Event event;
    event.type = type;
    event.window = from.event;
    event.position = {from.root_x, from.root_y};
    event.time = ClockTime(from.time);
    event.modifiers = Modifiers(from.state);
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

void Add(Event event)
{
    auto& ready = TheEvents().ready;
    const bool onlyMoved = event.type == EventType::MouseMove && !ready.empty() &&
                           ready.back().type == EventType::MouseMove && ready.back().window == event.window;
    if (onlyMoved)
        ready.back() = event;
    else
        ready.push_back(event);
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
        Add(event);
        return;
    }
    const auto button = ButtonOf(from.detail);
    const unsigned bit = 1U << from.detail % 32;
    unsigned& pressed = TheEvents().pressed;
    // A release without its press belongs to a click that began elsewhere, such as the one that opened the menu.
    if (!button || (!down && (pressed & bit) == 0))
        return;
    pressed = down ? pressed | bit : pressed & ~bit;
    Event event = MouseEvent(down ? EventType::ButtonDown : EventType::ButtonUp, from);
    event.button = *button;
    Add(event);
}

void OnCrossing(const xcb_enter_notify_event_t& from, bool entered)
{
    OnPointerInside(entered || PointIsInPopup({from.root_x, from.root_y}));
    Add(MouseEvent(entered ? EventType::MouseMove : EventType::MouseLeave, from));
}

void OnKey(const xcb_key_press_event_t& from, bool down)
{
    static std::uint8_t held[32] = {};
    std::uint8_t& bits = held[from.detail / 8];
    const auto bit = static_cast<std::uint8_t>(1U << from.detail % 8);
    Event event = MouseEvent(down ? EventType::KeyDown : EventType::KeyUp, from);
    event.repeat = down && (bits & bit) != 0;
    bits = static_cast<std::uint8_t>(down ? bits | bit : bits & ~bit);
    const KeyMeaning meaning = TranslateKey(from.detail, from.state);
    event.virtualKey = meaning.virtualKey;
    event.extended = meaning.extended;
    // evdev's key codes are those of the PC keyboard for all keys that it had.
    event.scanCode = static_cast<BYTE>(from.detail - 8);
    if (down)
        std::copy(std::begin(meaning.text), std::end(meaning.text), event.text);
    if (event.virtualKey != 0 || event.text[0] != 0)
        Add(event);
}

void OnExpose(const xcb_expose_event_t& from)
{
    NativeWindowState* window = FindNative(from.window);
    // What the mapping itself has exposed is covered by the picture that was sent right behind it.
    if (window != nullptr && from.sequence != window->mapSequence)
        Repaint(*window, {from.x, from.y, from.x + from.width, from.y + from.height});
}

void OnConfigure(const xcb_configure_notify_event_t& from)
{
    NativeWindowState* window = FindNative(from.window);
    if (window == nullptr)
        return;
    constexpr std::uint8_t kSent = 0x80;
    // What the server itself says of a framed window is relative to the frame, which tells nothing; only what the
    // window manager sends is on the root.
    if ((from.response_type & kSent) != 0 || window->frame == 0)
        window->placed = {from.x, from.y};
    const POINT origin = window->placed;
    const RECT bounds{origin.x, origin.y, origin.x + from.width, origin.y + from.height};
    if (!EqualRect(&bounds, &window->bounds))
    {
        Event event;
        event.type = EventType::Placed;
        event.window = from.window;
        event.bounds = bounds;
        event.time = NowMs();
        Add(event);
    }
}

void OnMapped(xcb_window_t id)
{
    NativeWindowState* window = FindNative(id);
    if (window != nullptr)
    {
        window->viewable = true;
        PutPopupsBelow(*window);
        if (window->keyboardWanted)
            FocusManaged(*window);
    }
}

void OnClientMessage(const xcb_client_message_event_t& from)
{
    Connection& connection = TheConnection();
    if (from.type == connection[Atom::WmProtocols] && from.data.data32[0] == connection[Atom::WmDeleteWindow])
    {
        Event event;
        event.type = EventType::CloseRequest;
        event.window = from.window;
        event.time = NowMs();
        Add(event);
    }
}

void OnExtensionEvent(const xcb_ge_generic_event_t& from)
{
    const auto* input = TheConnection().Extension(xcb_input_id);
    if (input == nullptr || from.extension != input->major_opcode)
        return;
    if (from.event_type == XCB_INPUT_RAW_BUTTON_PRESS)
    {
        const auto& press = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(from);
        const bool wheel = press.detail >= 4 && press.detail <= 7;
        if (!wheel)
            OnRawPress(press.time);
    }
    else if (from.event_type == XCB_INPUT_RAW_MOTION)
    {
        OnRawMove();
    }
}

void OnError(const xcb_generic_error_t& error)
{
    if (NoteSharingError(error))
    {
        RepaintAll();
        return;
    }
    // Requests that may fail have their errors dropped where they are sent, so this is a mistake of ours.
    static const bool strict = std::getenv("ORB_LAUNCHER_STRICT_X11") != nullptr;
    if (strict)
    {
        std::fprintf(stderr, "orb-launcher: X error %d of request %d.%d, resource 0x%x\n", error.error_code,
                     error.major_code, error.minor_code, error.resource_id);
        std::abort();
    }
}

bool HandleInputEvent(const xcb_generic_event_t& event, std::uint8_t type)
{
    switch (type)
    {
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE:
        OnKey(reinterpret_cast<const xcb_key_press_event_t&>(event), type == XCB_KEY_PRESS);
        return true;
    case XCB_BUTTON_PRESS:
    case XCB_BUTTON_RELEASE:
        OnButton(reinterpret_cast<const xcb_button_press_event_t&>(event), type == XCB_BUTTON_PRESS);
        return true;
    case XCB_MOTION_NOTIFY:
        Add(MouseEvent(EventType::MouseMove, reinterpret_cast<const xcb_motion_notify_event_t&>(event)));
        return true;
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY:
        OnCrossing(reinterpret_cast<const xcb_enter_notify_event_t&>(event), type == XCB_ENTER_NOTIFY);
        return true;
    case XCB_FOCUS_IN:
        OnFocusIn(reinterpret_cast<const xcb_focus_in_event_t&>(event), TheEvents().ready);
        return true;
    case XCB_FOCUS_OUT:
        OnFocusOut(reinterpret_cast<const xcb_focus_out_event_t&>(event));
        return true;
    default:
        return false;
    }
}

void HandleWindowEvent(const xcb_generic_event_t& event, std::uint8_t type)
{
    switch (type)
    {
    case XCB_EXPOSE:
        OnExpose(reinterpret_cast<const xcb_expose_event_t&>(event));
        break;
    case XCB_CONFIGURE_NOTIFY:
        OnConfigure(reinterpret_cast<const xcb_configure_notify_event_t&>(event));
        break;
    case XCB_REPARENT_NOTIFY:
    {
        const auto& reparent = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
        if (NativeWindowState* window = FindNative(reparent.window))
            window->frame = reparent.parent != TheConnection().Root() ? reparent.parent : 0;
        break;
    }
    case XCB_MAP_NOTIFY:
        OnMapped(reinterpret_cast<const xcb_map_notify_event_t&>(event).window);
        break;
    case XCB_CLIENT_MESSAGE:
        OnClientMessage(reinterpret_cast<const xcb_client_message_event_t&>(event));
        break;
    case XCB_MAPPING_NOTIFY:
        ForgetKeymap();
        break;
    case XCB_GE_GENERIC:
        OnExtensionEvent(reinterpret_cast<const xcb_ge_generic_event_t&>(event));
        break;
    default:
        break;
    }
}

bool IsExtensionEvent(std::uint8_t type, xcb_extension_t& extension, int number)
{
    const auto* data = TheConnection().Extension(extension);
    return data != nullptr && type == data->first_event + number;
}

void Handle(const xcb_generic_event_t& event)
{
    const std::uint8_t type = event.response_type & 0x7F;
    if (type == 0)
        OnError(reinterpret_cast<const xcb_generic_error_t&>(event));
    else if (HandleInputEvent(event, type))
        return;
    else if (IsExtensionEvent(type, xcb_randr_id, XCB_RANDR_SCREEN_CHANGE_NOTIFY))
        RereadMonitors();
    else if (IsExtensionEvent(type, xcb_xkb_id, 0)) // all of XKB's events have this one number
        ForgetKeymap();
    else
        HandleWindowEvent(event, type);
}

/// True when there was anything.
bool HandleArrived()
{
    xcb_connection_t* xcb = TheConnection().Xcb();
    bool any = false;
    for (XcbPtr<xcb_generic_event_t> event(xcb_poll_for_event(xcb)); event != nullptr;
         event.reset(xcb_poll_for_queued_event(xcb)))
    {
        Handle(*event);
        any = true;
    }
    TheConnection().RequireAlive();
    return any;
}

/// Handles all that the server had sent when it answered a question asked now.
void HandleUpToNow()
{
    Collect(xcb_get_input_focus_reply, xcb_get_input_focus(TheConnection().Xcb()));
    HandleArrived();
}

/// Handles what has arrived; false when nothing had.
bool Pump()
{
    if (!TheConnection().IsOpen())
        return false;
    bool any = HandleArrived();
    while (FocusCheckPending())
    {
        HandleUpToNow();
        any = true;
        CheckFocus(TheEvents().ready);
        // The check's own questions may have brought events along, for which the socket will not wake us again.
        HandleArrived();
    }
    return any;
}

int TimeoutUntil(std::optional<std::uint64_t> deadline)
{
    if (!deadline)
        return -1;
    const std::uint64_t now = NowMs();
    return *deadline > now ? static_cast<int>(std::min<std::uint64_t>(*deadline - now, 1U << 30)) : 0;
}

} // namespace
} // namespace platform::x11

namespace platform::screen
{

bool NextEvent(Event& event)
{
    auto& ready = x11::TheEvents().ready;
    if (ready.empty())
        x11::Pump();
    if (ready.empty())
        return false;
    event = ready.front();
    ready.pop_front();
    return true;
}

void Wait(std::optional<std::uint64_t> deadline)
{
    x11::Events& events = x11::TheEvents();
    // Writing to the socket also reads what has arrived there, of which poll does not tell any more. So the last look
    // comes after the last writing.
    do
    {
        Commit();
    } while (x11::Pump());
    if (!events.ready.empty())
        return;
    const bool open = x11::TheConnection().IsOpen();
    pollfd fds[] = {{events.wakeFd, POLLIN, 0},
                    {open ? xcb_get_file_descriptor(x11::TheConnection().Xcb()) : -1, POLLIN, 0}};
    poll(fds, 2, x11::TimeoutUntil(deadline));
    std::uint64_t count = 0;
    while (read(events.wakeFd, &count, sizeof(count)) > 0)
    {
    }
}

void Wake()
{
    const std::uint64_t one = 1;
    const auto written = write(x11::TheEvents().wakeFd, &one, sizeof(one));
    static_cast<void>(written); // a full counter wakes as well
}

} // namespace platform::screen
