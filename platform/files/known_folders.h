// The desktop's own places, as POSIX paths, by the XDG base directory and user directory rules.
#pragma once

#include <string>
#include <vector>

namespace platform
{

/// The home folder; "" when there is none to be found.
std::string HomeFolder();
/// $XDG_DATA_HOME.
std::string DataHome();
/// $XDG_DATA_HOME followed by each of $XDG_DATA_DIRS.
std::vector<std::string> DataFolders();
/// The folder that user-dirs.dirs names under `key`, such as "XDG_DESKTOP_DIR"; "" when it names none.
std::string UserFolder(const char* key);
/// Creates the folder and its parents, readable by the user alone. True when it is there afterwards.
bool MakeFolders(const std::string& path);

} // namespace platform
