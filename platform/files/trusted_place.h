// Which files can be touched without fear of being left hanging.
//
// Trusted is what lies, without a symbolic link on the way, on the file system of "/" or of the user's data folder:
// should one of those stop answering, nothing works anyhow. Nothing here touches any other file system.
#pragma once

#include <optional>
#include <string>
#include <sys/stat.h>

namespace platform
{

/// Whether the folder is trusted.
bool InTrustedPlace(const std::string& path);

/// The status of a file whose folder is trusted, from what the kernel has in memory, a final link not followed; nothing
/// when there is none. A mount point answers even when what is mounted there does not.
std::optional<struct statx> KnownStatus(const std::string& path);
/// Whether a file of that status lies on a trusted file system.
bool OnTrustedDevice(const struct statx& status);

} // namespace platform
