// Reading and writing of item identifiers.
#include "platform/shell/item_id.h"

#include "platform/shell/namespace.h"

#include <algorithm>
#include <cstring>

namespace platform
{

namespace
{

constexpr std::uint8_t signature = 0xFB;

/// The fixed part of an identifier. The name's bytes follow it, then the display name's.
#pragma pack(push, 1)
struct Header
{
    std::uint16_t size;
    std::uint8_t signature;
    ItemKind kind;
    std::uint32_t icon;
    std::uint32_t type;
    std::uint16_t nameBytes;
    std::uint16_t displayUnits;
};
#pragma pack(pop)

bool IsFileName(std::string_view name)
{
    const bool isDots = name.size() <= 2 && name.find_first_not_of('.') == name.npos; // or empty
    return !isDots && name.find('/') == name.npos && name.find('\0') == name.npos;
}

std::u16string_view Kept(std::u16string_view display)
{
    return display.substr(0, maxDisplayUnits);
}

/// Bytes of an identifier.
std::size_t SizeOf(const ItemId& item, std::u16string_view display)
{
    const std::size_t unpadded = sizeof(Header) + item.name.size() + Kept(display).size() * sizeof(char16_t);
    return unpadded + unpadded % 2; // lists stay aligned for their size fields
}

void Write(BYTE* out, const ItemId& item, std::u16string_view display)
{
    const std::size_t size = SizeOf(item, display);
    display = Kept(display);
    const Header header{static_cast<std::uint16_t>(size),
                        signature,
                        item.kind,
                        item.icon,
                        item.type,
                        static_cast<std::uint16_t>(item.name.size()),
                        static_cast<std::uint16_t>(display.size())};
    out[size - 1] = 0; // where the padding is, if any
    std::memcpy(out, &header, sizeof header);
    std::memcpy(out + sizeof header, item.name.data(), item.name.size());
    if (!display.empty())
    {
        std::memcpy(out + sizeof header + item.name.size(), display.data(), display.size() * sizeof(char16_t));
    }
}

} // namespace

std::u16string ItemId::DisplayName() const
{
    if (displayUnits == 0)
    {
        return DisplayNameOfFile(name, kind);
    }
    std::u16string text(displayUnits, u'\0');
    std::memcpy(text.data(), display, displayUnits * sizeof(char16_t));
    return text;
}

std::optional<ItemId> ReadItemId(LPCITEMIDLIST list)
{
    Header header;
    if (list == nullptr || list->mkid.cb < sizeof header)
    {
        return std::nullopt;
    }
    std::memcpy(&header, list, sizeof header);
    const BYTE* bytes = reinterpret_cast<const BYTE*>(list) + sizeof header;
    if (header.signature != signature || header.kind < ItemKind::Folder || header.kind > ItemKind::Other ||
        sizeof header + header.nameBytes + header.displayUnits * sizeof(char16_t) > header.size)
    {
        return std::nullopt;
    }
    const std::string_view name(reinterpret_cast<const char*>(bytes), header.nameBytes);
    if (!IsFileName(name))
    {
        return std::nullopt;
    }
    return ItemId{header.kind, header.icon, header.type, name, bytes + header.nameBytes, header.displayUnits};
}

void AppendItemId(std::vector<BYTE>& bytes, const ItemId& item, std::u16string_view display)
{
    const std::size_t start = bytes.size();
    bytes.resize(start + SizeOf(item, display));
    Write(bytes.data() + start, item, display);
}

LPITEMIDLIST MakeItemList(const ItemId& item, std::u16string_view display)
{
    BYTE* bytes = AllocateList(SizeOf(item, display));
    if (bytes != nullptr)
    {
        Write(bytes, item, display);
    }
    return reinterpret_cast<LPITEMIDLIST>(bytes);
}

bool AppendListPath(std::string& path, LPCITEMIDLIST list)
{
    for (; !IsEmptyList(list); list = NextItemId(list))
    {
        const std::optional<ItemId> item = ReadItemId(list);
        if (!item)
        {
            return false;
        }
        path += '/';
        path += item->name;
    }
    return true;
}

} // namespace platform
