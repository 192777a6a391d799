// The classes that CoCreateInstance makes objects of.
#pragma once

#include "shlobj.h"

namespace platform
{

/// Each has one reference.
IUnknown* MakeShellLink();
IUnknown* MakeFileDialog();

} // namespace platform
