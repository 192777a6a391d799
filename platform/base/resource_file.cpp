// The .res reader: every length is checked against the file before it is used.
#include "platform/base/resource_file.h"

#include "platform/base/byte_reader.h"
#include "platform/base/text.h"

#include <algorithm>
#include <bit>

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

ByteReader ReaderOf(ResourceBytes bytes)
{
    return ByteReader({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

ResourceId ReadId(ByteReader& reader)
{
    auto unit = reader.Value<std::uint16_t>();
    if (unit == kNumberMark)
        return {reader.Value<std::uint16_t>(), {}};
    ResourceId id;
    for (; unit != 0 && !reader.Failed(); unit = reader.Value<std::uint16_t>())
        id.text += UpperCase(static_cast<char16_t>(unit));
    return id;
}

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
    const ResourceBytes rest = file.subspan(offset);
    ByteReader sizes = ReaderOf(rest);
    const auto dataSize = sizes.Value<std::uint32_t>();
    const auto headerSize = sizes.Value<std::uint32_t>();
    if (sizes.Failed() || headerSize > rest.size() || dataSize > rest.size() - headerSize)
        return std::nullopt;
    ByteReader header = ReaderOf(rest.first(headerSize));
    header.Bytes(2 * sizeof(std::uint32_t));
    ResourceEntry entry{ReadId(header), ReadId(header), rest.subspan(headerSize, dataSize)};
    if (header.Failed() || AlignUp(headerSize - header.Left()) + kFixedHeaderTail > headerSize)
        return std::nullopt;
    offset = std::min(AlignUp(offset + headerSize + dataSize), file.size());
    return entry;
}

std::optional<std::u16string_view> StringInBlock(ResourceBytes block, unsigned id)
{
    ByteReader reader = ReaderOf(block);
    std::string_view text;
    for (unsigned index = 0; index <= id % kStringsPerBlock; ++index)
        text = reader.Bytes(reader.Value<std::uint16_t>() * sizeof(char16_t));
    if (reader.Failed())
        return std::nullopt;
    // Entry data is aligned to 4 bytes, and so is every string in it to 2.
    return std::u16string_view(reinterpret_cast<const char16_t*>(text.data()), text.size() / sizeof(char16_t));
}

} // namespace platform
