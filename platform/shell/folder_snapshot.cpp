// Format, reading and writing of folder snapshots.
//
// Header, buckets (offsets of entries, 0 for none, linear probing), entries at multiples of 8, each followed by its
// strings. All numbers are in the machine's own byte order: the file never leaves it.
#include "platform/shell/folder_snapshot.h"

#include "platform/shell/known_folders.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>

namespace platform
{

namespace
{

constexpr std::uint64_t formatVersion = 0x4f52'4253'4e41'5002; // raised whenever the format or a description changes

struct Header
{
    std::uint64_t version;
    std::uint64_t checksum; ///< of everything behind it
    std::uint64_t environment;
    std::uint64_t folder;      ///< hash of its path
    std::uint64_t folderStamp; ///< state of the folder that the list of entries was read in, 0 for none
    std::uint32_t buckets;
    std::uint32_t entries;
};

struct Entry
{
    std::uint64_t nameHash;
    std::uint64_t stamp;
    std::uint32_t kind;
    std::uint32_t flags; ///< hiddenFlag, describedFlag
    std::uint32_t displayUnits;
    std::uint32_t typeUnits;
    std::uint32_t nameBytes;
    std::uint32_t iconBytes;
    // display and type name (UTF-16), name and a zero, icon follow
};

constexpr char filePrefix[] = "folder-";
constexpr std::uint32_t hiddenFlag = 1;
constexpr std::uint32_t describedFlag = 2;
constexpr std::size_t checkedFrom = offsetof(Header, environment);

const char* Variable(const char* name)
{
    const char* value = getenv(name);
    return value != nullptr ? value : "";
}

std::uint64_t ComputeEnvironment()
{
    std::uint64_t hash = formatVersion;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG", "LANGUAGE", "XDG_CURRENT_DESKTOP"})
    {
        hash = HashBytes(Variable(name), hash + 1);
    }
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

/// Everything outside the folder that the descriptions depend on.
std::uint64_t Environment()
{
    static const std::uint64_t environment = ComputeEnvironment();
    return environment;
}

template <typename T>
T ReadAt(std::string_view content, std::size_t offset)
{
    T value;
    std::memcpy(&value, content.data() + offset, sizeof value);
    return value;
}

template <typename T>
void Append(std::string& out, const T& value)
{
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
}

std::string_view Bytes(std::u16string_view text)
{
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

void AppendEntry(std::string& out, const ListedFile& file)
{
    const std::uint32_t flags = (file.hidden ? hiddenFlag : 0) | (file.described ? describedFlag : 0);
    Append(out, Entry{HashBytes(file.name), file.stamp, static_cast<std::uint32_t>(file.kind), flags,
                      static_cast<std::uint32_t>(file.display.size()), static_cast<std::uint32_t>(file.typeName.size()),
                      static_cast<std::uint32_t>(file.name.size()), static_cast<std::uint32_t>(file.icon.size())});
    out += Bytes(file.display);
    out += Bytes(file.typeName);
    out += file.name;
    out += '\0'; // names are handed to system calls
    out += file.icon;
    out.resize((out.size() + 7) & ~std::size_t{7});
}

std::uint32_t BucketCount(std::size_t entries)
{
    std::uint32_t count = 16;
    while (count < entries * 2)
    {
        count *= 2;
    }
    return count;
}

/// Keeps the cache folder small: when there are many snapshots, the older half goes. What is missed is made again.
void PruneSnapshots()
{
    constexpr std::size_t many = 400;
    namespace fs = std::filesystem;
    std::error_code error;
    std::vector<std::pair<fs::file_time_type, fs::path>> snapshots;
    for (auto file = fs::directory_iterator(CacheFolder(), error); !error && file != fs::directory_iterator();
         file.increment(error))
    {
        if (file->path().filename().native().starts_with(filePrefix))
        {
            std::error_code gone;
            snapshots.emplace_back(file->last_write_time(gone), file->path());
        }
    }
    if (snapshots.size() < many)
    {
        return;
    }
    std::sort(snapshots.begin(), snapshots.end());
    for (std::size_t i = 0; i < snapshots.size() / 2; ++i)
    {
        fs::remove(snapshots[i].second, error);
    }
}

} // namespace

std::uint64_t HashBytes(std::string_view bytes, std::uint64_t seed)
{
    constexpr std::uint64_t multiplier = 0x9E37'79B9'7F4A'7C15;
    const auto mix = [](std::uint64_t& hash, std::uint64_t word)
    {
        hash = (hash ^ word) * multiplier;
        hash ^= hash >> 29;
    };
    std::uint64_t hash = (seed ^ bytes.size()) * multiplier;
    const char* at = bytes.data();
    std::size_t left = bytes.size();
    if (left >= 64)
    {
        // Four at a time, each of which would have to wait for the one before.
        std::uint64_t lanes[4] = {hash, hash + 1, hash + 2, hash + 3};
        for (; left >= 32; at += 32, left -= 32)
        {
            std::uint64_t words[4];
            std::memcpy(words, at, sizeof words);
            for (int i = 0; i < 4; ++i)
            {
                mix(lanes[i], words[i]);
            }
        }
        for (const std::uint64_t lane : lanes)
        {
            mix(hash, lane);
        }
    }
    while (left > 0)
    {
        const std::size_t step = std::min<std::size_t>(left, 8);
        std::uint64_t word = 0;
        std::memcpy(&word, at, step);
        mix(hash, word);
        at += step;
        left -= step;
    }
    mix(hash, 0);
    return hash;
}

SnapshotReader::SnapshotReader(std::string_view content, std::string_view folder) : m_content(content)
{
    if (content.size() < sizeof(Header))
    {
        return;
    }
    const Header header = ReadAt<Header>(content, 0);
    const bool powerOfTwo = header.buckets != 0 && (header.buckets & (header.buckets - 1)) == 0;
    m_valid = header.version == formatVersion && header.environment == Environment() &&
              header.folder == HashBytes(folder) && powerOfTwo &&
              content.size() >= sizeof(Header) + std::uint64_t{header.buckets} * sizeof(std::uint32_t) &&
              header.checksum == HashBytes(content.substr(checkedFrom));
    m_bucketMask = header.buckets - 1;
    m_entries = header.entries;
    m_folderStamp = header.folderStamp;
}

/// An entry with where its strings are and where the next one begins.
struct SnapshotReader::Located
{
    Entry entry;
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
        file.hidden = (entry.flags & hiddenFlag) != 0;
        file.described = (entry.flags & describedFlag) != 0;
    }
};

/// Nothing for an offset that leads astray: the checksum vouches for what was written; whether its writer was sane, it
/// cannot.
std::optional<SnapshotReader::Located> SnapshotReader::EntryAt(std::size_t offset) const
{
    if (offset % 8 != 0 || offset + sizeof(Entry) > m_content.size())
    {
        return std::nullopt;
    }
    Located located{ReadAt<Entry>(m_content, offset), {}, {}, {}, {}, 0};
    const Entry& entry = located.entry;
    const std::uint64_t wideBytes = (std::uint64_t{entry.displayUnits} + entry.typeUnits) * sizeof(char16_t);
    const std::uint64_t end = offset + sizeof(Entry) + wideBytes + entry.nameBytes + 1 + entry.iconBytes;
    if (end > m_content.size())
    {
        return std::nullopt;
    }
    const char* strings = m_content.data() + offset + sizeof(Entry);
    const auto* wide = reinterpret_cast<const char16_t*>(strings); // aligned: entries start at multiples of 8
    located.display = {wide, entry.displayUnits};
    located.typeName = {wide + entry.displayUnits, entry.typeUnits};
    located.name = {strings + wideBytes, entry.nameBytes};
    located.icon = {strings + wideBytes + entry.nameBytes + 1, entry.iconBytes};
    located.next = (end + 7) & ~std::uint64_t{7};
    return located;
}

bool SnapshotReader::Describe(ListedFile& file) const
{
    if (!m_valid)
    {
        return false;
    }
    const std::uint64_t hash = HashBytes(file.name);
    for (std::uint32_t step = 0; step <= m_bucketMask; ++step)
    {
        const std::size_t bucket = (hash + step) & m_bucketMask;
        const auto offset = ReadAt<std::uint32_t>(m_content, sizeof(Header) + bucket * sizeof(std::uint32_t));
        const std::optional<Located> located = offset != 0 ? EntryAt(offset) : std::nullopt;
        if (!located)
        {
            return false;
        }
        const Entry& entry = located->entry;
        if (entry.nameHash != hash || file.name != located->name)
        {
            continue;
        }
        if (entry.stamp != file.stamp || entry.kind != static_cast<std::uint32_t>(file.kind) ||
            (entry.flags & describedFlag) == 0)
        {
            return false;
        }
        located->GiveTo(file);
        return true;
    }
    return false;
}

bool SnapshotReader::List(std::vector<ListedFile>& files) const
{
    std::vector<ListedFile> listed;
    listed.reserve(m_entries);
    std::size_t offset = sizeof(Header) + (std::size_t{m_bucketMask} + 1) * sizeof(std::uint32_t);
    for (std::uint32_t i = 0; i < m_entries; ++i)
    {
        const std::optional<Located> located = EntryAt(offset);
        if (!located || located->name.empty())
        {
            return false;
        }
        ListedFile& file = listed.emplace_back();
        file.name = located->name;
        file.kind = static_cast<ItemKind>(located->entry.kind);
        file.stamp = located->entry.stamp;
        located->GiveTo(file);
        offset = located->next;
    }
    files = std::move(listed);
    return true;
}

std::string SnapshotPath(std::string_view folder)
{
    const std::string& cache = CacheFolder();
    if (cache.empty())
    {
        return {};
    }
    char name[24];
    std::snprintf(name, sizeof name, "%016llx", static_cast<unsigned long long>(HashBytes(folder)));
    return cache + "/" + filePrefix + name;
}

void SaveSnapshot(const FolderListing& listing)
{
    const std::string path = SnapshotPath(listing.path);
    if (path.empty())
    {
        return;
    }
    const std::uint32_t buckets = BucketCount(listing.files.size());
    std::vector<std::uint32_t> table(buckets);
    std::string out(sizeof(Header) + buckets * sizeof(std::uint32_t), '\0');
    for (const ListedFile& file : listing.files)
    {
        std::size_t bucket = HashBytes(file.name) & (buckets - 1);
        while (table[bucket] != 0)
        {
            bucket = (bucket + 1) & (buckets - 1);
        }
        table[bucket] = static_cast<std::uint32_t>(out.size());
        AppendEntry(out, file);
    }
    Header header{formatVersion,
                  0,
                  Environment(),
                  HashBytes(listing.path),
                  listing.folderStamp,
                  buckets,
                  static_cast<std::uint32_t>(listing.files.size())};
    std::memcpy(out.data(), &header, sizeof header);
    std::memcpy(out.data() + sizeof header, table.data(), buckets * sizeof(std::uint32_t));
    header.checksum = HashBytes(std::string_view(out).substr(checkedFrom));
    std::memcpy(out.data(), &header, sizeof header);
    ReplaceCacheFile(path, out);
    PruneSnapshots();
}

} // namespace platform
