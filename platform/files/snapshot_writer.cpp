// Writing folder snapshots, and where they are kept.
#include "platform/base/byte_reader.h"
#include "platform/base/cache_folder.h"
#include "platform/base/file_content.h"
#include "platform/base/hash_bytes.h"
#include "platform/files/folder_listing.h"
#include "platform/files/snapshot_format.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <tuple>

namespace platform
{

namespace
{

constexpr char kFilePrefix[] = "folder-";

std::string_view Bytes(std::u16string_view text)
{
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
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
            AppendValue(m_bytes, static_cast<std::uint32_t>(text.size()));
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
    SnapshotEntry entry = {};
    entry.nameHash = HashBytes(file.name);
    entry.stamp = file.stamp;
    entry.typeText = texts.OffsetOf(Bytes(file.typeName));
    entry.iconText = texts.OffsetOf(file.icon);
    entry.displayUnits = static_cast<std::uint16_t>(file.display.size());
    entry.nameBytes = static_cast<std::uint16_t>(file.name.size());
    entry.kind = static_cast<std::uint8_t>(file.kind);
    entry.flags = (file.hidden ? kSnapshotHiddenFlag : 0) | (file.described ? kSnapshotDescribedFlag : 0);
    AppendValue(out, entry);
    out += Bytes(file.display);
    out += file.name;
    out += '\0'; // names are handed to system calls
    PadTo(out, alignof(SnapshotEntry));
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
    std::string out(sizeof(SnapshotHeader) + buckets * sizeof(std::uint32_t), '\0');
    for (const ListedFile* file : files)
    {
        std::size_t bucket = HashBytes(file->name) & (buckets - 1);
        while (table[bucket] != 0)
            bucket = (bucket + 1) & (buckets - 1);
        table[bucket] = static_cast<std::uint32_t>(out.size());
        AppendEntry(out, texts, *file);
    }
    SnapshotHeader header{kSnapshotVersion,
                          0,
                          SnapshotEnvironment(),
                          HashBytes(listing.path),
                          listing.folderStamp,
                          buckets,
                          static_cast<std::uint32_t>(files.size()),
                          out.size()};
    out += texts.Written();
    std::memcpy(out.data(), &header, sizeof header);
    std::memcpy(out.data() + sizeof header, table.data(), buckets * sizeof(std::uint32_t));
    header.checksum = HashBytes(std::string_view(out).substr(kSnapshotCheckedFrom));
    std::memcpy(out.data(), &header, sizeof header);
    if (FileContent(OpenCacheFile(path)).Content() == out)
        return;
    ReplaceCacheFile(path, out);
    PruneSnapshots();
}

} // namespace platform
