// Shell items: files by their path.
#pragma once

#include "shlobj.h"

#include <string>

namespace platform
{

/// An item for a POSIX path, with one reference.
IShellItem* MakeShellItem(std::string path);

} // namespace platform
