// The hash behind checksums and look-ups in cache files.
#pragma once

#include <cstdint>
#include <string_view>

namespace platform
{

/// 64-bit hash of bytes; `seed` chains calls. Not for foreign input that is out to collide.
std::uint64_t HashBytes(std::string_view bytes, std::uint64_t seed = 0);

} // namespace platform
