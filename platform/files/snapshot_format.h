// The format of folder snapshots, for their reader and their writer.
//
// Header, buckets (offsets of entries, 0 for none, linear probing), entries at multiples of 8, each followed by its
// names, texts that many entries share. All numbers are in the machine's own byte order: the file never leaves it.
#pragma once

#include "platform/files/listed_file.h"

#include <cstddef>

namespace platform
{

constexpr std::uint64_t kSnapshotVersion = 0x4f52'4253'4e41'5003; // raised whenever the format or a description changes

struct SnapshotHeader
{
    std::uint64_t version;
    std::uint64_t checksum; ///< of everything behind it
    std::uint64_t environment;
    std::uint64_t folder;      ///< hash of its path
    std::uint64_t folderStamp; ///< state of the folder that the list of entries was read in, 0 for none
    std::uint32_t buckets;
    std::uint32_t entries;
    std::uint64_t textsOffset; ///< texts: each its length in bytes (4 bytes) and its bytes, at multiples of 4
};

struct SnapshotEntry
{
    std::uint64_t nameHash;
    std::uint64_t stamp;
    std::uint32_t typeText; ///< among the texts (UTF-16)
    std::uint32_t iconText; ///< among the texts
    std::uint16_t displayUnits;
    std::uint16_t nameBytes;
    std::uint8_t kind;
    std::uint8_t flags; ///< kSnapshotHiddenFlag, kSnapshotDescribedFlag
    std::uint16_t reserved;
    // display name (UTF-16), name and a zero follow
};
static_assert(kMaxDisplayUnits <= 0xFFFF && kMaxNameBytes <= 0xFFFF);

constexpr std::uint8_t kSnapshotHiddenFlag = 1;
constexpr std::uint8_t kSnapshotDescribedFlag = 2;
constexpr std::size_t kSnapshotCheckedFrom = offsetof(SnapshotHeader, environment);

constexpr std::size_t RoundUp(std::size_t size, std::size_t multiple)
{
    return (size + multiple - 1) / multiple * multiple;
}

/// Everything outside the folder that the descriptions depend on.
std::uint64_t SnapshotEnvironment();

} // namespace platform
