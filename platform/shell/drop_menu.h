// The menu that a drop by the right button shows.
#pragma once

#include "ole2.h"

namespace platform
{

/// Asks at a point of the screen which of the possible effects is meant; `usual` is the default entry.
/// DROPEFFECT_NONE when the user wants none of them, or no menu can be shown. Messages are dispatched meanwhile.
DWORD AskDropEffect(HWND owner, POINT point, DWORD possible, DWORD usual);

} // namespace platform
