// Giving a file another name in its folder.
#pragma once

#include <string>

namespace platform
{

/// Renames, never replacing what has the new name already: EEXIST then, also for a name that differs in letter case
/// alone where the file system tells it apart. Another errno value for other failures, 0 when done.
int RenameFile(const std::string& folder, const std::string& from, const std::string& to);

} // namespace platform
