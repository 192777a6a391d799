// Reading and writing of item identifiers.
#include "platform/shell/item_id.h"

#include "platform/shell/namespace.h"
#include "platform/shell/system_images.h"

#include <cstring>

namespace platform
{

namespace
{

constexpr std::uint8_t signature = 0xFB;

// An identifier: its head, its looks, the file's name, the display name (UTF-16), and a byte where the size would be
// odd. A folder that looks like any other has neither looks nor display name: most of a path is such folders, and a
// level keeps the path of every item.
#pragma pack(push, 1)
struct Head
{
    std::uint16_t size;
    std::uint8_t signature;
    std::uint8_t kind; ///< an ItemKind, with hasLooks or without
    std::uint16_t nameBytes;
};

struct Looks
{
    std::uint32_t icon;
    std::uint32_t type;
};
#pragma pack(pop)

constexpr std::uint8_t hasLooks = 0x80;

const Looks& LooksOfFolders()
{
    static const Looks looks{SystemImageIndex(folderIcon), TypeNameIndex(folderTypeName)};
    return looks;
}

bool IsFileName(std::string_view name)
{
    const bool isDots = name.size() <= 2 && name.find_first_not_of('.') == name.npos; // or empty
    return !isDots && name.find('/') == name.npos && name.find('\0') == name.npos;
}

bool LooksLikeAnyFolder(const ItemId& item, std::u16string_view display)
{
    const Looks& folders = LooksOfFolders();
    return item.kind == ItemKind::Folder && item.icon == folders.icon && item.type == folders.type && display.empty();
}

/// An identifier about to be written.
class Writer
{
public:
    Writer(const ItemId& item, std::u16string_view display)
        : m_item(item),
          m_display(display.substr(0, maxDisplayUnits)),
          m_looksSize(LooksLikeAnyFolder(item, display) ? 0 : sizeof(Looks))
    {
        const std::size_t unpadded =
            sizeof(Head) + m_looksSize + item.name.size() + m_display.size() * sizeof(char16_t);
        m_size = unpadded + unpadded % 2; // lists stay aligned for their size fields
    }

    std::size_t Size() const { return m_size; }

    void WriteTo(BYTE* out) const
    {
        const std::uint8_t kind = static_cast<std::uint8_t>(m_item.kind) | (m_looksSize != 0 ? hasLooks : 0);
        const Head head{static_cast<std::uint16_t>(m_size), signature, kind,
                        static_cast<std::uint16_t>(m_item.name.size())};
        const Looks looks{m_item.icon, m_item.type};
        out[m_size - 1] = 0; // where the padding is, if any
        std::memcpy(out, &head, sizeof head);
        out += sizeof head;
        std::memcpy(out, &looks, m_looksSize);
        out += m_looksSize;
        std::memcpy(out, m_item.name.data(), m_item.name.size());
        if (!m_display.empty())
        {
            std::memcpy(out + m_item.name.size(), m_display.data(), m_display.size() * sizeof(char16_t));
        }
    }

private:
    const ItemId& m_item;
    std::u16string_view m_display;
    std::size_t m_looksSize;
    std::size_t m_size;
};

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
    Head head;
    if (list == nullptr || list->mkid.cb < sizeof head)
    {
        return std::nullopt;
    }
    std::memcpy(&head, list, sizeof head);
    const auto kind = static_cast<ItemKind>(head.kind & ~hasLooks);
    const std::size_t looksSize = (head.kind & hasLooks) != 0 ? sizeof(Looks) : 0;
    const std::size_t beforeDisplay = sizeof head + looksSize + head.nameBytes;
    if (head.signature != signature || kind < ItemKind::Folder || kind > ItemKind::Other || head.nameBytes == 0 ||
        beforeDisplay > head.size)
    {
        return std::nullopt;
    }
    const BYTE* bytes = reinterpret_cast<const BYTE*>(list) + sizeof head;
    Looks looks;
    if (looksSize != 0)
    {
        std::memcpy(&looks, bytes, sizeof looks);
        bytes += sizeof looks;
    }
    else
    {
        looks = LooksOfFolders();
    }
    return ItemId{kind,
                  looks.icon,
                  looks.type,
                  {reinterpret_cast<const char*>(bytes), head.nameBytes},
                  bytes + head.nameBytes,
                  (head.size - beforeDisplay) / sizeof(char16_t)};
}

void AppendItemId(std::vector<BYTE>& bytes, const ItemId& item, std::u16string_view display)
{
    const Writer writer(item, display);
    const std::size_t start = bytes.size();
    bytes.resize(start + writer.Size());
    writer.WriteTo(bytes.data() + start);
}

LPITEMIDLIST MakeItemList(const ItemId& item, std::u16string_view display)
{
    const Writer writer(item, display);
    BYTE* bytes = AllocateList(writer.Size());
    if (bytes != nullptr)
    {
        writer.WriteTo(bytes);
    }
    return reinterpret_cast<LPITEMIDLIST>(bytes);
}

bool AppendListPath(std::string& path, LPCITEMIDLIST list, LPCITEMIDLIST end)
{
    for (; list != end && !IsEmptyList(list); list = NextItemId(list))
    {
        const std::optional<ItemId> item = ReadItemId(list);
        if (!item || !IsFileName(item->name))
        {
            return false;
        }
        path += '/';
        path += item->name;
    }
    return true;
}

} // namespace platform
