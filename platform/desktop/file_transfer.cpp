// Copying and moving trees: what becomes of each name, what is asked, what is taken back.
#include "platform/desktop/file_transfer.h"

#include "platform/desktop/file_names.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

namespace platform
{

namespace
{

constexpr unsigned kTakenAnswers = FileAnswer::Cancel | FileAnswer::Skip | FileAnswer::KeepBoth;

/// What stands in the way, and so what may be done about it.
FileAnswer AskTaken(FileWorkTalk& talk, const FilePlace& from, const FilePlace& to)
{
    struct stat source;
    struct stat target;
    if (from.Status(source) != 0 || to.Status(target) != 0)
        return FileAnswer::TryAgain;
    if (S_ISDIR(source.st_mode) != S_ISDIR(target.st_mode))
        return talk.Ask(FileQuestion::KindsDiffer, to.path, kTakenAnswers);
    return talk.Ask(S_ISDIR(source.st_mode) ? FileQuestion::FolderTaken : FileQuestion::NameTaken, to.path,
                    kTakenAnswers | FileAnswer::Replace);
}

std::uint64_t ContentSize(const struct stat& status)
{
    return S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
}

bool IsFolder(const FilePlace& place)
{
    struct stat status;
    return place.Status(status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

std::string FreeName(const OpenFolder& folder, const std::string& name, bool isFolder, std::string_view word)
{
    const NameParts parts = isFolder ? NameParts{name, ""} : SplitFileName(name);
    for (int n = 1;; ++n)
    {
        const std::string candidate = word.empty() ? NumberedName(parts, n + 1) : NumberedCopyName(parts, word, n);
        struct stat status;
        if (folder.At(candidate).Status(status) != 0)
            return candidate;
    }
}

void FileTransfer::Run(const std::vector<std::string>& sources, const std::string& folder)
{
    int error = m_folder.Open(folder);
    if (error == 0 && fstat(m_folder.fd.Get(), &m_folderStatus) != 0)
        error = errno;
    if (error != 0)
    {
        m_talk.AskFailure(folder, error);
        return;
    }
    RemoveLeftovers(m_folder);
    std::vector<Item> items;
    for (const std::string& source : sources)
        items.push_back({source});
    // What is only renamed is not counted: that would take longer than doing it.
    for (Item& item : items)
    {
        OpenFolder parent;
        FilePlace from;
        struct stat status;
        if (PlaceOf(item.path, parent, from) == 0 && from.Status(status) == 0 &&
            (!m_move || status.st_dev != m_folderStatus.st_dev))
            item.counted = Count(from) == 0;
    }
    for (std::size_t i = 0; i < items.size() && !m_talk.IsCancelled(); ++i)
    {
        m_talk.more = i + 1 < items.size();
        RunItem(items[i]);
    }
}

int FileTransfer::CheckItem(const FilePlace& from, struct stat& status)
{
    if (const int error = from.Status(status))
        return error;
    if (S_ISDIR(status.st_mode) && LiesWithin(m_folder, status))
        return kErrorIntoItself;
    return 0;
}

void FileTransfer::RunItem(Item& item)
{
    OpenFolder parent;
    FilePlace from;
    struct stat status
    {
    };
    for (;;)
    {
        int error = PlaceOf(item.path, parent, from);
        if (error == 0)
            error = CheckItem(from, status);
        if (error == 0)
            break;
        if (m_talk.AskFailure(item.path, error) != FileAnswer::TryAgain)
            return;
    }
    struct stat parentStatus
    {
    };
    fstat(parent.fd.Get(), &parentStatus);
    m_sameFolder = IsSameFile(parentStatus, m_folderStatus);
    if (m_sameFolder && m_move)
        return; // it is where it is to go
    m_item = &item;
    m_copied.Clear();
    m_made.Clear();
    m_madeNames.clear();
    m_hasCopied = false;
    const std::string name = m_sameFolder ? FreeName(m_folder, from.name, S_ISDIR(status.st_mode), "copy") : from.name;
    const int error = Settle(from, m_folder, name);
    if (error == ECANCELED || m_talk.IsCancelled())
        Undo();
    else if (m_move)
        CommitMove(from);
}

int FileTransfer::Settle(const FilePlace& from, const OpenFolder& folder, std::string name)
{
    bool replace = false;
    for (;;)
    {
        if (m_talk.IsCancelled())
            return ECANCELED;
        const FilePlace to = folder.At(name);
        const bool top = folder.fd.Get() == m_folder.fd.Get();
        if (top)
            m_madeNames.push_back(name);
        const int error = Attempt(from, to, replace);
        if (error == 0 || error == ECANCELED || error == kErrorPartly)
            return error;
        if (error == EEXIST && top && m_sameFolder)
        {
            name = FreeName(folder, from.name, IsFolder(from), "copy");
            continue;
        }
        switch (error == EEXIST ? AskTaken(m_talk, from, to) : m_talk.AskFailure(from.path, error))
        {
        case FileAnswer::Replace:
            replace = true;
            break;
        case FileAnswer::KeepBoth:
            name = FreeName(folder, from.name, IsFolder(from), "");
            replace = false;
            break;
        case FileAnswer::TryAgain:
            break;
        case FileAnswer::Cancel:
            return ECANCELED;
        default:
            return kErrorPartly;
        }
    }
}

int FileTransfer::Attempt(const FilePlace& from, const FilePlace& to, bool replace)
{
    struct stat status;
    if (const int error = from.Status(status))
        return error;
    if (m_move)
    {
        const int error = Rename(from, to, status, replace);
        if (error != EXDEV)
            return error;
        // Deleting what has been copied is bound to fail later, when it has cost time and room.
        if (faccessat(from.folder, ".", W_OK | X_OK, AT_EACCESS) != 0)
            return errno;
    }
    if (m_item != nullptr && !m_item->counted)
    {
        if (const int error = Count(from))
            return error;
        m_item->counted = true;
    }
    if (S_ISDIR(status.st_mode))
        return Fill(from, to, replace);
    m_talk.Begin(from.name);
    const int error = CopyOne(from, to, replace);
    if (error == 0)
        m_talk.FileDone(ContentSize(status));
    return error;
}

int FileTransfer::Rename(const FilePlace& from, const FilePlace& to, const struct stat& status, bool replace)
{
    if (!replace)
        return RenameToFree(from, to);
    struct stat taken;
    if (to.Status(taken) != 0)
        return RenameToFree(from, to);
    if (S_ISDIR(status.st_mode) != S_ISDIR(taken.st_mode))
        return EEXIST;
    if (S_ISDIR(status.st_mode))
        return Fill(from, to, replace);
    // Renaming one name of a file to another of its names does nothing.
    if (IsSameFile(status, taken) && status.st_nlink > 1)
        return unlinkat(from.folder, from.name.c_str(), 0) == 0 ? 0 : errno;
    return renameat(from.folder, from.name.c_str(), to.folder, to.name.c_str()) == 0 ? 0 : errno;
}

int FileTransfer::CopyOne(const FilePlace& from, const FilePlace& to, bool replace)
{
    struct stat taken;
    const bool replaces = replace && to.Status(taken) == 0;
    if (replaces && S_ISDIR(taken.st_mode))
        return EEXIST;
    struct stat source;
    struct stat made;
    const CopyOptions options{replaces, m_move ? CopyKeeps::Identity : CopyKeeps::Likeness};
    if (const int error = CopyFile(from, to, options, m_talk, source, made))
        return error;
    m_hasCopied = true;
    m_copied.Add(source);
    if (!replaces)
        m_made.Add(made);
    return 0;
}

int FileTransfer::Fill(const FilePlace& from, const FilePlace& to, bool replace)
{
    OpenFolder source;
    if (const int error = source.Open(from))
        return error;
    const bool isNew = mkdirat(to.folder, to.name.c_str(), 0700) == 0;
    if (!isNew && (errno != EEXIST || !replace))
        return errno;
    OpenFolder target;
    if (const int error = target.Open(to))
    {
        if (isNew)
            unlinkat(to.folder, to.name.c_str(), AT_REMOVEDIR);
        return error == ENOTDIR || error == ELOOP ? EEXIST : error;
    }
    struct stat sourceStatus;
    struct stat targetStatus;
    if (fstat(source.fd.Get(), &sourceStatus) != 0 || fstat(target.fd.Get(), &targetStatus) != 0)
        return errno;
    if (IsSameFile(sourceStatus, targetStatus))
        return kErrorIntoItself;
    m_copied.Add(sourceStatus);
    if (isNew)
        m_made.Add(targetStatus);
    else
    {
        m_made.AddPassed(targetStatus);
        RemoveLeftovers(target);
    }
    const int error = FillFrom(source, target);
    if (isNew && error != ECANCELED)
        CopyAttributes(source.fd.Get(), target.fd.Get(), m_move ? CopyKeeps::Identity : CopyKeeps::Likeness);
    return error;
}

int FileTransfer::FillFrom(const OpenFolder& source, const OpenFolder& target)
{
    std::vector<std::string> names;
    if (const int error = source.List(names))
        return error;
    const bool more = m_talk.more;
    int result = 0;
    for (const std::string& name : names)
    {
        m_talk.more = true; // what stands around the folder, at least
        const int error = Settle(source.At(name), target, name);
        if (error == ECANCELED)
            return error;
        if (error != 0)
            result = error;
    }
    m_talk.more = more;
    return result;
}

int FileTransfer::Count(const FilePlace& from)
{
    if (m_talk.IsCancelled())
        return ECANCELED;
    struct stat status;
    if (from.Status(status) != 0)
        return 0;
    if (!S_ISDIR(status.st_mode))
    {
        m_talk.Expect(1, ContentSize(status));
        return 0;
    }
    if (IsSameFile(status, m_folderStatus))
        return kErrorIntoItself;
    OpenFolder folder;
    std::vector<std::string> names;
    if (folder.Open(from) == 0)
        folder.List(names); // what cannot be read is told when its turn comes
    for (const std::string& name : names)
        if (const int error = Count(folder.At(name)))
            return error;
    return 0;
}

void FileTransfer::CommitMove(const FilePlace& from)
{
    // Nothing is deleted before its copy is on the disk. One call for all of them: one for each file takes a thousand
    // times as long.
    if (m_hasCopied && syncfs(m_folder.fd.Get()) != 0)
    {
        const int error = errno;
        Undo();
        m_talk.AskFailure(from.path, error);
        return;
    }
    while (const int error = m_copied.Remove(from))
        if (m_talk.AskFailure(from.path, error) != FileAnswer::TryAgain)
            return;
}

void FileTransfer::Undo()
{
    for (const std::string& name : m_madeNames)
        m_made.Remove(m_folder.At(name));
}

} // namespace platform
