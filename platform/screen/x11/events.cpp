// Taking events from the server: those about windows and the display, waiting, and waking.
#include "platform/screen/x11/connection.h"
#include "platform/screen/x11/drags.h"
#include "platform/screen/x11/focus.h"
#include "platform/screen/x11/input.h"
#include "platform/screen/x11/keymap.h"
#include "platform/screen/x11/monitors.h"
#include "platform/screen/x11/selections.h"
#include "platform/screen/x11/text_input.h"
#include "platform/screen/x11/windows.h"
#include "platform/screen/x11/xkb_protocol.h"

#include "platform/base/clock.h"
#include "platform/base/product.h"

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

/// What ends a wait from another thread.
int WakeFd()
{
    static const int fd = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return fd;
}

void OnExpose(const xcb_expose_event_t& from)
{
    NativeWindowState* window = FindNative(from.window);
    // What the mapping itself has exposed is covered by the picture that was sent right behind it.
    if (window != nullptr && from.sequence != window->mapSequence)
        Repaint(*window, {from.x, from.y, from.x + from.width, from.y + from.height});
}

/// Of its pop-ups the program knows best where they are.
NativeWindowState* FindManaged(xcb_window_t id)
{
    NativeWindowState* window = FindNative(id);
    return window != nullptr && window->kind == screen::WindowKind::Managed ? window : nullptr;
}

void OnConfigure(const xcb_configure_notify_event_t& from)
{
    NativeWindowState* window = FindManaged(from.window);
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
        AddEvent(event);
    }
}

void OnMapped(xcb_window_t id)
{
    NativeWindowState* window = FindManaged(id);
    if (window != nullptr)
    {
        window->viewable = true;
        PutPopupsBelow(window->frame != 0 ? window->frame : window->id);
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
        AddEvent(event);
    }
    else if (from.type != connection[Atom::WmProtocols])
    {
        HandleDragMessage(from);
    }
}

bool IsWheel(std::uint32_t button)
{
    return button >= 4 && button <= 7;
}

void OnExtensionEvent(const xcb_ge_generic_event_t& from)
{
    const auto* input = TheConnection().Extension(xcb_input_id);
    if (input == nullptr || from.extension != input->major_opcode)
        return;
    if (from.event_type == XCB_INPUT_RAW_BUTTON_PRESS)
    {
        const auto& press = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(from);
        if (!IsWheel(press.detail))
            OnRawPress(press.time);
    }
    else if (from.event_type == XCB_INPUT_RAW_BUTTON_RELEASE)
    {
        if (!IsWheel(reinterpret_cast<const xcb_input_raw_button_release_event_t&>(from).detail))
            OnRawRelease();
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
        std::fprintf(stderr, ORB_PRODUCT ": X error %d of request %d.%d, resource 0x%x\n", error.error_code,
                     error.major_code, error.minor_code, error.resource_id);
        std::abort();
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
    case XCB_DESTROY_NOTIFY:
        HandleWindowGone(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
        // A dialog that is gone can be answered by nobody, and a menu that is gone not be closed.
        if (FindNative(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window) != nullptr)
            Connection::EndSuddenly("another program has destroyed a window");
        break;
    case XCB_MAP_NOTIFY:
        OnMapped(reinterpret_cast<const xcb_map_notify_event_t&>(event).window);
        break;
    case XCB_CLIENT_MESSAGE:
        OnClientMessage(reinterpret_cast<const xcb_client_message_event_t&>(event));
        break;
    case XCB_PROPERTY_NOTIFY:
        OnRootProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
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
    NoteInputTime(event, type);
    if (type == 0)
        OnError(reinterpret_cast<const xcb_generic_error_t&>(event));
    else if (HandleInputEvent(event, type) || HandleSelectionEvent(event, type))
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
    bool any = false;
    for (XcbPtr<xcb_generic_event_t> event(xcb_poll_for_event(Xcb())); event != nullptr;
         event.reset(xcb_poll_for_queued_event(Xcb())))
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
    Collect(xcb_get_input_focus_reply, xcb_get_input_focus(Xcb()));
    HandleArrived();
}

/// Handles what has arrived; false when nothing had.
bool Pump()
{
    if (!TheConnection().IsOpen())
        return false;
    bool any = HandleArrived();
    any |= HandleTextInput();
    while (FocusCheckPending())
    {
        HandleUpToNow();
        any = true;
        CheckFocus(ReadyEvents());
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

void HandleEventsUntil(std::uint64_t deadline, const std::function<bool()>& done)
{
    for (bool expired = false; !done() && !expired;)
    {
        xcb_flush(Xcb());
        // Writing also reads what has arrived, of which poll does not tell any more.
        if (HandleArrived())
            continue;
        expired = NowMs() >= deadline;
        pollfd fd{xcb_get_file_descriptor(Xcb()), POLLIN, 0};
        poll(&fd, 1, TimeoutUntil(deadline));
    }
}

} // namespace platform::x11

namespace platform::screen
{

bool NextEvent(Event& event)
{
    auto& ready = x11::ReadyEvents();
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
    // Writing to the socket also reads what has arrived there, of which poll does not tell any more. So the last look
    // comes after the last writing.
    do
    {
        Commit();
    } while (x11::Pump());
    if (!x11::ReadyEvents().empty())
        return;
    for (const std::optional<std::uint64_t> other :
         {x11::SelectionDeadline(), x11::TextInputDeadline(), x11::DragDeadline()})
        if (other)
            deadline = std::min(deadline.value_or(*other), *other);
    const bool open = x11::TheConnection().IsOpen();
    pollfd fds[] = {{x11::WakeFd(), POLLIN, 0},
                    {open ? xcb_get_file_descriptor(x11::Xcb()) : -1, POLLIN, 0},
                    {x11::TextInputFd(), POLLIN, 0}};
    poll(fds, std::size(fds), x11::TimeoutUntil(deadline));
    std::uint64_t count = 0;
    while (read(x11::WakeFd(), &count, sizeof(count)) > 0)
    {
    }
    x11::DropStalledSelections();
    x11::CheckDragTime();
}

void Wake()
{
    const std::uint64_t one = 1;
    const auto written = write(x11::WakeFd(), &one, sizeof(one));
    static_cast<void>(written); // a full counter wakes as well
}

} // namespace platform::screen
