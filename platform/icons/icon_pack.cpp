// Format, reading and writing of icon packs.
//
// Header; the index: theme name, dependencies, entries with their witnesses; then the pictures, each a fixed number of
// bytes, in the entries' order. Numbers are in the machine's own byte order: the file never leaves it.
#include "platform/icons/icon_pack.h"

#include "platform/base/byte_reader.h"
#include "platform/base/cache_folder.h"
#include "platform/base/file_content.h"
#include "platform/base/file_stamp.h"

#include <cstring>

namespace platform
{

namespace
{

constexpr std::uint64_t kFormatVersion = 0x4f52'4249'434f'4e01; // raised whenever the format or the drawing changes
constexpr std::size_t kMostEntries = 4096;
constexpr int kLargestSize = 1024;
constexpr std::uint32_t kLargestIndex = 16 << 20;

struct Header
{
    std::uint64_t version;
    std::uint64_t checksum; ///< of the index
    std::uint32_t indexBytes;
    std::uint32_t size; ///< of the icons in pixels
};

/// The folders to search are part of what a pack was made for.
std::string SearchIdentity(const std::string& themeName)
{
    std::string identity = themeName;
    for (const std::string& folder : LooseIconFolders())
    {
        identity += '\n';
        identity += folder;
    }
    return identity;
}

std::string PackPath(int size)
{
    const std::string& cache = CacheFolder();
    return cache.empty() ? cache : cache + "/icons-" + std::to_string(size);
}

bool StillHolds(const std::vector<FileWitness>& witnesses)
{
    for (const FileWitness& witness : witnesses)
    {
        // What does not answer is shown as it was last seen.
        const std::optional<FileWitness> now = WitnessOf(witness.path);
        if (now && (now->modified != witness.modified || now->size != witness.size))
            return false;
    }
    return true;
}

/// The index of an undamaged pack, "" for any other file.
std::string ReadIndex(const UniqueFd& file, int size)
{
    Header header;
    if (!file || ReadAt(file.Get(), &header, sizeof header, 0) != sizeof header || header.version != kFormatVersion ||
        header.size != static_cast<std::uint32_t>(size) || header.indexBytes > kLargestIndex)
        return {};
    std::string index(header.indexBytes, '\0');
    const bool whole = ReadAt(file.Get(), index.data(), index.size(), sizeof header) == index.size();
    return whole && HashBytes(index) == header.checksum ? index : std::string();
}

bool DependenciesHold(ByteReader& reader)
{
    for (auto left = reader.Value<std::uint32_t>(); left != 0 && !reader.Failed(); --left)
    {
        const std::string path(reader.Text());
        if (reader.Value<std::int64_t>() != ModificationTime(path))
            return false;
    }
    return !reader.Failed();
}

std::vector<FileWitness> ReadWitnesses(ByteReader& reader)
{
    std::vector<FileWitness> witnesses;
    for (auto left = reader.Value<std::uint32_t>(); left != 0 && !reader.Failed(); --left)
    {
        FileWitness& witness = witnesses.emplace_back();
        witness.path = reader.Text();
        witness.modified = reader.Value<std::int64_t>();
        witness.size = reader.Value<std::uint64_t>();
    }
    return witnesses;
}

} // namespace

IconPack::IconPack(std::string themeName, int size) : m_themeName(std::move(themeName)), m_size(size)
{
    const std::string path = PackPath(size);
    if (!path.empty() && size <= kLargestSize)
    {
        m_file = OpenCacheFile(path);
        Load();
    }
}

void IconPack::Load()
{
    const std::string index = ReadIndex(m_file, m_size);
    ByteReader reader(index);
    if (index.empty() || reader.Text() != SearchIdentity(m_themeName) || !DependenciesHold(reader))
        return;
    std::uint64_t offset = sizeof(Header) + index.size();
    for (auto left = reader.Value<std::uint32_t>(); left != 0; --left, offset += PixelBytes())
    {
        std::string key(reader.Text());
        Entry entry{ReadWitnesses(reader), nullptr, offset, reader.Value<std::uint64_t>()};
        if (reader.Failed())
            return;
        m_entries.insert_or_assign(std::move(key), std::move(entry));
    }
}

/// False when the file has no undamaged picture there.
bool IconPack::ReadPixels(const Entry& entry, void* pixels) const
{
    if (entry.added != nullptr)
        std::memcpy(pixels, entry.added, PixelBytes());
    else if (ReadAt(m_file.Get(), pixels, PixelBytes(), entry.offset) != PixelBytes())
        return false;
    return HashBytes({static_cast<const char*>(pixels), PixelBytes()}) == entry.checksum;
}

std::optional<IconImage> IconPack::Find(const std::string& key)
{
    const auto found = m_entries.find(key);
    if (found == m_entries.end())
        return std::nullopt;
    IconImage image{m_size, m_size, std::vector<std::uint32_t>(static_cast<std::size_t>(m_size) * m_size)};
    if (ReadPixels(found->second, image.pixels.data()) && StillHolds(found->second.witnesses))
        return image;
    m_entries.erase(found);
    return std::nullopt;
}

void IconPack::Add(const std::string& key, std::vector<FileWitness> witnesses, const IconImage& image)
{
    if (image.width != m_size || image.height != m_size || m_size > kLargestSize || m_added.size() == kMostEntries)
        return;
    const std::uint32_t* pixels = m_added.emplace_back(image.pixels).data();
    const std::uint64_t checksum = HashBytes({reinterpret_cast<const char*>(pixels), PixelBytes()});
    m_entries.insert_or_assign(key, Entry{std::move(witnesses), pixels, 0, checksum});
}

void IconPack::Save(const std::vector<DirectoryStamp>& dependencies) const
{
    const std::string path = PackPath(m_size);
    if (path.empty())
        return;
    std::string index;
    AppendText(index, SearchIdentity(m_themeName));
    AppendValue(index, static_cast<std::uint32_t>(dependencies.size()));
    for (const DirectoryStamp& stamp : dependencies)
    {
        AppendText(index, stamp.path);
        AppendValue(index, stamp.modified);
    }
    const bool addedOnly = m_entries.size() > kMostEntries; // what nobody showed this time makes room
    std::uint32_t count = 0;
    std::string entries;
    std::string pictures;
    for (const auto& [key, entry] : m_entries)
    {
        const std::size_t end = pictures.size();
        pictures.resize(end + PixelBytes());
        if ((addedOnly && entry.added == nullptr) || !ReadPixels(entry, pictures.data() + end))
        {
            pictures.resize(end);
            continue;
        }
        AppendText(entries, key);
        AppendValue(entries, static_cast<std::uint32_t>(entry.witnesses.size()));
        for (const FileWitness& witness : entry.witnesses)
        {
            AppendText(entries, witness.path);
            AppendValue(entries, witness.modified);
            AppendValue(entries, witness.size);
        }
        AppendValue(entries, entry.checksum);
        ++count;
    }
    AppendValue(index, count);
    index += entries;
    const Header header{kFormatVersion, HashBytes(index), static_cast<std::uint32_t>(index.size()),
                        static_cast<std::uint32_t>(m_size)};
    std::string out(reinterpret_cast<const char*>(&header), sizeof header);
    ReplaceCacheFile(path, out + index + pictures);
}

} // namespace platform
