// Drag and drop on X11: what the loop that takes events asks of it.
#pragma once

#include "platform/screen/drags.h"
#include "platform/screen/x11/xdnd.h"

#include <optional>
#include <xcb/xcb.h>

namespace platform::x11
{

/// A client message that may be one of the protocol's.
void HandleDragMessage(const xcb_client_message_event_t& event);
/// The end of a window, this program's or another's that is watched.
void HandleWindowGone(xcb_window_t window);
/// An event has been given out.
void NoteTaken(const screen::Event& event);
/// The server's time as of which the content of what is dragged over this program is asked for; 0 when not known.
xcb_timestamp_t IncomingDragTime();

/// Asked for at the first call.
const XdndAtoms& TheXdndAtoms();
void SendXdnd(xcb_window_t to, const XdndMessage& message);

} // namespace platform::x11
