// What a file's content is, as the desktop names it.
#pragma once

#include <string>
#include <sys/stat.h>

namespace platform
{

/// The content type of the file at `path`, whose status is given.
std::string ContentTypeOf(const std::string& path, const struct stat& status);

} // namespace platform
