// Reading a whole file that anyone may have named.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace platform
{

/// The content of a regular file of at most `limit` bytes; nothing for any other. Pipes and devices, which may block or
/// do things when opened, are left alone. Links are followed; a mount that does not answer blocks (place_call.h).
std::optional<std::string> ReadRegularFile(const std::string& path, std::size_t limit);

} // namespace platform
