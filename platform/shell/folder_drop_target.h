// The drop target of a folder: copies, moves or links files into it, and makes entries for addresses of the web.
#pragma once

#include "ole2.h"

#include <string>

namespace platform
{

/// For the folder at a POSIX path, with one reference. `owner` is that of the menu and the boxes shown; may be null.
IDropTarget* MakeFolderDropTarget(HWND owner, std::string folder);

} // namespace platform
