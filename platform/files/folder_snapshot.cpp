// Reading folder snapshots.
#include "platform/files/folder_snapshot.h"

#include "platform/base/cache_folder.h"
#include "platform/base/hash_bytes.h"
#include "platform/base/xdg_folders.h"
#include "platform/files/names.h"
#include "platform/files/snapshot_format.h"

#include <cstring>
#include <sys/stat.h>

namespace platform
{

namespace
{

const char* Variable(const char* name)
{
    const char* value = getenv(name);
    return value != nullptr ? value : "";
}

std::uint64_t ComputeEnvironment()
{
    std::uint64_t hash = kSnapshotVersion;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG", "LANGUAGE", "XDG_CURRENT_DESKTOP"})
        hash = HashBytes(Variable(name), hash + 1);
    for (const std::string& folder : DataFolders())
    {
        struct stat status = {};
        stat((folder + "/mime/mime.cache").c_str(), &status); // zero when there is none
        const std::uint64_t times[] = {static_cast<std::uint64_t>(status.st_mtim.tv_sec),
                                       static_cast<std::uint64_t>(status.st_mtim.tv_nsec)};
        hash = HashBytes({reinterpret_cast<const char*>(times), sizeof times}, hash);
    }
    return hash;
}

template <typename T>
T ReadAt(std::string_view content, std::size_t offset)
{
    T value;
    std::memcpy(&value, content.data() + offset, sizeof value);
    return value;
}

} // namespace

std::uint64_t SnapshotEnvironment()
{
    static const std::uint64_t environment = ComputeEnvironment();
    return environment;
}

SnapshotReader::SnapshotReader(std::string_view content, std::string_view folder) : m_content(content)
{
    if (content.size() < sizeof(SnapshotHeader))
        return;
    const SnapshotHeader header = ReadAt<SnapshotHeader>(content, 0);
    const bool powerOfTwo = header.buckets != 0 && (header.buckets & (header.buckets - 1)) == 0;
    m_sound = header.version == kSnapshotVersion && header.folder == HashBytes(folder) && powerOfTwo &&
              content.size() >= sizeof(SnapshotHeader) + std::uint64_t{header.buckets} * sizeof(std::uint32_t) &&
              header.textsOffset <= content.size() &&
              header.checksum == HashBytes(content.substr(kSnapshotCheckedFrom));
    m_current = m_sound && header.environment == SnapshotEnvironment();
    m_bucketMask = header.buckets - 1;
    m_entries = header.entries;
    m_folderStamp = header.folderStamp;
    m_texts = m_sound ? content.substr(header.textsOffset) : std::string_view();
}

/// An entry with what it refers to and where the next one begins.
struct SnapshotReader::Located
{
    SnapshotEntry entry;
    std::u16string_view display;
    std::u16string_view typeName;
    std::string_view name;
    std::string_view icon;
    std::size_t next;

    void GiveTo(ListedFile& file) const
    {
        file.display = display;
        file.typeName = typeName;
        file.icon = icon;
        file.hidden = (entry.flags & kSnapshotHiddenFlag) != 0;
        file.described = (entry.flags & kSnapshotDescribedFlag) != 0;
    }
};

std::optional<std::string_view> SnapshotReader::TextAt(std::uint32_t offset) const
{
    if (std::uint64_t{offset} + sizeof(std::uint32_t) > m_texts.size())
        return std::nullopt;
    const auto size = ReadAt<std::uint32_t>(m_texts, offset);
    const std::string_view rest = m_texts.substr(offset + sizeof size);
    return size <= rest.size() ? std::optional(rest.substr(0, size)) : std::nullopt;
}

/// False for an offset that leads astray.
bool SnapshotReader::Locate(std::size_t offset, Located& located) const
{
    if (offset % alignof(SnapshotEntry) != 0 || offset + sizeof(SnapshotEntry) > m_content.size())
        return false;
    const SnapshotEntry& entry = located.entry = ReadAt<SnapshotEntry>(m_content, offset);
    const std::size_t wideBytes = entry.displayUnits * sizeof(char16_t);
    const std::size_t end = offset + sizeof(SnapshotEntry) + wideBytes + entry.nameBytes + 1;
    const std::optional<std::string_view> typeName = TextAt(entry.typeText);
    const std::optional<std::string_view> icon = TextAt(entry.iconText);
    const bool kindKnown = entry.kind >= static_cast<std::uint8_t>(ItemKind::Folder) &&
                           entry.kind <= static_cast<std::uint8_t>(ItemKind::Other);
    if (end > m_content.size() || entry.nameBytes == 0 || entry.nameBytes > kMaxNameBytes ||
        entry.displayUnits > kMaxDisplayUnits || !kindKnown || !typeName || !icon)
        return false;
    const char* names = m_content.data() + offset + sizeof(SnapshotEntry);
    // Aligned: entries start at multiples of 8, texts at multiples of 4.
    located.display = {reinterpret_cast<const char16_t*>(names), entry.displayUnits};
    located.typeName = {reinterpret_cast<const char16_t*>(typeName->data()), typeName->size() / sizeof(char16_t)};
    located.name = {names + wideBytes, entry.nameBytes};
    located.icon = *icon;
    located.next = RoundUp(end, alignof(SnapshotEntry));
    return true;
}

bool SnapshotReader::LocateName(std::string_view name, Located& located) const
{
    const std::uint64_t hash = HashBytes(name);
    for (std::uint32_t step = 0; step <= m_bucketMask; ++step)
    {
        const std::size_t bucket = (hash + step) & m_bucketMask;
        const auto offset = ReadAt<std::uint32_t>(m_content, sizeof(SnapshotHeader) + bucket * sizeof(std::uint32_t));
        if (offset == 0 || !Locate(offset, located))
            return false;
        if (located.entry.nameHash == hash && located.name == name)
            return true;
    }
    return false;
}

bool SnapshotReader::Describe(ListedFile& file) const
{
    Located located;
    if (!m_current || !LocateName(file.name, located))
        return false;
    const SnapshotEntry& entry = located.entry;
    if (entry.stamp != file.stamp || entry.kind != static_cast<std::uint8_t>(file.kind) ||
        (entry.flags & kSnapshotDescribedFlag) == 0)
        return false;
    located.GiveTo(file);
    return true;
}

bool SnapshotReader::DescribeAsLastSeen(ListedFile& file) const
{
    Located located;
    if (!m_sound || !LocateName(file.name, located))
        return false;
    file.kind = static_cast<ItemKind>(located.entry.kind);
    file.stamp = located.entry.stamp;
    located.GiveTo(file);
    return true;
}

bool SnapshotReader::ListsWhole() const
{
    if (!m_sound)
        return false;
    std::size_t offset = Start();
    for (std::uint32_t i = 0; i < m_entries; ++i)
    {
        ListedFile file;
        if (!Read(offset, file) || !IsFileName(file.name))
            return false;
    }
    return true;
}

std::size_t SnapshotReader::Start() const
{
    return sizeof(SnapshotHeader) + (std::size_t{m_bucketMask} + 1) * sizeof(std::uint32_t);
}

bool SnapshotReader::Read(std::size_t& offset, ListedFile& file) const
{
    Located located;
    if (!Locate(offset, located))
        return false;
    file.name = located.name;
    file.kind = static_cast<ItemKind>(located.entry.kind);
    file.stamp = located.entry.stamp;
    located.GiveTo(file);
    offset = located.next;
    return true;
}

} // namespace platform
