// Where the user's desktop and start menu are, as POSIX paths, by the XDG user directory and desktop menu rules.
#pragma once

#include <string>

namespace platform
{

/// What user-dirs.dirs names as the desktop, an absolute path or one below $HOME, else ~/Desktop. It may be the home
/// folder itself, which is how a user says that there is none. Whether it is there is not looked at.
std::string DesktopFolder();
bool IsHome(const std::string& folder);
/// Makes the desktop where it is missing. False elsewhere than in the home folder: what is to lie on another disk is
/// not made where that disk would be.
bool MakeDesktopFolder(const std::string& folder);
/// The user's own applications, created when missing.
std::string UserStartMenu();
/// The system's applications: the first folder that holds any, else the first there is; "" for none.
std::string CommonStartMenu();

} // namespace platform
