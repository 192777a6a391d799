// Copying one file: content and holes by the system's calls, attributes by GIO.
//
// g_file_copy writes under the target's name, so that a copy that is broken off is a half file there, or the file that
// it was to replace is gone; and it fills holes. It is used for what it knows best: which attributes go along.
#include "platform/desktop/file_copy.h"

#include "platform/base/file_stamp.h"
#include "platform/base/product.h"
#include "platform/desktop/glib_owner.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/file.h>
#include <sys/random.h>

namespace platform
{

namespace
{

constexpr std::string_view kPartPrefix = "." ORB_PRODUCT "-";
constexpr std::string_view kPartSuffix = ".part";
/// How much is copied between two looks at whether the user has cancelled, in bytes.
constexpr std::size_t kPiece = std::size_t{4} << 20;

int Result(int returned)
{
    return returned < 0 ? errno : 0;
}

std::string PathOf(int fd)
{
    return "/proc/self/fd/" + std::to_string(fd);
}

/// Hidden, and recognised by RemoveLeftovers.
std::string PartName()
{
    std::uint64_t number = 0;
    static_cast<void>(getrandom(&number, sizeof number, 0));
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(number));
    return std::string(kPartPrefix).append(digits).append(kPartSuffix);
}

/// A file that gets its name when it is whole: it has none before, or where the file system needs one, a hidden one.
/// The hidden name is locked, so that what a process that was killed has left is told from what is being written.
class FileInMaking
{
public:
    explicit FileInMaking(int folder) : m_folder(folder) {}
    ~FileInMaking()
    {
        if (!m_part.empty())
            unlinkat(m_folder, m_part.c_str(), 0);
    }
    FileInMaking(const FileInMaking&) = delete;
    FileInMaking& operator=(const FileInMaking&) = delete;

    int Create();
    int Fd() const { return m_fd.Get(); }
    int Name(const FilePlace& to, bool replace);

private:
    int Replace(const FilePlace& to);

    int m_folder;
    UniqueFd m_fd;
    std::string m_part; ///< the hidden name, while there is one
};

int FileInMaking::Create()
{
    m_fd = UniqueFd(openat(m_folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    if (m_fd)
    {
        flock(m_fd.Get(), LOCK_EX);
        return 0;
    }
    if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL && errno != ENOENT)
        return errno;
    for (;;)
    {
        const std::string part = PartName();
        m_fd = UniqueFd(openat(m_folder, part.c_str(), O_CREAT | O_EXCL | O_RDWR | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (!m_fd)
            return errno;
        m_part = part;
        struct stat status;
        flock(m_fd.Get(), LOCK_EX);
        if (fstat(m_fd.Get(), &status) != 0 || status.st_nlink > 0)
            return 0;
        // Taken for a left-over before it was locked.
    }
}

int FileInMaking::Name(const FilePlace& to, bool replace)
{
    const bool named = !m_part.empty();
    // A network's file system tells what it could not write only now.
    if (named && fsync(m_fd.Get()) != 0 && errno != EINVAL)
        return errno;
    if (replace)
        return Replace(to);
    if (!named)
        return Result(linkat(AT_FDCWD, PathOf(m_fd.Get()).c_str(), to.folder, to.name.c_str(), AT_SYMLINK_FOLLOW));
    const int error = RenameToFree({m_folder, m_part, ""}, to);
    if (error == 0)
        m_part.clear();
    return error;
}

int FileInMaking::Replace(const FilePlace& to)
{
    if (m_part.empty())
    {
        const std::string part = PartName();
        if (linkat(AT_FDCWD, PathOf(m_fd.Get()).c_str(), m_folder, part.c_str(), AT_SYMLINK_FOLLOW) != 0)
            return errno;
        m_part = part;
    }
    if (renameat(m_folder, m_part.c_str(), to.folder, to.name.c_str()) != 0)
        return errno;
    m_part.clear();
    return 0;
}

class ContentCopy
{
public:
    ContentCopy(int source, int target, FileWorkTalk& talk) : m_source(source), m_target(target), m_talk(talk) {}

    /// Copies `size` bytes, or all there is of a file that does not know its size.
    int Run(off_t size);

private:
    int CopyRange(off_t start, off_t end);
    ssize_t CopyPiece(off_t at, std::size_t size);
    ssize_t CopyThroughMemory(off_t at, std::size_t size);
    bool HasMoreThan(off_t size) const;

    int m_source;
    int m_target;
    FileWorkTalk& m_talk;
    bool m_inKernel = true;
    std::vector<char> m_buffer;
};

int ContentCopy::Run(off_t size)
{
    off_t at = 0;
    while (at < size)
    {
        off_t start = lseek(m_source, at, SEEK_DATA);
        if (start < 0 && errno == ENXIO)
            break; // a hole up to the end
        off_t end = start < 0 ? -1 : lseek(m_source, start, SEEK_HOLE);
        start = start < 0 ? at : std::min(start, size);
        end = end < 0 ? size : std::min(end, size);
        m_talk.Advance(static_cast<std::uint64_t>(start - at));
        if (const int error = CopyRange(start, end))
            return error;
        at = end;
    }
    m_talk.Advance(static_cast<std::uint64_t>(size - at));
    if (HasMoreThan(size))
        return size == 0 ? CopyRange(0, LLONG_MAX) : kErrorChanged;
    return Result(ftruncate(m_target, size));
}

int ContentCopy::CopyRange(off_t start, off_t end)
{
    while (start < end)
    {
        if (m_talk.IsCancelled())
            return ECANCELED;
        const ssize_t copied = CopyPiece(start, std::min<std::size_t>(kPiece, static_cast<std::size_t>(end - start)));
        if (copied < 0 && errno == EINTR)
            continue;
        if (copied < 0)
            return errno;
        if (copied == 0)
            return end == LLONG_MAX ? 0 : kErrorChanged;
        m_talk.Advance(static_cast<std::uint64_t>(copied));
        start += copied;
    }
    return 0;
}

ssize_t ContentCopy::CopyPiece(off_t at, std::size_t size)
{
    if (m_inKernel)
    {
        off_t from = at;
        off_t to = at;
        const ssize_t copied = copy_file_range(m_source, &from, m_target, &to, size, 0);
        if (copied > 0 || (copied < 0 && (errno == EINTR || errno == ENOSPC || errno == EDQUOT || errno == EIO)))
            return copied;
        m_inKernel = false; // not between these two file systems
    }
    return CopyThroughMemory(at, size);
}

ssize_t ContentCopy::CopyThroughMemory(off_t at, std::size_t size)
{
    m_buffer.resize(256 * 1024);
    const ssize_t got = pread(m_source, m_buffer.data(), std::min(size, m_buffer.size()), at);
    ssize_t put = 0;
    while (put < got)
    {
        const ssize_t written = pwrite(m_target, m_buffer.data() + put, static_cast<std::size_t>(got - put), at + put);
        if (written < 0 && errno != EINTR)
            return -1;
        put += std::max<ssize_t>(written, 0);
    }
    return got;
}

bool ContentCopy::HasMoreThan(off_t size) const
{
    char byte;
    return pread(m_source, &byte, 1, size) > 0;
}

GObjectOwner<GFile> FileOf(int fd)
{
    return GObjectOwner<GFile>(g_vfs_get_file_for_path(g_vfs_get_local(), PathOf(fd).c_str()));
}

/// Opens a file for reading. What has become a pipe since it was looked at is not waited for; what another program has
/// reserved for a moment (a lease) is.
UniqueFd OpenSource(const FilePlace& from)
{
    constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC;
    UniqueFd file(openat(from.folder, from.name.c_str(), kFlags | O_NONBLOCK));
    if (!file && errno == EWOULDBLOCK)
        file = UniqueFd(openat(from.folder, from.name.c_str(), kFlags));
    return file;
}

int CopyRegular(const FilePlace& from, const FilePlace& to, CopyOptions options, FileWorkTalk& talk,
                struct stat& source, struct stat& made)
{
    const UniqueFd file = OpenSource(from);
    if (!file || fstat(file.Get(), &source) != 0)
        return errno;
    if (!S_ISREG(source.st_mode))
        return kErrorSpecial;
    FileInMaking target(to.folder);
    if (const int error = target.Create())
        return error;
    if (const int error = ContentCopy(file.Get(), target.Fd(), talk).Run(source.st_size))
        return error;
    struct stat after;
    if (fstat(file.Get(), &after) != 0 || fstat(target.Fd(), &made) != 0)
        return errno;
    const bool complete = made.st_size == source.st_size || source.st_size == 0;
    if (!complete || after.st_size != source.st_size || ModifiedAt(after) != ModifiedAt(source))
        return kErrorChanged;
    CopyAttributes(file.Get(), target.Fd(), options.keeps);
    if (const int error = target.Name(to, options.replace))
        return error;
    return Result(fstat(target.Fd(), &made));
}

int CopyLink(const FilePlace& from, const FilePlace& to, CopyOptions options, const struct stat& source,
             struct stat& made)
{
    char content[PATH_MAX];
    const ssize_t length = readlinkat(from.folder, from.name.c_str(), content, sizeof content - 1);
    if (length < 0)
        return errno;
    content[length] = 0;
    const FilePlace first = options.replace ? FilePlace{to.folder, PartName(), ""} : to;
    if (symlinkat(content, first.folder, first.name.c_str()) != 0)
        return errno;
    if (options.keeps == CopyKeeps::Identity &&
        fchownat(first.folder, first.name.c_str(), source.st_uid, source.st_gid, AT_SYMLINK_NOFOLLOW) != 0)
        errno = 0; // only root may
    const timespec times[] = {source.st_atim, source.st_mtim};
    utimensat(first.folder, first.name.c_str(), times, AT_SYMLINK_NOFOLLOW);
    if (options.replace && renameat(first.folder, first.name.c_str(), to.folder, to.name.c_str()) != 0)
    {
        const int error = errno;
        unlinkat(first.folder, first.name.c_str(), 0);
        return error;
    }
    return to.Status(made);
}

} // namespace

int CopyFile(const FilePlace& from, const FilePlace& to, CopyOptions options, FileWorkTalk& talk, struct stat& source,
             struct stat& made)
{
    if (const int error = from.Status(source))
        return error;
    if (S_ISLNK(source.st_mode))
        return CopyLink(from, to, options, source, made);
    if (!S_ISREG(source.st_mode))
        return kErrorSpecial;
    return CopyRegular(from, to, options, talk, source, made);
}

void CopyAttributes(int source, int target, CopyKeeps keeps)
{
    const GFileCopyFlags flags = keeps == CopyKeeps::Identity ? G_FILE_COPY_ALL_METADATA : G_FILE_COPY_NONE;
    g_file_copy_attributes(FileOf(source).get(), FileOf(target).get(), flags, nullptr, nullptr);
    struct stat from;
    struct stat to;
    if (fstat(source, &from) != 0 || fstat(target, &to) != 0)
        return;
    // A program that runs as its owner must not come to run as another.
    constexpr mode_t kRunsAsOwner = S_ISUID | S_ISGID;
    const bool sameOwner = from.st_uid == to.st_uid && from.st_gid == to.st_gid;
    fchmod(target, from.st_mode & 07777 & ~(sameOwner || S_ISDIR(from.st_mode) ? 0 : kRunsAsOwner));
    const timespec times[] = {from.st_atim, from.st_mtim}; // GIO's are rounded
    futimens(target, times);
}

void RemoveLeftovers(const OpenFolder& folder)
{
    constexpr std::time_t kMoment = 60; ///< seconds; a link has its hidden name for less
    std::vector<std::string> names;
    folder.List(names);
    for (const std::string& name : names)
    {
        if (!name.starts_with(kPartPrefix) || !name.ends_with(kPartSuffix))
            continue;
        struct stat status;
        const FilePlace place = folder.At(name);
        const UniqueFd file(openat(place.folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        const bool isAbandoned = file ? flock(file.Get(), LOCK_EX | LOCK_NB) == 0
                                      : place.Status(status) == 0 && S_ISLNK(status.st_mode) &&
                                            status.st_ctim.tv_sec + kMoment < std::time(nullptr);
        if (isAbandoned)
            unlinkat(place.folder, name.c_str(), 0);
    }
}

} // namespace platform
