// Files that only save time: what they hold can be lost at any moment.
//
// They are believed, so they are read and written only where nobody else can have put them: a folder or file that
// belongs to another user, or that others may write, is as good as none.
#pragma once

#include "platform/base/unique_fd.h"

#include <string>
#include <string_view>

namespace platform
{

/// orb-launcher in CacheHome(), created when missing; empty when there is none to be trusted, and so no cache.
const std::string& CacheFolder();

/// Opens a file of the cache folder for reading; invalid when it is missing or not to be trusted.
UniqueFd OpenCacheFile(const std::string& path);

/// Replaces the file in one step (temporary file and rename, no fsync). False on failure, which is never an error.
bool ReplaceCacheFile(const std::string& path, std::string_view content);

} // namespace platform
