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
/// The server's time as of which the content of what is dragged over this program is asked for; 0 when not known.
xcb_timestamp_t IncomingDragTime();
/// Whether another program drags something over this one, or has dropped it and waits; not while the user is asked
/// about a drop.
bool IsDraggedOver();

/// Whether this program drags, and has mouse and keyboard for it.
bool IsDragging();
/// Of a button, a movement or a crossing: these events begin alike.
void NoteDragPointer(const xcb_motion_notify_event_t& event);
void HandleOwnWindowHidden(xcb_window_t window);
/// What drags_in.cpp takes for the source's end.
void HandleDragAnswer(const XdndMessage& message);
void HandlePartnerGone(xcb_window_t window);
/// Somebody reads what this program drags.
void NoteDragRead();
/// When CheckDragTime has to be asked; nothing while no answer is awaited.
std::optional<std::uint64_t> DragDeadline();
void CheckDragTime();

/// Asked for at the first call.
const XdndAtoms& TheXdndAtoms();
void SendXdnd(xcb_window_t to, const XdndMessage& message);

} // namespace platform::x11
