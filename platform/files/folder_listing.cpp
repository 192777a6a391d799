// Scanning a folder and describing its files.
#include "platform/files/folder_listing.h"

#include "platform/services/desktop_module.h"
#include "platform/base/text.h"
#include "platform/base/unique_fd.h"
#include "platform/services/describe_service.h"
#include "platform/files/bounded_call.h"
#include "platform/shell/change_notify.h"
#include "platform/files/link_target.h"
#include "platform/shell/namespace.h"
#include "platform/icons/system_images.h"
#include "platform/files/trusted_place.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <map>
#include <set>
#include <sys/stat.h>
#include <sys/syscall.h>

namespace platform
{

namespace
{

/// A file to be examined and described.
struct PendingFile
{
    std::size_t index;       ///< in the listing
    std::uint32_t mode = 0;  ///< of what the name leads to, once examined
    bool unanswered = false; ///< a link into a mount that does not answer
};

/// One record of getdents64.
struct DirectoryRecord
{
    std::uint64_t inode;
    std::int64_t offset;
    std::uint16_t size;
    std::uint8_t type;
    char name[];
};

std::uint64_t StampOf(const struct stat& status)
{
    const std::uint64_t words[] = {static_cast<std::uint64_t>(status.st_mtim.tv_sec),
                                   static_cast<std::uint64_t>(status.st_mtim.tv_nsec),
                                   static_cast<std::uint64_t>(status.st_ctim.tv_sec),
                                   static_cast<std::uint64_t>(status.st_ctim.tv_nsec),
                                   status.st_ino,
                                   static_cast<std::uint64_t>(status.st_size),
                                   status.st_mode};
    return HashBytes({reinterpret_cast<const char*>(words), sizeof words});
}

bool IsDesktopEntryName(std::string_view name)
{
    constexpr std::string_view kSuffix = ".desktop";
    return name.size() > kSuffix.size() && name.ends_with(kSuffix);
}

/// Takes in what is known of a file: its own status, and for a link the status of what it leads to (st_mode 0 for
/// nowhere).
void Classify(ListedFile& file, const struct stat& own, const struct stat& target)
{
    const bool link = S_ISLNK(own.st_mode);
    const bool regular = S_ISREG(target.st_mode);
    const bool entry = regular && IsDesktopEntryName(file.name);
    file.kind = entry                  ? ItemKind::DesktopEntry
                : link                 ? ItemKind::Link
                : regular              ? ItemKind::File
                : S_ISDIR(own.st_mode) ? ItemKind::Folder
                                       : ItemKind::Other;
    // A document's description comes from its name and mode alone; what a link shows may come from a desktop entry.
    const bool contentMatters = entry || (link && regular);
    file.stamp = (link ? StampOf(own) : 0) + (contentMatters ? StampOf(target) : target.st_mode);
}

/// Reads one folder's files into a listing.
class Lister
{
public:
    Lister(FolderListing& listing, int directory) : m_listing(listing), m_directory(directory) {}

    /// Adds a file; `type` is the directory entry's.
    void Add(std::string_view name, unsigned char type)
    {
        ListedFile& file = m_listing.files.emplace_back();
        file.name = name;
        file.hidden = name.front() == '.' || name.back() == '~';
        if (type == DT_DIR)
        {
            // Known without asking for its status, which on a mount that stopped answering would block.
            file.kind = ItemKind::Folder;
        }
        else
        {
            m_pending.push_back({m_listing.files.size() - 1});
        }
    }

    /// Completes every file added and drops those that are gone already.
    void Complete()
    {
        ExamineAll();
        for (ListedFile& file : m_listing.files)
        {
            if (file.kind == ItemKind::Folder && !file.name.empty())
            {
                file.icon = kFolderIcon;
                file.typeName = kFolderTypeName;
                file.display = Keep(DisplayNameOfFile(file.name, ItemKind::Folder));
            }
        }
        DescribeAll();
        std::erase_if(m_listing.files, [](const ListedFile& file) { return file.name.empty(); });
    }

private:
    void ExamineAll()
    {
        constexpr std::size_t kWorthHelp = 400; // below, a second thread costs more than it saves
        std::size_t half = m_pending.size() < kWorthHelp ? 0 : m_pending.size() / 2;
        std::vector<std::size_t> links;
        std::vector<std::size_t> helpersLinks;
        std::thread helper;
        try
        {
            helper = half != 0 ? std::thread([&, half] { ExamineRange(0, half, helpersLinks); }) : std::thread();
        }
        catch (const std::system_error&)
        {
            half = 0;
        }
        ExamineRange(half, m_pending.size(), links);
        if (helper.joinable())
            helper.join();
        links.insert(links.end(), helpersLinks.begin(), helpersLinks.end());
        ExamineWithPatience(links);
        std::erase_if(m_pending,
                      [this](const PendingFile& pending)
                      {
                          const ListedFile& file = m_listing.files[pending.index];
                          return file.name.empty() || file.kind == ItemKind::Folder;
                      });
    }

    /// Examines part of the pending files; puts the places of links that need patience into `links`.
    void ExamineRange(std::size_t first, std::size_t last, std::vector<std::size_t>& links)
    {
        SafeLinks safeLinks(m_listing.path);
        for (std::size_t i = first; i < last; ++i)
        {
            ListedFile& file = m_listing.files[m_pending[i].index];
            struct stat own;
            if (fstatat(m_directory, file.name.data(), &own, AT_SYMLINK_NOFOLLOW) != 0)
            {
                file.name = {};
                continue;
            }
            const bool link = S_ISLNK(own.st_mode);
            const std::optional<struct stat> target = link ? safeLinks.TargetOf(m_directory, file.name.data()) : own;
            if (target)
            {
                Classify(file, own, *target);
                m_pending[i].mode = target->st_mode;
            }
            else
            {
                links.push_back(i);
            }
        }
    }

    void ExamineWithPatience(const std::vector<std::size_t>& links)
    {
        if (links.empty())
            return;
        std::vector<std::string> paths;
        for (const std::size_t link : links)
            paths.push_back(m_listing.path + "/" + std::string(m_listing.files[m_pending[link].index].name));
        const std::vector<std::optional<struct stat>> targets = AskWithPatience(std::move(paths));
        for (std::size_t i = 0; i < links.size(); ++i)
        {
            PendingFile& pending = m_pending[links[i]];
            ListedFile& file = m_listing.files[pending.index];
            struct stat own = {};
            fstatat(m_directory, file.name.data(), &own, AT_SYMLINK_NOFOLLOW);
            Classify(file, own, targets[i].value_or((struct stat){}));
            pending.mode = targets[i] ? targets[i]->st_mode : 0;
            pending.unanswered = !targets[i];
        }
    }

    void DescribeAll()
    {
        if (m_pending.empty())
            return;
        std::erase_if(m_pending, [this](const PendingFile& pending) { return DescribeWithoutHelp(pending); });
        if (!m_pending.empty())
            DescribePending();
    }

    /// Completes a file from the snapshot, or as well as can be when whoever looked closer would be left hanging.
    bool DescribeWithoutHelp(const PendingFile& pending)
    {
        ListedFile& file = m_listing.files[pending.index];
        if (pending.unanswered)
        {
            DescribePlainly(file);
            m_listing.folderStamp = 0; // nothing to go by another time
            return true;
        }
        const bool hiddenByName = file.hidden;
        const bool found = m_listing.snapshotReader.Describe(file);
        file.hidden |= hiddenByName;
        return found;
    }

    void DescribePending()
    {
        for (const PendingFile& pending : m_pending)
            DescribePlainly(m_listing.files[pending.index]);
        const auto* service = static_cast<const DescribeService*>(DesktopModuleSymbol("orb_describe_service"));
        if (service == nullptr)
            return;
        std::vector<DescribeRequest> requests;
        for (const PendingFile& pending : m_pending)
        {
            const ListedFile& file = m_listing.files[pending.index];
            requests.push_back({file.name.data(), pending.mode, file.kind == ItemKind::DesktopEntry});
        }
        const auto receive = [](void* context, std::size_t index, const FileFacts& facts)
        {
            auto& self = *static_cast<Lister*>(context);
            self.TakeFacts(self.m_listing.files[self.m_pending[index].index], facts);
        };
        const std::string folder = m_listing.path.empty() ? "/" : m_listing.path;
        service->describe(folder.c_str(), requests.data(), requests.size(), receive, this);
        m_listing.worthSaving = true;
    }

    /// What can be said without the desktop module.
    void DescribePlainly(ListedFile& file)
    {
        file.display = Keep(DisplayNameOfFile(file.name, file.kind));
        file.icon = kDocumentIcon;
        file.typeName = u"File";
    }

    void TakeFacts(ListedFile& file, const FileFacts& facts)
    {
        if (facts.displayName != nullptr && facts.displayName[0] != '\0')
        {
            std::u16string text = Utf16FromUtf8(facts.displayName);
            text.resize(std::min(text.size(), kMaxDisplayUnits));
            file.display = Keep(std::move(text));
        }
        const bool program = file.kind == ItemKind::DesktopEntry;
        std::string icon = facts.icons;
        icon += icon.empty() ? "" : "\n";
        icon += program ? "application-x-executable\n!program" : "text-x-generic\n!document";
        file.icon = m_listing.narrow.emplace_back(std::move(icon));
        file.typeName = Keep(Utf16FromUtf8(facts.typeName));
        file.hidden |= facts.hidden;
        file.described = true;
    }

    std::u16string_view Keep(std::u16string text) { return m_listing.wide.emplace_back(std::move(text)); }

    FolderListing& m_listing;
    int m_directory;
    std::vector<PendingFile> m_pending;
};

bool IsDots(const char* name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// Adds every file of the directory. The blocks read stay with the listing, since the names live there.
int ScanDirectory(FolderListing& listing, int directory, Lister& lister)
{
    constexpr std::size_t kBlockSize = 64 * 1024;
    for (;;)
    {
        auto block = std::make_unique_for_overwrite<char[]>(kBlockSize);
        const long size = syscall(SYS_getdents64, directory, block.get(), kBlockSize);
        if (size <= 0)
            return size < 0 ? errno : 0;
        for (long offset = 0; offset < size;)
        {
            const auto* record = reinterpret_cast<const DirectoryRecord*>(block.get() + offset);
            offset += record->size;
            if (!IsDots(record->name))
                lister.Add(record->name, record->type);
        }
        listing.directoryBlocks.push_back(std::move(block));
    }
}

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
    const std::int64_t modified = status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec;
    if (now.tv_sec * kNanoseconds + now.tv_nsec - modified >= kCoarsestTick)
    {
        listing.modified = modified;
        listing.folderStamp = StampOf(status);
    }
}

void OpenSnapshot(FolderListing& listing)
{
    listing.snapshot = MappedFile(SnapshotPath(listing.path));
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

/// Whatever their order.
bool SameFiles(const FolderListing& a, const FolderListing& b)
{
    const std::vector<ListedFile> inA = FilesByName(a);
    const std::vector<ListedFile> inB = FilesByName(b);
    return std::equal(inA.begin(), inA.end(), inB.begin(), inB.end(), SameFile);
}

struct WaitingFolders
{
    std::mutex mutex;
    std::map<std::string, bool> paths; ///< whether the reader has given up
};

/// Folders that owe an answer.
WaitingFolders& Waiting()
{
    static auto& waiting = *new WaitingFolders;
    return waiting;
}

std::shared_ptr<FolderListing> FailedListing(const std::string& path, int error)
{
    auto listing = std::make_shared<FolderListing>();
    listing->path = path;
    listing->error = error;
    return listing;
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

bool ListingCursor::IsBroken() const
{
    return m_listing->fromSnapshot && !m_read && m_index < m_listing->snapshotReader.Size();
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
    if (IsFirstReading(path) && covered)
    {
        listing->fromSnapshot = true;
        return listing;
    }
    Lister lister(*listing, directory.Get());
    listing->error = ScanDirectory(*listing, directory.Get(), lister);
    lister.Complete();
    listing->worthSaving |= !covered && listing->folderStamp != 0;
    return listing;
}

void VerifyListing(const FolderListing& shown)
{
    const std::shared_ptr<FolderListing> now = ReadFolderWithin(shown.path);
    if (now->error == 0 && SameFiles(shown, *now))
        return;
    if (now->error == 0)
        SaveSnapshot(*now);
    FolderHasChanged(shown.path);
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
    Lister lister(*listing, directory.Get());
    // A mount point is known to be a folder without asking what is mounted there.
    const std::optional<struct statx> known = KnownStatus(folder + "/" + name);
    lister.Add(listing->narrow.emplace_back(name), known && S_ISDIR(known->stx_mode) ? DT_DIR : DT_UNKNOWN);
    lister.Complete();
    listing->error = listing->files.empty() ? ENOENT : 0;
    return listing;
}

std::shared_ptr<FolderListing> ReadFolderWithin(const std::string& path)
{
    if (InTrustedPlace(path))
        return ReadFolder(path);
    constexpr std::chrono::milliseconds kPatience{1000};
    WaitingFolders& waiting = Waiting();
    {
        const std::lock_guard lock(waiting.mutex);
        if (!waiting.paths.try_emplace(path, false).second)
            return FailedListing(path, ETIMEDOUT);
    }
    auto listing = CallWithin<FolderListing>(kPatience,
                                             [path, &waiting]
                                             {
                                                 auto answer = ReadFolder(path);
                                                 std::unique_lock lock(waiting.mutex);
                                                 const bool late = waiting.paths.extract(path).mapped();
                                                 lock.unlock();
                                                 if (late)
                                                     FolderHasChanged(path);
                                                 return answer;
                                             });
    if (listing == nullptr)
    {
        const std::lock_guard lock(waiting.mutex);
        const auto owed = waiting.paths.find(path);
        if (owed != waiting.paths.end())
            owed->second = true;
        listing = FailedListing(path, ETIMEDOUT);
    }
    return listing;
}

} // namespace platform
