// The source's side of XDND, version 5 (freedesktop), by one client message for each step.
#include "bench/foreign_drag.h"

#include "bench/observer.h"

#include <algorithm>
#include <cstdlib>

namespace bench
{

ForeignDrag::ForeignDrag(xcb_window_t over)
    : m_connection(xcb_connect(nullptr, nullptr)),
      m_window(xcb_generate_id(m_connection)),
      m_over(over),
      m_position(AtomNamed(m_connection, "XdndPosition")),
      m_status(AtomNamed(m_connection, "XdndStatus")),
      m_copy(AtomNamed(m_connection, "XdndActionCopy"))
{
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    xcb_create_window(m_connection, 0, m_window, screen->root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    constexpr std::uint32_t kVersion = 5U << 24;
    Send(AtomNamed(m_connection, "XdndEnter"), {kVersion, AtomNamed(m_connection, "text/uri-list")});
}

ForeignDrag::~ForeignDrag()
{
    Send(AtomNamed(m_connection, "XdndLeave"), {});
    xcb_disconnect(m_connection);
}

void ForeignDrag::MoveTo(int x, int y)
{
    const auto packed = static_cast<std::uint32_t>(x) << 16 | static_cast<std::uint32_t>(y);
    Send(m_position, {0, packed, XCB_CURRENT_TIME, m_copy});
}

void ForeignDrag::AwaitStatus()
{
    bool answered = false;
    while (!answered)
    {
        xcb_generic_event_t* const event = xcb_wait_for_event(m_connection);
        const auto* const message = reinterpret_cast<const xcb_client_message_event_t*>(event);
        answered =
            event == nullptr || ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE && message->type == m_status);
        std::free(event);
    }
}

void ForeignDrag::Send(xcb_atom_t type, std::array<std::uint32_t, 4> rest)
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = m_over;
    event.type = type;
    event.data.data32[0] = m_window;
    std::copy(rest.begin(), rest.end(), event.data.data32 + 1);
    xcb_send_event(m_connection, 0, m_over, 0, reinterpret_cast<const char*>(&event));
    xcb_flush(m_connection);
}

} // namespace bench
