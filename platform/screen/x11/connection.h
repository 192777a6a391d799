// The connection to the X server.
//
// Round trips are what a start pays for: each is two context switches between here and the server. All questions that a
// start has are asked in two batches, whose answers are collected when somebody needs one:
//   1. opening the connection (libxcb: set-up request and reply)
//   2. extensions, atoms, the resource string, the pointer, the focus
//   3. what needs an extension's number or an atom: monitors, work area, who publishes settings
//   4. the published settings, only where somebody publishes some
// Creating, filling, mapping and focusing a window then needs no answer at all.
#pragma once

#include "platform/screen/screen.h"

#include <array>
#include <cstdlib>
#include <memory>
#include <utility>
#include <xcb/randr.h>
#include <xcb/xcb.h>

namespace platform::x11
{

struct FreeDeleter
{
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply, event or error of libxcb.
template <typename T>
using XcbPtr = std::unique_ptr<T, FreeDeleter>;

enum class Atom : std::uint8_t
{
    Utf8String,
    WmProtocols,
    WmDeleteWindow,
    MotifWmHints,
    NetWmName,
    NetWmPid,
    NetWmWindowType,
    NetWmWindowTypePopupMenu,
    NetWmWindowTypeDialog,
    NetWmState,
    NetWmStateAbove,
    NetWmStateModal,
    NetActiveWindow,
    NetWorkArea,
    NetCurrentDesktop,
    NetClientList,
    NetWmStrutPartial,
    XSettingsSelection, ///< _XSETTINGS_S and the screen's number
    XSettingsSettings,
    XdndAware,
    HandedFocus, ///< marks the window that holds the keyboard for a process of this program (focus.cpp)
    Count,
};

class Connection
{
public:
    Connection();

    bool IsOpen() const { return m_xcb != nullptr; }
    xcb_connection_t* Xcb() const { return m_xcb; }
    xcb_window_t Root() const { return m_screen->root; }
    const xcb_screen_t& Screen() const { return *m_screen; }
    xcb_atom_t operator[](Atom atom);

    /// The server's resource string, as xrdb has set it. Collected once.
    const std::string& Resources();
    /// Where the pointer was when the connection was opened; nothing the second time.
    std::optional<POINT> TakeFirstPointer();
    /// The extension's description, null when the server has not got it.
    const xcb_query_extension_reply_t* Extension(xcb_extension_t& extension) const;

    /// Sends batch 3, once.
    void SendSecondBatch();
    /// Asks for what the monitors are made of; the cookies below are open until they have been collected.
    void AskMonitors();
    xcb_randr_get_monitors_cookie_t monitors{};
    xcb_get_property_cookie_t workArea{};
    xcb_get_property_cookie_t currentDesktop{};
    xcb_get_property_cookie_t clientList{};
    xcb_get_selection_owner_cookie_t settingsOwner{};
    bool monitorsAsked = false;

    /// Ends the process with one line on standard error when the server has gone.
    void RequireAlive();
    /// Ends the process with a line that says why.
    [[noreturn]] static void EndSuddenly(const char* why);

private:
    void SendFirstBatch();
    void CollectAtoms();
    void SelectExtensionEvents();

    xcb_connection_t* m_xcb = nullptr;
    xcb_screen_t* m_screen = nullptr;
    int m_screenNumber = 0;
    std::array<xcb_intern_atom_cookie_t, static_cast<std::size_t>(Atom::Count)> m_atomCookies{};
    std::array<xcb_atom_t, static_cast<std::size_t>(Atom::Count)> m_atoms{};
    bool m_atomsCollected = false;
    xcb_get_property_cookie_t m_resourcesCookie{};
    std::optional<std::string> m_resources;
    xcb_query_pointer_cookie_t m_pointerCookie{};
    bool m_pointerTaken = false;
    bool m_secondBatchSent = false;
};

/// Opens the connection at the first call.
Connection& TheConnection();
inline xcb_connection_t* Xcb()
{
    return TheConnection().Xcb();
}

/// Collects a reply; null when the request failed. No error is left behind.
template <typename Function, typename Cookie>
auto Collect(Function reply, Cookie cookie)
{
    xcb_generic_error_t* error = nullptr;
    auto* raw = reply(Xcb(), cookie, &error);
    std::free(error);
    return XcbPtr<std::remove_pointer_t<decltype(raw)>>(raw);
}

/// A property's 32-bit values; empty when it is not there or holds others.
std::vector<std::uint32_t> CollectWords(xcb_get_property_cookie_t cookie);
/// The first of them.
std::optional<std::uint32_t> CollectWord(xcb_get_property_cookie_t cookie);

/// Lets a request fail quietly.
inline void IgnoreErrors(xcb_void_cookie_t cookie)
{
    xcb_discard_reply(Xcb(), cookie.sequence);
}

} // namespace platform::x11
