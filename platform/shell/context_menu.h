// The context menu object of items, and of a folder's background.
#pragma once

#include "shlobj.h"

#include "platform/shell/verbs.h"

namespace platform
{

/// A context menu for files, with one reference. `owner` is used for messages when an invocation names no window.
IContextMenu* MakeContextMenu(HWND owner, std::vector<VerbItem> items);
/// The menu of the folder's own background.
IContextMenu* MakeBackgroundMenu(HWND owner, VerbItem folder);

} // namespace platform
