// Renaming without replacing.
#include "platform/files/rename_file.h"

#include "platform/base/unique_fd.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

namespace platform
{

namespace
{

/// Whether both names are of one file because the file system takes no notice of letter case. Hard links are two names
/// of one file as well, but then it has more than one link.
bool IsSameName(const struct stat& from, const struct stat& to)
{
    const bool same = from.st_dev == to.st_dev && from.st_ino == to.st_ino;
    return same && (S_ISDIR(from.st_mode) || from.st_nlink == 1);
}

int PlainRename(int directory, const std::string& from, const std::string& to)
{
    return renameat(directory, from.c_str(), directory, to.c_str()) == 0 ? 0 : errno;
}

} // namespace

int RenameFile(const std::string& folder, const std::string& from, const std::string& to)
{
    const UniqueFd directory(open(folder.empty() ? "/" : folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!directory)
        return errno;
    const int place = directory.Get();
    if (renameat2(place, from.c_str(), place, to.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    const int error = errno;
    struct stat own;
    struct stat other;
    if (error == EEXIST)
    {
        const bool sameName = fstatat(place, from.c_str(), &own, AT_SYMLINK_NOFOLLOW) == 0 &&
                              fstatat(place, to.c_str(), &other, AT_SYMLINK_NOFOLLOW) == 0 && IsSameName(own, other);
        return sameName ? PlainRename(place, from, to) : EEXIST;
    }
    if (error != EINVAL && error != ENOSYS)
        return error;
    // A file system that cannot promise it: the best is to look first.
    const bool taken = fstatat(place, to.c_str(), &other, AT_SYMLINK_NOFOLLOW) == 0 || errno != ENOENT;
    return taken ? EEXIST : PlainRename(place, from, to);
}

} // namespace platform
