// The window that other programs' dialogs belong to.
#pragma once

#include "windef.h"

#include <cstdint>

namespace platform
{

/// The native window (X id) of the owner's top-level window, of the active window for no owner; 0 when there is none.
std::uint32_t NativeParent(HWND owner);

} // namespace platform
