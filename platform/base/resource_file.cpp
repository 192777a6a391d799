// The .res reader: every length is checked against the file before it is used.
#include "platform/base/resource_file.h"

#include "platform/base/text.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace platform
{
namespace
{

static_assert(std::endian::native == std::endian::little, "resources are used in place");

constexpr std::size_t kFixedHeaderTail = 16;
constexpr std::uint16_t kNumberMark = 0xFFFF;
constexpr unsigned kStringsPerBlock = 16;

std::size_t AlignUp(std::size_t offset)
{
    return (offset + 3) & ~std::size_t{3};
}

/// Reads numbers and identifiers from the front of a range; after a read past the end `failed` is set.
struct Reader
{
    ResourceBytes bytes;
    std::size_t offset = 0;
    bool failed = false;

    template <typename T>
    T Read()
    {
        T value{};
        if (offset > bytes.size() || bytes.size() - offset < sizeof(T))
        {
            failed = true;
            return value;
        }
        std::memcpy(&value, bytes.data() + offset, sizeof(T));
        offset += sizeof(T);
        return value;
    }

    ResourceId ReadId()
    {
        auto unit = Read<std::uint16_t>();
        if (unit == kNumberMark)
            return {Read<std::uint16_t>(), {}};
        ResourceId id;
        for (; unit != 0 && !failed; unit = Read<std::uint16_t>())
            id.text += UpperCase(static_cast<char16_t>(unit));
        return id;
    }
};

} // namespace

ResourceId ResourceIdFromText(std::u16string_view text)
{
    if (!text.starts_with(u'#'))
        return {0, UpperCase(text)};
    unsigned number = 0;
    for (const char16_t digit : text.substr(1))
    {
        if (digit < u'0' || digit > u'9' || number > 0xFFFF)
            return {0, UpperCase(text)};
        number = number * 10 + (digit - u'0');
    }
    return {static_cast<std::uint16_t>(number), {}};
}

std::optional<ResourceEntry> NextResource(ResourceBytes file, std::size_t& offset)
{
    Reader reader{file, offset};
    const auto dataSize = reader.Read<std::uint32_t>();
    const auto headerSize = reader.Read<std::uint32_t>();
    if (reader.failed || headerSize > file.size() - offset || dataSize > file.size() - offset - headerSize)
        return std::nullopt;
    Reader header{file.subspan(offset, headerSize), reader.offset - offset};
    ResourceEntry entry{header.ReadId(), header.ReadId(), file.subspan(offset + headerSize, dataSize)};
    if (header.failed || AlignUp(header.offset) + kFixedHeaderTail > headerSize)
        return std::nullopt;
    offset = std::min(AlignUp(offset + headerSize + dataSize), file.size());
    return entry;
}

std::optional<std::u16string_view> StringInBlock(ResourceBytes block, unsigned id)
{
    Reader reader{block};
    for (unsigned index = 0; index < kStringsPerBlock; ++index)
    {
        const auto length = reader.Read<std::uint16_t>();
        if (reader.failed || (block.size() - reader.offset) / sizeof(char16_t) < length)
            return std::nullopt;
        if (index == id % kStringsPerBlock)
        {
            // Entry data is aligned to 4 bytes, and so is every string in it to 2.
            return std::u16string_view(reinterpret_cast<const char16_t*>(block.data() + reader.offset), length);
        }
        reader.offset += length * sizeof(char16_t);
    }
    return std::nullopt;
}

} // namespace platform
