// Reading a folder, from its snapshot or afresh.
#include "platform/files/folder_listing.h"

#include "platform/base/cache_folder.h"
#include "platform/base/file_stamp.h"
#include "platform/base/unique_fd.h"
#include "platform/files/file_lister.h"
#include "platform/files/names.h"
#include "platform/files/trusted_place.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <mutex>
#include <set>

namespace platform
{

namespace
{

UniqueFd OpenDirectory(const std::string& path)
{
    return UniqueFd(open(path.empty() ? "/" : path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

/// Notes the state of a folder about to be read, unless a change right after the reading might leave no trace in it.
void NoteStateBeforeReading(FolderListing& listing, int directory)
{
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    constexpr std::int64_t kCoarsestTick = 20'000'000; // file times move on with the kernel's tick
    struct stat status;
    timespec now;
    if (fstat(directory, &status) != 0 || clock_gettime(CLOCK_REALTIME_COARSE, &now) != 0)
        return;
    const std::int64_t modified = ModifiedAt(status);
    if (now.tv_sec * kNanoseconds + now.tv_nsec - modified >= kCoarsestTick)
    {
        listing.modified = modified;
        listing.folderStamp = StampOf(status);
    }
}

void OpenSnapshot(FolderListing& listing)
{
    listing.snapshot = FileContent(OpenCacheFile(SnapshotPath(listing.path)));
    listing.snapshotReader = SnapshotReader(listing.snapshot.Content(), listing.path);
}

/// True the first time that a folder is asked for.
bool IsFirstReading(const std::string& path)
{
    static auto& mutex = *new std::mutex;
    static auto& read = *new std::set<std::string>;
    const std::lock_guard lock(mutex);
    return read.insert(path).second;
}

std::vector<ListedFile> FilesByName(const FolderListing& listing)
{
    std::vector<ListedFile> files;
    for (ListingCursor cursor(listing); cursor.Current() != nullptr; cursor.Advance())
        files.push_back(*cursor.Current());
    std::sort(files.begin(), files.end(), [](const ListedFile& a, const ListedFile& b) { return a.name < b.name; });
    return files;
}

bool SameFile(const ListedFile& a, const ListedFile& b)
{
    return a.name == b.name && a.kind == b.kind && a.hidden == b.hidden && a.stamp == b.stamp &&
           a.display == b.display && a.icon == b.icon && a.typeName == b.typeName;
}

} // namespace

ListingCursor::ListingCursor(const FolderListing& listing)
    : m_listing(&listing), m_offset(listing.fromSnapshot ? listing.snapshotReader.Start() : 0)
{
    ReadFromSnapshot();
}

const ListedFile* ListingCursor::Current() const
{
    if (m_read)
        return &*m_read;
    return m_index < m_listing->files.size() ? &m_listing->files[m_index] : nullptr;
}

void ListingCursor::Advance()
{
    ++m_index;
    ReadFromSnapshot();
}

void ListingCursor::ReadFromSnapshot()
{
    if (!m_listing->fromSnapshot)
        return;
    const SnapshotReader& snapshot = m_listing->snapshotReader;
    if (m_index >= snapshot.Size() || !snapshot.Read(m_offset, m_read ? *m_read : m_read.emplace()))
        m_read.reset();
}

bool SameFiles(const FolderListing& a, const FolderListing& b)
{
    const std::vector<ListedFile> inA = FilesByName(a);
    const std::vector<ListedFile> inB = FilesByName(b);
    return std::equal(inA.begin(), inA.end(), inB.begin(), inB.end(), SameFile);
}

bool IsGone(int error)
{
    return error == ENOENT || error == ENOTDIR;
}

std::shared_ptr<FolderListing> FolderAsLastSeen(const std::string& path)
{
    auto listing = std::make_shared<FolderListing>();
    listing->path = path;
    OpenSnapshot(*listing);
    listing->lastSeen = listing->fromSnapshot = listing->snapshotReader.ListsWhole();
    return listing->fromSnapshot ? listing : nullptr;
}

std::shared_ptr<FolderListing> FileAsLastSeen(const std::string& folder, const std::string& name)
{
    auto listing = std::make_shared<FolderListing>();
    listing->path = folder;
    OpenSnapshot(*listing);
    ListedFile file;
    file.name = listing->narrow.emplace_back(name);
    if (!listing->snapshotReader.DescribeAsLastSeen(file))
    {
        if (FolderAsLastSeen(folder + "/" + name) == nullptr)
            return nullptr;
        file.kind = ItemKind::Folder;
        file.icon = kFolderIcon;
        file.typeName = kFolderTypeName;
        file.display = listing->wide.emplace_back(DisplayNameOfFile(name, ItemKind::Folder));
    }
    listing->lastSeen = true;
    listing->files.push_back(file);
    return listing;
}

std::shared_ptr<FolderListing> ReadFolder(const std::string& path)
{
    auto listing = std::make_shared<FolderListing>();
    listing->path = path;
    const UniqueFd directory = OpenDirectory(path);
    if (!directory)
    {
        listing->error = errno;
        return listing;
    }
    NoteStateBeforeReading(*listing, directory.Get());
    OpenSnapshot(*listing);
    const bool covered = listing->snapshotReader.Covers(listing->folderStamp);
    const bool listWillDo = IsFirstReading(path) && covered;
    if (listWillDo && listing->snapshotReader.ListsWhole())
    {
        listing->fromSnapshot = true;
        return listing;
    }
    FileLister lister(*listing, directory.Get());
    listing->error = lister.AddAll();
    lister.Complete();
    listing->worthSaving |= !covered || listWillDo; // the latter would have done but for damage
    return listing;
}

std::shared_ptr<FolderListing> ReadFile(const std::string& folder, const std::string& name)
{
    auto listing = std::make_shared<FolderListing>();
    listing->path = folder;
    const UniqueFd directory(open(folder.empty() ? "/" : folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!directory)
    {
        listing->error = errno;
        return listing;
    }
    OpenSnapshot(*listing);
    FileLister lister(*listing, directory.Get());
    // A mount point is known to be a folder without asking what is mounted there.
    const std::optional<struct statx> known = KnownStatus(folder + "/" + name);
    if (!known)
    {
        listing->error = errno;
        return listing;
    }
    lister.Add(listing->narrow.emplace_back(name), S_ISDIR(known->stx_mode) ? DT_DIR : DT_UNKNOWN);
    lister.Complete();
    listing->error = listing->files.empty() ? ENOENT : 0;
    return listing;
}

} // namespace platform
