// The system image list, the type names and the names of folders: what item identifiers refer to by number.
//
// Each distinct icon identity (listed_file.h) has one index for the life of the process. User-interface thread only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace platform
{

/// Bit of the overlay in SHFILEINFOW.iIcon: the arrow of a link.
constexpr int kLinkOverlay = 1 << 24;

std::uint32_t SystemImageIndex(std::string_view identity);
/// Documents for an index that was never given out.
const std::string& SystemImageIdentity(std::uint32_t index);

std::uint32_t TypeNameIndex(std::u16string_view name);
/// Empty for an index that was never given out.
const std::u16string& TypeName(std::uint32_t index);

std::uint32_t FolderNameIndex(std::string_view name);
/// Null for an index that was never given out.
const std::string* FolderName(std::uint32_t index);

} // namespace platform
