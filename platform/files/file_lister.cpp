// Examining and describing a folder's files.
#include "platform/files/file_lister.h"

#include "platform/base/file_stamp.h"
#include "platform/base/text.h"
#include "platform/files/link_target.h"
#include "platform/files/names.h"
#include "platform/services/describe_service.h"
#include "platform/services/desktop_module.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace platform
{

namespace
{

/// One record of getdents64.
struct DirectoryRecord
{
    std::uint64_t inode;
    std::int64_t offset;
    std::uint16_t size;
    std::uint8_t type;
    char name[];
};

/// Whether a file of that name is to be shown as a desktop entry; a link that is a shortcut to one as well.
bool IsDesktopEntryName(std::string_view name, bool link)
{
    if (link)
        name.remove_suffix(HiddenEnding(name, ItemKind::Link) == kShortcutEnding ? kShortcutEnding.size() : 0);
    return HiddenEnding(name, ItemKind::File) == kEntryEnding;
}

/// Takes in what is known of a file: its own status, and for a link the status of what it leads to (st_mode 0 for
/// nowhere).
void Classify(ListedFile& file, const struct stat& own, const struct stat& target)
{
    const bool link = S_ISLNK(own.st_mode);
    const bool regular = S_ISREG(target.st_mode);
    const bool entry = regular && IsDesktopEntryName(file.name, link);
    file.kind = entry                  ? ItemKind::DesktopEntry
                : link                 ? ItemKind::Link
                : regular              ? ItemKind::File
                : S_ISDIR(own.st_mode) ? ItemKind::Folder
                                       : ItemKind::Other;
    // A document's description comes from its name and mode alone; what a link shows may come from a desktop entry.
    const bool contentMatters = entry || (link && regular);
    file.stamp = (link ? StampOf(own) : 0) + (contentMatters ? StampOf(target) : target.st_mode);
}

bool IsDots(const char* name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

} // namespace

int FileLister::AddAll()
{
    constexpr std::size_t kBlockSize = 64 * 1024;
    for (;;)
    {
        auto block = std::make_unique_for_overwrite<char[]>(kBlockSize);
        const long size = syscall(SYS_getdents64, m_directory, block.get(), kBlockSize);
        if (size <= 0)
            return size < 0 ? errno : 0;
        for (long offset = 0; offset < size;)
        {
            const auto* record = reinterpret_cast<const DirectoryRecord*>(block.get() + offset);
            offset += record->size;
            if (!IsDots(record->name))
                Add(record->name, record->type);
        }
        m_listing.directoryBlocks.push_back(std::move(block));
    }
}

void FileLister::Add(std::string_view name, unsigned char type)
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

void FileLister::Complete()
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

void FileLister::ExamineAll()
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
void FileLister::ExamineRange(std::size_t first, std::size_t last, std::vector<std::size_t>& links)
{
    TrustedWalk walk;
    for (std::size_t i = first; i < last; ++i)
    {
        ListedFile& file = m_listing.files[m_pending[i].index];
        struct stat own;
        if (fstatat(m_directory, file.name.data(), &own, AT_SYMLINK_NOFOLLOW) != 0)
        {
            m_pending[i].unseen = errno != ENOENT;
            file.name = m_pending[i].unseen ? file.name : std::string_view();
            continue;
        }
        const bool link = S_ISLNK(own.st_mode);
        const std::optional<struct stat> target = link ? TargetOf(PathOf(file), walk) : own;
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

void FileLister::ExamineWithPatience(const std::vector<std::size_t>& links)
{
    if (links.empty())
        return;
    std::vector<std::string> paths;
    for (const std::size_t link : links)
        paths.push_back(PathOf(m_listing.files[m_pending[link].index]));
    const std::vector<std::optional<struct stat>> targets = AskWithPatience(std::move(paths));
    for (std::size_t i = 0; i < links.size(); ++i)
    {
        PendingFile& pending = m_pending[links[i]];
        ListedFile& file = m_listing.files[pending.index];
        struct stat own = {};
        fstatat(m_directory, file.name.data(), &own, AT_SYMLINK_NOFOLLOW);
        Classify(file, own, targets[i].value_or((struct stat){}));
        pending.mode = targets[i] ? targets[i]->st_mode : 0;
        pending.unseen = !targets[i];
    }
}

void FileLister::DescribeAll()
{
    if (m_pending.empty())
        return;
    std::erase_if(m_pending, [this](const PendingFile& pending) { return DescribeWithoutHelp(pending); });
    if (!m_pending.empty())
        DescribePending();
}

/// Completes a file from the snapshot, or as well as can be when whoever looked closer would be left hanging.
bool FileLister::DescribeWithoutHelp(const PendingFile& pending)
{
    ListedFile& file = m_listing.files[pending.index];
    if (pending.unseen)
    {
        DescribeUnseen(file);
        return true;
    }
    const bool hiddenByName = file.hidden;
    const bool found = m_listing.snapshotReader.Describe(file);
    file.hidden |= hiddenByName;
    return found;
}

void FileLister::DescribeUnseen(ListedFile& file)
{
    const bool hiddenByName = file.hidden;
    if (!m_listing.snapshotReader.DescribeAsLastSeen(file))
        DescribePlainly(file);
    file.hidden |= hiddenByName;
    m_listing.folderStamp = 0; // nothing to go by another time
}

void FileLister::DescribePending()
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
        auto& self = *static_cast<FileLister*>(context);
        self.TakeFacts(self.m_listing.files[self.m_pending[index].index], facts);
    };
    const std::string folder = m_listing.path.empty() ? "/" : m_listing.path;
    service->describe(folder.c_str(), requests.data(), requests.size(), receive, this);
    m_listing.worthSaving = true;
}

/// What can be said without the desktop module.
void FileLister::DescribePlainly(ListedFile& file)
{
    file.display = Keep(DisplayNameOfFile(file.name, file.kind));
    file.icon = kDocumentIcon;
    file.typeName = u"File";
}

void FileLister::TakeFacts(ListedFile& file, const FileFacts& facts)
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
    icon += program ? kProgramIcon : kDocumentIcon;
    file.icon = m_listing.narrow.emplace_back(std::move(icon));
    file.typeName = Keep(Utf16FromUtf8(facts.typeName));
    file.hidden |= facts.hidden && !file.name.ends_with(kShortcutEnding); // who makes a shortcut wants to see it
    file.described = true;
}

} // namespace platform
