// System parameters that the user's desktop decides.
#pragma once

#include "windows.h"

namespace platform
{

/// A desktop setting as a number, `fallback` when it is missing or none.
int DesktopNumber(const char* name, int fallback);
/// Pixels of a length given at 96 DPI, on the primary monitor.
int ScaledPixels(int length);
/// The desktop's interface font at the primary monitor's DPI; "Segoe UI" 9 pt where the desktop names none.
LOGFONTW InterfaceFont();

} // namespace platform
