// Contexts that are open on windows.
#pragma once

#include "platform/windowing/window.h"

namespace platform
{

/// Opens a context on a window: origin at its client area (or at the window's own corner), clipped to `clip` (surface
/// coordinates). What `damage` holds counts as drawn when the context is closed. Null when out of handles.
HDC OpenContext(Window& window, bool clientOrigin, const Region& clip, Region damage);
/// Closes a context; false when it is none of the open ones.
bool CloseContext(HDC dc);
/// The window a context was opened on, null for none.
HWND WindowOfContext(HDC dc);

} // namespace platform
