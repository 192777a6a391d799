// The desktop's own places, as POSIX paths, by the XDG user directory rules.
#pragma once

#include <string>

namespace platform
{

/// The folder that user-dirs.dirs names under `key`, such as "XDG_DESKTOP_DIR"; "" when it names none.
std::string UserFolder(const char* key);

} // namespace platform
