// Start-up: the launcher folder, the shared resources and the root level.
#pragma once

#include "support/wstring.h"

/// Takes all the steps up to the message loop: state, launcher folder, resources, OLE, root level. Returns the root's
/// window, null when it could not be created.
HWND StartLauncher(HINSTANCE instance, WStringView commandLine);

/// Dispatches messages for as long as the root's window exists.
void PumpMessagesWhileOpen(HWND root);

/// Takes the steps after the message loop; `root` is what StartLauncher returned.
void EndLauncher(HWND root);
