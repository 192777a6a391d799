// Other programs' windows whose end this program wants to hear of. A client selects a window's events once, so whoever
// watches one must not undo what another part of this program has asked for.
#pragma once

#include <cstdint>
#include <xcb/xproto.h>

namespace platform::x11
{

enum class Watcher : std::uint8_t
{
    Transfer, ///< what is sent in pieces: deleted properties too
    DragIn,
    DragOut,
};
/// Once on and once off, however often it is asked for. A window of this program's own keeps the events that it has.
void WatchForeign(xcb_window_t window, Watcher watcher, bool on);
/// The window is no more: its id may come to be another's.
void ForgetForeign(xcb_window_t window);

} // namespace platform::x11
