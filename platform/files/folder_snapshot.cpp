// Format, reading and writing of folder snapshots.
//
// Header, buckets (offsets of entries, 0 for none, linear probing), entries at multiples of 8, each followed by its
// names, texts that many entries share. All numbers are in the machine's own byte order: the file never leaves it.
#include "platform/files/folder_snapshot.h"

#include "platform/base/xdg_folders.h"
#include "platform/files/folder_listing.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <sys/stat.h>
#include <tuple>

namespace platform
{

namespace
{

constexpr std::uint64_t kFormatVersion = 0x4f52'4253'4e41'5003; // raised whenever the format or a description changes

struct Header
{
    std::uint64_t version;
    std::uint64_t checksum; ///< of everything behind it
    std::uint64_t environment;
    std::uint64_t folder;      ///< hash of its path
    std::uint64_t folderStamp; ///< state of the folder that the list of entries was read in, 0 for none
    std::uint32_t buckets;
    std::uint32_t entries;
    std::uint64_t textsOffset; ///< texts: each its length in bytes (4 bytes) and its bytes, at multiples of 4
};

struct Entry
{
    std::uint64_t nameHash;
    std::uint64_t stamp;
    std::uint32_t typeText; ///< among the texts (UTF-16)
    std::uint32_t iconText; ///< among the texts
    std::uint16_t displayUnits;
    std::uint16_t nameBytes;
    std::uint8_t kind;
    std::uint8_t flags; ///< hiddenFlag, describedFlag
    std::uint16_t reserved;
    // display name (UTF-16), name and a zero follow
};
static_assert(kMaxDisplayUnits <= 0xFFFF);

constexpr char kFilePrefix[] = "folder-";
constexpr std::uint8_t kHiddenFlag = 1;
constexpr std::uint8_t kDescribedFlag = 2;
constexpr std::size_t kCheckedFrom = offsetof(Header, environment);

const char* Variable(const char* name)
{
    const char* value = getenv(name);
    return value != nullptr ? value : "";
}

std::uint64_t ComputeEnvironment()
{
    std::uint64_t hash = kFormatVersion;
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

constexpr std::size_t RoundUp(std::size_t size, std::size_t multiple)
{
    return (size + multiple - 1) / multiple * multiple;
}

void PadTo(std::string& out, std::size_t multiple)
{
    out.resize(RoundUp(out.size(), multiple));
}

/// Texts in the making; each distinct one is there once.
class TextWriter
{
public:
    std::uint32_t OffsetOf(std::string_view text)
    {
        const auto [place, isNew] =
            m_offsets.try_emplace(std::string(text), static_cast<std::uint32_t>(m_bytes.size()));
        if (isNew)
        {
            Append(m_bytes, static_cast<std::uint32_t>(text.size()));
            m_bytes += text;
            PadTo(m_bytes, sizeof(std::uint32_t));
        }
        return place->second;
    }
    const std::string& Written() const { return m_bytes; }

private:
    std::string m_bytes;
    std::map<std::string, std::uint32_t> m_offsets;
};

void AppendEntry(std::string& out, TextWriter& texts, const ListedFile& file)
{
    Entry entry = {};
    entry.nameHash = HashBytes(file.name);
    entry.stamp = file.stamp;
    entry.typeText = texts.OffsetOf(Bytes(file.typeName));
    entry.iconText = texts.OffsetOf(file.icon);
    entry.displayUnits = static_cast<std::uint16_t>(file.display.size());
    entry.nameBytes = static_cast<std::uint16_t>(file.name.size());
    entry.kind = static_cast<std::uint8_t>(file.kind);
    entry.flags = (file.hidden ? kHiddenFlag : 0) | (file.described ? kDescribedFlag : 0);
    Append(out, entry);
    out += Bytes(file.display);
    out += file.name;
    out += '\0'; // names are handed to system calls
    PadTo(out, alignof(Entry));
}

/// The order that menus are in or near: what they keep of their items is then in memory as it is needed.
std::vector<const ListedFile*> InDisplayOrder(const std::vector<ListedFile>& files)
{
    std::vector<const ListedFile*> ordered;
    ordered.reserve(files.size());
    for (const ListedFile& file : files)
        ordered.push_back(&file);
    std::sort(ordered.begin(), ordered.end(),
              [](const ListedFile* a, const ListedFile* b)
              { return std::tie(a->display, a->name) < std::tie(b->display, b->name); });
    return ordered;
}

std::uint32_t BucketCount(std::size_t entries)
{
    std::uint32_t count = 16;
    while (count < entries * 2)
        count *= 2;
    return count;
}

/// Keeps the cache folder small: when there are many snapshots, the older half goes. What is missed is made again.
void PruneSnapshots()
{
    constexpr std::size_t kMany = 400;
    namespace fs = std::filesystem;
    std::error_code error;
    std::vector<std::pair<fs::file_time_type, fs::path>> snapshots;
    for (auto file = fs::directory_iterator(CacheFolder(), error); !error && file != fs::directory_iterator();
         file.increment(error))
    {
        if (file->path().filename().native().starts_with(kFilePrefix))
        {
            std::error_code gone;
            snapshots.emplace_back(file->last_write_time(gone), file->path());
        }
    }
    if (snapshots.size() < kMany)
        return;
    std::sort(snapshots.begin(), snapshots.end());
    for (std::size_t i = 0; i < snapshots.size() / 2; ++i)
        fs::remove(snapshots[i].second, error);
}

} // namespace

std::uint64_t HashBytes(std::string_view bytes, std::uint64_t seed)
{
    constexpr std::uint64_t kMultiplier = 0x9E37'79B9'7F4A'7C15;
    const auto mix = [](std::uint64_t& hash, std::uint64_t word)
    {
        hash = (hash ^ word) * kMultiplier;
        hash ^= hash >> 29;
    };
    std::uint64_t hash = (seed ^ bytes.size()) * kMultiplier;
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
                mix(lanes[i], words[i]);
        }
        for (const std::uint64_t lane : lanes)
            mix(hash, lane);
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
        return;
    const Header header = ReadAt<Header>(content, 0);
    const bool powerOfTwo = header.buckets != 0 && (header.buckets & (header.buckets - 1)) == 0;
    m_valid = header.version == kFormatVersion && header.environment == Environment() &&
              header.folder == HashBytes(folder) && powerOfTwo &&
              content.size() >= sizeof(Header) + std::uint64_t{header.buckets} * sizeof(std::uint32_t) &&
              header.textsOffset <= content.size() && header.checksum == HashBytes(content.substr(kCheckedFrom));
    m_bucketMask = header.buckets - 1;
    m_entries = header.entries;
    m_folderStamp = header.folderStamp;
    m_texts = m_valid ? content.substr(header.textsOffset) : std::string_view();
}

/// An entry with what it refers to and where the next one begins.
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
        file.hidden = (entry.flags & kHiddenFlag) != 0;
        file.described = (entry.flags & kDescribedFlag) != 0;
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

/// False for an offset that leads astray: the checksum vouches for what was written; whether its writer was sane, it
/// cannot.
bool SnapshotReader::Locate(std::size_t offset, Located& located) const
{
    if (offset % alignof(Entry) != 0 || offset + sizeof(Entry) > m_content.size())
        return false;
    const Entry& entry = located.entry = ReadAt<Entry>(m_content, offset);
    const std::size_t wideBytes = entry.displayUnits * sizeof(char16_t);
    const std::size_t end = offset + sizeof(Entry) + wideBytes + entry.nameBytes + 1;
    const std::optional<std::string_view> typeName = TextAt(entry.typeText);
    const std::optional<std::string_view> icon = TextAt(entry.iconText);
    if (end > m_content.size() || entry.nameBytes == 0 || !typeName || !icon)
        return false;
    const char* names = m_content.data() + offset + sizeof(Entry);
    // Aligned: entries start at multiples of 8, texts at multiples of 4.
    located.display = {reinterpret_cast<const char16_t*>(names), entry.displayUnits};
    located.typeName = {reinterpret_cast<const char16_t*>(typeName->data()), typeName->size() / sizeof(char16_t)};
    located.name = {names + wideBytes, entry.nameBytes};
    located.icon = *icon;
    located.next = RoundUp(end, alignof(Entry));
    return true;
}

bool SnapshotReader::Describe(ListedFile& file) const
{
    if (!m_valid)
        return false;
    const std::uint64_t hash = HashBytes(file.name);
    for (std::uint32_t step = 0; step <= m_bucketMask; ++step)
    {
        const std::size_t bucket = (hash + step) & m_bucketMask;
        const auto offset = ReadAt<std::uint32_t>(m_content, sizeof(Header) + bucket * sizeof(std::uint32_t));
        Located located;
        if (offset == 0 || !Locate(offset, located))
            return false;
        const Entry& entry = located.entry;
        if (entry.nameHash != hash || file.name != located.name)
            continue;
        if (entry.stamp != file.stamp || entry.kind != static_cast<std::uint8_t>(file.kind) ||
            (entry.flags & kDescribedFlag) == 0)
            return false;
        located.GiveTo(file);
        return true;
    }
    return false;
}

std::size_t SnapshotReader::Start() const
{
    return sizeof(Header) + (std::size_t{m_bucketMask} + 1) * sizeof(std::uint32_t);
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

std::string SnapshotPath(std::string_view folder)
{
    const std::string& cache = CacheFolder();
    if (cache.empty())
        return {};
    char name[24];
    std::snprintf(name, sizeof name, "%016llx", static_cast<unsigned long long>(HashBytes(folder)));
    return cache + "/" + kFilePrefix + name;
}

void SaveSnapshot(const FolderListing& listing)
{
    const std::string path = SnapshotPath(listing.path);
    if (path.empty())
        return;
    const std::vector<const ListedFile*> files = InDisplayOrder(listing.files);
    const std::uint32_t buckets = BucketCount(files.size());
    std::vector<std::uint32_t> table(buckets);
    TextWriter texts;
    std::string out(sizeof(Header) + buckets * sizeof(std::uint32_t), '\0');
    for (const ListedFile* file : files)
    {
        std::size_t bucket = HashBytes(file->name) & (buckets - 1);
        while (table[bucket] != 0)
            bucket = (bucket + 1) & (buckets - 1);
        table[bucket] = static_cast<std::uint32_t>(out.size());
        AppendEntry(out, texts, *file);
    }
    Header header{kFormatVersion,
                  0,
                  Environment(),
                  HashBytes(listing.path),
                  listing.folderStamp,
                  buckets,
                  static_cast<std::uint32_t>(files.size()),
                  out.size()};
    out += texts.Written();
    std::memcpy(out.data(), &header, sizeof header);
    std::memcpy(out.data() + sizeof header, table.data(), buckets * sizeof(std::uint32_t));
    header.checksum = HashBytes(std::string_view(out).substr(kCheckedFrom));
    std::memcpy(out.data(), &header, sizeof header);
    ReplaceCacheFile(path, out);
    PruneSnapshots();
}

} // namespace platform
