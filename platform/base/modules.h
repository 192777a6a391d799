// Which module a module handle names.
#pragma once

#include "winbase.h"

namespace platform
{

/// True for the running program's handle and for null.
bool IsProgramModule(HMODULE module);
/// True for the pseudo handle of a system module.
bool IsSystemModule(HMODULE module);

} // namespace platform
