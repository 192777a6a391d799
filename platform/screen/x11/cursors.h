// Pictures of the pointer: the desktop's own, or those that every display has.
#pragma once

#include "platform/screen/drags.h"

#include <xcb/xproto.h>

namespace platform::x11
{

/// The I-beam over text. Made when it is first needed, as are those below.
xcb_cursor_t TextCursor();
/// What a drop would do; 0 for nothing.
xcb_cursor_t DragCursor(screen::DragActions action);

} // namespace platform::x11
