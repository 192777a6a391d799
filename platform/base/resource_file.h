// Reading a compiled resource file (.res).
//
// Format: Microsoft's "Resource File Formats" (32-bit): a sequence of entries, each aligned to 4 bytes: DWORD data
// size, DWORD header size, type, name (each either 0xFFFF and a 16-bit number, or a UTF-16 string with terminator),
// padding to 4, DWORD data version, WORD memory flags, WORD language, DWORD version, DWORD characteristics, then the
// data. The first entry is an empty one that marks the format. All numbers are little-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace platform
{

/// A resource's type or name: a number, or text (upper-cased) when text is not empty.
struct ResourceId
{
    std::uint16_t number = 0;
    std::u16string text;

    bool operator==(const ResourceId&) const = default;
};

using ResourceBytes = std::span<const unsigned char>;

struct ResourceEntry
{
    ResourceId type;
    ResourceId name;
    ResourceBytes data;
};

/// The identifier that an API caller means: an integer resource, "#n", or a string.
ResourceId ResourceIdFromText(std::u16string_view text);

/// The entry at `offset`, which moves on to the next one; nothing at the end of the file or where it is malformed.
std::optional<ResourceEntry> NextResource(ResourceBytes file, std::size_t& offset);

/// String `id` of one string table block (RT_STRING data), nothing when the block is malformed. A string that is not
/// defined is empty.
std::optional<std::u16string_view> StringInBlock(ResourceBytes block, unsigned id);

} // namespace platform
