// By what a cache sees that a file has changed: its times, its size, its identity.
#pragma once

#include "platform/base/hash_bytes.h"

#include <cstdint>
#include <string>
#include <sys/stat.h>

namespace platform
{

/// The modification time in nanoseconds since 1970.
inline std::int64_t ModifiedAt(const struct stat& status)
{
    return std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec;
}

/// The modification time of a file or folder, 0 when it cannot be had. Follows links and may block.
inline std::int64_t ModificationTime(const std::string& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 ? ModifiedAt(status) : 0;
}

/// A number that changes with whatever is done to the file: its times, inode, size and mode.
inline std::uint64_t StampOf(const struct stat& status)
{
    const std::uint64_t words[] = {static_cast<std::uint64_t>(status.st_mtim.tv_sec),
                                   static_cast<std::uint64_t>(status.st_mtim.tv_nsec),
                                   static_cast<std::uint64_t>(status.st_ctim.tv_sec),
                                   static_cast<std::uint64_t>(status.st_ctim.tv_nsec),
                                   status.st_ino,
                                   static_cast<std::uint64_t>(status.st_size),
                                   status.st_mode};
    return HashBytes({reinterpret_cast<const char*>(words), sizeof words});
}

} // namespace platform
