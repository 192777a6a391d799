// Base folders of the user, by the XDG base directory specification, and making folders.
//
// POSIX paths without a trailing slash. A relative path in a variable counts as not set.
#pragma once

#include <string>
#include <vector>

namespace platform
{

/// The home folder: $HOME, else what the user data base says; "" when it is the root or there is none to be found.
std::string HomeFolder();
/// $XDG_DATA_HOME, by default ~/.local/share.
std::string DataHome();
/// $XDG_CONFIG_HOME, by default ~/.config.
std::string ConfigHome();
/// $XDG_CACHE_HOME, by default ~/.cache.
std::string CacheHome();
/// DataHome followed by each of $XDG_DATA_DIRS.
std::vector<std::string> DataFolders();
/// $XDG_CONFIG_DIRS, never empty: by default /etc/xdg.
std::vector<std::string> SystemConfigFolders();

/// Creates the folder and its parents where they are missing, with mode 0700. False, with errno set, when it is not
/// there afterwards; ENOTDIR when something else has its name.
bool MakeFolders(const std::string& path);

} // namespace platform
