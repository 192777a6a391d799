// Reading and writing of item identifiers.
#include "platform/shell/item_id.h"

#include "platform/files/applications_menu.h"
#include "platform/files/names.h"
#include "platform/shell/system_images.h"

#include <algorithm>
#include <cstring>

namespace platform
{

namespace
{

constexpr std::uint8_t kSignature = 0xFB;

// An identifier is a head and one of two bodies. A folder that looks like any other has the number of its name: most of
// a path is such folders, and a level keeps the path of every item. Everything else says what it is, followed by the
// file's name, the display name (UTF-16, or one byte a unit when all are below 256), and a byte where the size would be
// odd.
#pragma pack(push, 1)
struct Head
{
    std::uint16_t size;
    std::uint8_t signature;
    std::uint8_t kind; ///< an ItemKind and the flags below
};

struct FileBody
{
    std::uint32_t icon;
    std::uint32_t type;
    std::uint16_t nameBytes;
};
#pragma pack(pop)

using AnyFolderBody = std::uint32_t;

constexpr std::uint8_t kAnyFolder = 0x80;     ///< an AnyFolderBody follows
constexpr std::uint8_t kNarrowDisplay = 0x40; ///< the display name has one byte a unit

struct Looks
{
    std::uint32_t icon;
    std::uint32_t type;
};

const Looks& LooksOfFolders()
{
    static const Looks looks{SystemImageIndex(kFolderIcon), TypeNameIndex(kFolderTypeName)};
    return looks;
}

bool LooksLikeAnyFolder(const ItemId& item, std::u16string_view display)
{
    const Looks& folders = LooksOfFolders();
    return item.kind == ItemKind::Folder && item.icon == folders.icon && item.type == folders.type && display.empty();
}

bool IsNarrow(std::u16string_view text)
{
    unsigned bits = 0;
    for (const char16_t unit : text)
        bits |= unit;
    return bits <= 0xFF;
}

/// An identifier about to be written.
class Writer
{
public:
    Writer(const ItemId& item, std::u16string_view display)
        : m_item(item),
          m_display(display.substr(0, kMaxDisplayUnits)),
          m_anyFolder(LooksLikeAnyFolder(item, display)),
          m_narrow(IsNarrow(m_display))
    {
        const std::size_t displayBytes = m_display.size() * (m_narrow ? 1 : sizeof(char16_t));
        const std::size_t body =
            m_anyFolder ? sizeof(AnyFolderBody) : sizeof(FileBody) + item.name.size() + displayBytes;
        m_size = sizeof(Head) + body + body % 2; // lists stay aligned for their size fields
    }

    /// Whether the size can be written: no identifier is larger than its 16-bit size says.
    bool Fits() const { return m_size <= kLargestSize; }
    std::size_t Size() const { return m_size; }

    void WriteTo(BYTE* out) const
    {
        const int flags = (m_anyFolder ? kAnyFolder : 0) | (m_narrow ? kNarrowDisplay : 0);
        const Head head{static_cast<std::uint16_t>(m_size), kSignature,
                        static_cast<std::uint8_t>(static_cast<int>(m_item.kind) | flags)};
        out[m_size - 1] = 0; // where the padding is, if any
        std::memcpy(out, &head, sizeof head);
        out += sizeof head;
        if (m_anyFolder)
        {
            const AnyFolderBody name = FolderNameIndex(m_item.name);
            std::memcpy(out, &name, sizeof name);
            return;
        }
        const FileBody body{m_item.icon, m_item.type, static_cast<std::uint16_t>(m_item.name.size())};
        std::memcpy(out, &body, sizeof body);
        out += sizeof body;
        std::memcpy(out, m_item.name.data(), m_item.name.size());
        out += m_item.name.size();
        if (m_narrow)
            std::copy(m_display.begin(), m_display.end(), out);
        else
            std::memcpy(out, m_display.data(), m_display.size() * sizeof(char16_t));
    }

private:
    static constexpr std::size_t kLargestSize = 0xFFFE; // of the even ones
    static_assert(sizeof(Head) + sizeof(FileBody) + kMaxNameBytes + kMaxDisplayUnits * sizeof(char16_t) < kLargestSize);

    const ItemId& m_item;
    std::u16string_view m_display;
    bool m_anyFolder;
    bool m_narrow;
    std::size_t m_size;
};

template <typename T>
T Take(const BYTE*& bytes)
{
    T value;
    std::memcpy(&value, bytes, sizeof value);
    bytes += sizeof value;
    return value;
}

std::optional<ItemId> ReadAnyFolder(const BYTE* body, std::size_t size)
{
    const std::string* name = size == sizeof(AnyFolderBody) ? FolderName(Take<AnyFolderBody>(body)) : nullptr;
    if (name == nullptr)
        return std::nullopt;
    return ItemId{ItemKind::Folder, LooksOfFolders().icon, LooksOfFolders().type, *name};
}

} // namespace

void ItemId::CopyDisplay(char16_t* out) const
{
    if (displayIsNarrow)
        std::copy_n(display, displayUnits, out);
    else
        std::memcpy(out, display, displayUnits * sizeof(char16_t));
}

std::u16string ItemId::DisplayName() const
{
    if (displayUnits == 0)
        return DisplayNameOfFile(name, kind);
    std::u16string text(displayUnits, u'\0');
    CopyDisplay(text.data());
    return text;
}

std::optional<ItemId> ReadItemId(LPCITEMIDLIST list)
{
    if (list == nullptr || list->mkid.cb < sizeof(Head))
        return std::nullopt;
    const BYTE* bytes = reinterpret_cast<const BYTE*>(list);
    const auto head = Take<Head>(bytes);
    const std::size_t size = head.size - sizeof head;
    const auto kind = static_cast<ItemKind>(head.kind & ~(kAnyFolder | kNarrowDisplay));
    if (head.signature != kSignature || kind < ItemKind::Folder || kind > ItemKind::Category)
        return std::nullopt;
    if ((head.kind & kAnyFolder) != 0)
        return ReadAnyFolder(bytes, size);
    if (size < sizeof(FileBody))
        return std::nullopt;
    const auto body = Take<FileBody>(bytes);
    if (body.nameBytes == 0 || sizeof body + body.nameBytes > size)
        return std::nullopt;
    ItemId item{kind, body.icon, body.type, {reinterpret_cast<const char*>(bytes), body.nameBytes}};
    item.display = bytes + body.nameBytes;
    item.displayIsNarrow = (head.kind & kNarrowDisplay) != 0;
    const std::size_t displayBytes = size - sizeof body - body.nameBytes;
    const bool padded = item.displayIsNarrow && displayBytes > 0 && item.display[displayBytes - 1] == 0;
    item.displayUnits = item.displayIsNarrow ? displayBytes - padded : displayBytes / sizeof(char16_t);
    return item;
}

bool AppendItemId(std::vector<BYTE>& bytes, const ItemId& item, std::u16string_view display)
{
    const Writer writer(item, display);
    if (!writer.Fits())
        return false;
    const std::size_t start = bytes.size();
    bytes.resize(start + writer.Size());
    writer.WriteTo(bytes.data() + start);
    return true;
}

LPITEMIDLIST MakeItemList(const ItemId& item, std::u16string_view display)
{
    const Writer writer(item, display);
    BYTE* bytes = writer.Fits() ? AllocateList(writer.Size()) : nullptr;
    if (bytes != nullptr)
        writer.WriteTo(bytes);
    return reinterpret_cast<LPITEMIDLIST>(bytes);
}

namespace
{

bool AppendItemPath(std::string& path, const ItemId& item)
{
    if (item.kind == ItemKind::Category && path.empty() && IsMenuRoot(item.name))
    {
        path = item.name;
        return true;
    }
    const bool inMenu = IsMenuPath(path);
    if (inMenu && item.kind == ItemKind::DesktopEntry)
    {
        path = MenuProgramPath(item.name);
        return path.starts_with('/');
    }
    if (inMenu != (item.kind == ItemKind::Category) || !IsFileName(item.name))
        return false;
    path += '/';
    path += item.name;
    return true;
}

} // namespace

bool AppendListPath(std::string& path, LPCITEMIDLIST list, LPCITEMIDLIST end)
{
    for (; list != end && !IsEmptyList(list); list = NextItemId(list))
    {
        const std::optional<ItemId> item = ReadItemId(list);
        if (!item || !AppendItemPath(path, *item))
            return false;
    }
    return true;
}

} // namespace platform
