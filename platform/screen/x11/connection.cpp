// Opening the connection and asking, in two batches, all that a start wants to know.
#include "platform/screen/x11/connection.h"

#include "platform/base/product.h"
#include "platform/base/sudden_end.h"
#include "platform/screen/x11/focus.h"
#include "platform/screen/x11/xkb_protocol.h"

#include <cstdio>
#include <cstring>
#include <unistd.h>
#include <xcb/shm.h>
#include <xcb/xinput.h>

namespace platform::x11
{
namespace
{

// Enough for any resource string; a length in four-byte units.
constexpr std::uint32_t kResourceLength = 1 << 16;

constexpr const char* kAtomNames[] = {
    "UTF8_STRING",
    "WM_PROTOCOLS",
    "WM_DELETE_WINDOW",
    "_MOTIF_WM_HINTS",
    "_NET_WM_NAME",
    "_NET_WM_PID",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_POPUP_MENU",
    "_NET_WM_WINDOW_TYPE_DIALOG",
    "_NET_WM_STATE",
    "_NET_WM_STATE_ABOVE",
    "_NET_WM_STATE_MODAL",
    "_NET_ACTIVE_WINDOW",
    "_NET_WORKAREA",
    "_NET_CURRENT_DESKTOP",
    "_NET_CLIENT_LIST",
    "_NET_WM_STRUT_PARTIAL",
    "_XSETTINGS_S", // the screen's number follows
    "_XSETTINGS_SETTINGS",
    "XdndAware",
    "_ORB_LAUNCHER_FOCUS",
};
static_assert(std::size(kAtomNames) == static_cast<std::size_t>(Atom::Count));

xcb_get_property_cookie_t AskProperty(xcb_connection_t* xcb, xcb_window_t window, xcb_atom_t property, xcb_atom_t type)
{
    return xcb_get_property(xcb, 0, window, property, type, 0, 4096);
}

} // namespace

Connection::Connection()
{
    m_xcb = xcb_connect(nullptr, &m_screenNumber);
    if (xcb_connection_has_error(m_xcb) != 0)
    {
        xcb_disconnect(m_xcb);
        m_xcb = nullptr;
        return;
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_xcb));
    for (int i = 0; i < m_screenNumber; ++i)
        xcb_screen_next(&screens);
    m_screen = screens.data;
    SendFirstBatch();
}

void Connection::SendFirstBatch()
{
    for (xcb_extension_t* extension : {&xcb_randr_id, &xcb_input_id, &xcb_shm_id, &xcb_xkb_id})
        xcb_prefetch_extension_data(m_xcb, extension);
    xcb_prefetch_maximum_request_length(m_xcb);
    for (std::size_t i = 0; i < m_atoms.size(); ++i)
    {
        std::string name = kAtomNames[i];
        name += i == static_cast<std::size_t>(Atom::XSettingsSelection) ? std::to_string(m_screenNumber) : "";
        m_atomCookies[i] = xcb_intern_atom(m_xcb, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    }
    m_resourcesCookie =
        xcb_get_property(m_xcb, 0, Root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, kResourceLength);
    m_pointerCookie = xcb_query_pointer(m_xcb, Root());
    xcb_flush(m_xcb);
}

void Connection::CollectAtoms()
{
    for (std::size_t i = 0; i < m_atoms.size(); ++i)
    {
        const auto reply = Collect(xcb_intern_atom_reply, m_atomCookies[i]);
        m_atoms[i] = reply != nullptr ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }
    m_atomsCollected = true;
}

xcb_atom_t Connection::operator[](Atom atom)
{
    if (!m_atomsCollected)
        CollectAtoms();
    return m_atoms[static_cast<std::size_t>(atom)];
}

const std::string& Connection::Resources()
{
    if (!m_resources)
    {
        const auto reply = Collect(xcb_get_property_reply, m_resourcesCookie);
        m_resources.emplace();
        if (reply != nullptr && reply->format == 8)
        {
            m_resources->assign(static_cast<const char*>(xcb_get_property_value(reply.get())),
                                static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
        }
    }
    return *m_resources;
}

std::optional<POINT> Connection::TakeFirstPointer()
{
    if (std::exchange(m_pointerTaken, true))
        return std::nullopt;
    const auto reply = Collect(xcb_query_pointer_reply, m_pointerCookie);
    return reply != nullptr ? std::optional(POINT{reply->root_x, reply->root_y}) : std::nullopt;
}

const xcb_query_extension_reply_t* Connection::Extension(xcb_extension_t& extension) const
{
    const xcb_query_extension_reply_t* reply = xcb_get_extension_data(m_xcb, &extension);
    return reply != nullptr && reply->present ? reply : nullptr;
}

void Connection::SendSecondBatch()
{
    if (std::exchange(m_secondBatchSent, true))
        return;
    if (Extension(xcb_randr_id) != nullptr)
    {
        xcb_discard_reply(m_xcb, xcb_randr_query_version(m_xcb, 1, 5).sequence);
        xcb_randr_select_input(m_xcb, Root(), XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE);
    }
    AskMonitors();
    settingsOwner = xcb_get_selection_owner(m_xcb, (*this)[Atom::XSettingsSelection]);
    SelectExtensionEvents();
    xcb_flush(m_xcb);
}

void Connection::AskMonitors()
{
    monitorsAsked = Extension(xcb_randr_id) != nullptr;
    if (monitorsAsked)
        monitors = xcb_randr_get_monitors(m_xcb, Root(), 1);
    workArea = AskProperty(m_xcb, Root(), (*this)[Atom::NetWorkArea], XCB_ATOM_CARDINAL);
    currentDesktop = AskProperty(m_xcb, Root(), (*this)[Atom::NetCurrentDesktop], XCB_ATOM_CARDINAL);
    clientList = AskProperty(m_xcb, Root(), (*this)[Atom::NetClientList], XCB_ATOM_WINDOW);
}

void Connection::SelectExtensionEvents()
{
    if (Extension(xcb_input_id) != nullptr)
    {
        // Version 2.2: raw events come also while another client has the pointer grabbed.
        xcb_discard_reply(m_xcb, xcb_input_xi_query_version(m_xcb, 2, 2).sequence);
        SelectRawEvents(false);
    }
    if (Extension(xcb_xkb_id) != nullptr)
    {
        // Makes key events carry the layout's group, and repeats come without releases in between.
        xcb_discard_reply(m_xcb, xcb_xkb_use_extension(m_xcb, 1, 0).sequence);
        const auto flags =
            xcb_xkb_per_client_flags(m_xcb, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                                     XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0);
        xcb_discard_reply(m_xcb, flags.sequence);
        // A client that has said it knows XKB is told of new layouts only this way.
        constexpr std::uint16_t kLayout = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
        constexpr std::uint16_t kParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS;
        xcb_xkb_select_events(m_xcb, XCB_XKB_ID_USE_CORE_KBD, kLayout, 0, kLayout, kParts, kParts, nullptr);
    }
}

void Connection::RequireAlive()
{
    if (xcb_connection_has_error(m_xcb) != 0)
        EndSuddenly("the display was lost");
}

void Connection::EndSuddenly(const char* why)
{
    // Not exit: exit handlers would wait for messages of windows that are no more.
    std::fprintf(stderr, ORB_PRODUCT ": %s\n", why);
    std::fflush(nullptr);
    if (g_beforeSuddenEnd != nullptr)
        g_beforeSuddenEnd();
    _exit(1);
}

Connection& TheConnection()
{
    static Connection& connection = *new Connection;
    return connection;
}

std::vector<std::uint32_t> CollectWords(xcb_get_property_cookie_t cookie)
{
    const auto reply = Collect(xcb_get_property_reply, cookie);
    if (reply == nullptr || reply->format != 32)
        return {};
    const auto* words = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {words, words + xcb_get_property_value_length(reply.get()) / sizeof(words[0])};
}

std::optional<std::uint32_t> CollectWord(xcb_get_property_cookie_t cookie)
{
    const std::vector<std::uint32_t> words = CollectWords(cookie);
    return !words.empty() ? std::optional(words.front()) : std::nullopt;
}

} // namespace platform::x11

namespace platform::screen
{

bool Open()
{
    return x11::TheConnection().IsOpen();
}

std::string DisplayName()
{
    const char* name = std::getenv("DISPLAY");
    return name != nullptr ? name : "(DISPLAY is not set)";
}

} // namespace platform::screen
