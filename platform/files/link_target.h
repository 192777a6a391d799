// What symbolic links lead to, found out without hanging on a link into a mount that stopped answering.
#pragma once

#include "platform/files/trusted_place.h"

#include <optional>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace platform
{

/// The status of what the path of a link leads to, with st_mode 0 when there is nothing. Nothing when only asking with
/// patience will do, since the target lies, or may lie, elsewhere.
std::optional<struct stat> TargetOf(const std::string& path, TrustedWalk& walk);

/// The statuses of what the paths lead to, as TargetOf gives them; nothing for those that did not answer in time.
std::vector<std::optional<struct stat>> AskWithPatience(std::vector<std::string> paths);

} // namespace platform
