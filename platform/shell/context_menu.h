// The context menu object of one or more items.
#pragma once

#include "shlobj.h"

#include "platform/shell/verbs.h"

namespace platform
{

/// A context menu for files, with one reference. `owner` is used for messages when an invocation names no window.
IContextMenu* MakeContextMenu(HWND owner, std::vector<VerbItem> items);

} // namespace platform
