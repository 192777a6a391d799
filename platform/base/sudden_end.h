// What is to be brought to an end before the process ends past its exit handlers, as it does when the display is lost.
#pragma once

namespace platform
{

using EndHook = void (*)();

/// Called on the user-interface thread; takes a few seconds at most. Null while there is nothing of the kind.
inline constinit EndHook g_beforeSuddenEnd = nullptr;

} // namespace platform
