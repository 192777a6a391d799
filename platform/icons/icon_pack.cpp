// Format, reading and writing of icon packs.
//
// Header; the index: theme name, dependencies, entries with their witnesses; then the pictures, each a fixed number of
// bytes, in the entries' order. Numbers are in the machine's own byte order: the file never leaves it.
#include "platform/icons/icon_pack.h"

#include "platform/base/byte_reader.h"
#include "platform/base/file_stamp.h"

#include <cstring>

namespace platform
{

namespace
{

constexpr std::uint64_t kFormatVersion = 0x4f52'4249'434f'4e01; // raised whenever the format or the drawing changes
constexpr std::size_t kMostEntries = 4096;
constexpr int kLargestSize = 1024;

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

/// The index of a whole and undamaged pack, "" for any other content.
std::string_view IndexOf(std::string_view content, int size)
{
    Header header;
    if (content.size() < sizeof header)
        return {};
    std::memcpy(&header, content.data(), sizeof header);
    if (header.version != kFormatVersion || header.size != static_cast<std::uint32_t>(size) ||
        header.indexBytes > content.size() - sizeof header)
        return {};
    const std::string_view index = content.substr(sizeof header, header.indexBytes);
    return HashBytes(index) == header.checksum ? index : std::string_view();
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
        m_file = MappedFile(path);
        Load();
    }
}

void IconPack::Load()
{
    const std::string_view index = IndexOf(m_file.Content(), m_size);
    ByteReader reader(index);
    if (index.empty() || reader.Text() != SearchIdentity(m_themeName) || !DependenciesHold(reader))
        return;
    std::string_view pictures = m_file.Content().substr(sizeof(Header) + index.size());
    for (auto left = reader.Value<std::uint32_t>(); left != 0 && pictures.size() >= PixelBytes(); --left)
    {
        std::string key(reader.Text());
        Entry entry{ReadWitnesses(reader), pictures.data(), reader.Value<std::uint64_t>()};
        if (reader.Failed())
            return;
        m_entries.insert_or_assign(std::move(key), std::move(entry));
        pictures.remove_prefix(PixelBytes());
    }
}

std::optional<IconImage> IconPack::Find(const std::string& key)
{
    const auto found = m_entries.find(key);
    if (found == m_entries.end())
        return std::nullopt;
    const Entry& entry = found->second;
    if (HashBytes({entry.pixels, PixelBytes()}) != entry.checksum || !StillHolds(entry.witnesses))
    {
        m_entries.erase(found);
        return std::nullopt;
    }
    IconImage image{m_size, m_size, std::vector<std::uint32_t>(static_cast<std::size_t>(m_size) * m_size)};
    std::memcpy(image.pixels.data(), entry.pixels, PixelBytes());
    return image;
}

void IconPack::Add(const std::string& key, std::vector<FileWitness> witnesses, const IconImage& image)
{
    if (image.width != m_size || image.height != m_size || m_size > kLargestSize || m_added.size() == kMostEntries)
        return;
    const char* pixels = reinterpret_cast<const char*>(m_added.emplace_back(image.pixels).data());
    m_entries.insert_or_assign(key, Entry{std::move(witnesses), pixels, HashBytes({pixels, PixelBytes()})});
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
    AppendValue(index, static_cast<std::uint32_t>(addedOnly ? m_added.size() : m_entries.size()));
    std::string pictures;
    for (const auto& [key, entry] : m_entries)
    {
        const bool mapped =
            entry.pixels >= m_file.Content().data() && entry.pixels < m_file.Content().data() + m_file.Content().size();
        if (addedOnly && mapped)
            continue;
        AppendText(index, key);
        AppendValue(index, static_cast<std::uint32_t>(entry.witnesses.size()));
        for (const FileWitness& witness : entry.witnesses)
        {
            AppendText(index, witness.path);
            AppendValue(index, witness.modified);
            AppendValue(index, witness.size);
        }
        AppendValue(index, entry.checksum);
        pictures.append(entry.pixels, PixelBytes());
    }
    const Header header{kFormatVersion, HashBytes(index), static_cast<std::uint32_t>(index.size()),
                        static_cast<std::uint32_t>(m_size)};
    std::string out(reinterpret_cast<const char*>(&header), sizeof header);
    ReplaceCacheFile(path, out + index + pictures);
}

} // namespace platform
