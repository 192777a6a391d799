// Focus, activation and the foreground.
//
// One of this program's top-level windows is active, and one window (it or a child of it) has the focus. The program is
// in the foreground while the screen's keyboard belongs to one of its windows.
#pragma once

#include "platform/windowing/window.h"

namespace platform
{

/// Makes a top-level window (null for none) the active one, with all messages. True when it is active afterwards.
bool SetActive(HWND next, bool byMouse);
/// Makes a top-level window active and the program the foreground one.
bool SetForeground(HWND next, bool byMouse);
/// The screen says that this program has the keyboard: `managed` got it, or the pop-ups for null.
void OnActivated(HWND managed);
/// The screen says that the user has turned to another program.
void OnDeactivated();

} // namespace platform
