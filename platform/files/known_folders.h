// Where the user's desktop and start menu are, as POSIX paths, by the XDG user directory and desktop menu rules.
#pragma once

#include <string>

namespace platform
{

/// What user-dirs.dirs names as the desktop, else ~/Desktop. Whether it is there is not looked at.
std::string DesktopFolder();
/// The user's own applications, created when missing.
std::string UserStartMenu();
/// The system's applications: the first folder that holds any, else the first there is; "" for none.
std::string CommonStartMenu();

} // namespace platform
