// Looking at and changing names within open folders.
#include "platform/desktop/file_place.h"

#include "platform/base/file_stamp.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>

namespace platform
{

namespace
{

int ErrnoUnless(bool success)
{
    return success ? 0 : errno;
}

struct CloseFolder
{
    void operator()(DIR* folder) const { closedir(folder); }
};

/// For file systems that cannot rename without replacing. A second name is as good, where there are second names.
int LinkAndUnlink(const FilePlace& from, const FilePlace& to)
{
    if (linkat(from.folder, from.name.c_str(), to.folder, to.name.c_str(), 0) != 0)
        return errno;
    if (unlinkat(from.folder, from.name.c_str(), 0) == 0)
        return 0;
    const int error = errno;
    unlinkat(to.folder, to.name.c_str(), 0);
    return error;
}

} // namespace

int FilePlace::Status(struct stat& status) const
{
    return ErrnoUnless(fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0);
}

int OpenFolder::Open(const FilePlace& place)
{
    fd = UniqueFd(openat(place.folder, place.name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    path = place.path;
    return ErrnoUnless(static_cast<bool>(fd));
}

int OpenFolder::Open(const std::string& absolutePath)
{
    fd = UniqueFd(open(absolutePath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    path = absolutePath;
    return ErrnoUnless(static_cast<bool>(fd));
}

FilePlace OpenFolder::At(const std::string& name) const
{
    return {fd.Get(), name, path == "/" ? path + name : path + "/" + name};
}

int OpenFolder::List(std::vector<std::string>& names) const
{
    const int copy = openat(fd.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, CloseFolder> listing(copy >= 0 ? fdopendir(copy) : nullptr);
    if (listing == nullptr)
        return errno;
    errno = 0;
    while (const dirent* entry = readdir(listing.get()))
    {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
        errno = 0;
    }
    std::sort(names.begin(), names.end());
    return errno;
}

int PlaceOf(const std::string& absolutePath, OpenFolder& folder, FilePlace& place)
{
    std::string path = absolutePath;
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    const std::size_t slash = path.rfind('/');
    if (slash == path.npos || slash + 1 == path.size())
        return EINVAL;
    const std::string name = path.substr(slash + 1);
    if (name == "." || name == "..")
        return EINVAL;
    const int error = folder.Open(slash == 0 ? "/" : path.substr(0, slash));
    place = folder.At(name);
    return error;
}

bool LiesWithin(const OpenFolder& folder, const struct stat& outer)
{
    struct stat status;
    if (fstat(folder.fd.Get(), &status) != 0)
        return false;
    UniqueFd at(openat(folder.fd.Get(), ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
    while (at && !IsSameFile(status, outer))
    {
        const struct stat below = status;
        at = UniqueFd(openat(at.Get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!at || fstat(at.Get(), &status) != 0 || IsSameFile(status, below))
            return false;
    }
    return static_cast<bool>(at);
}

int RenameToFree(const FilePlace& from, const FilePlace& to)
{
    if (renameat2(from.folder, from.name.c_str(), to.folder, to.name.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    const int error = LinkAndUnlink(from, to);
    if (error == 0 || error == EEXIST || error == EXDEV)
        return error;
    // A folder, or a file system without second names: a look beforehand is all there is.
    struct stat status;
    if (to.Status(status) == 0)
        return EEXIST;
    return ErrnoUnless(renameat(from.folder, from.name.c_str(), to.folder, to.name.c_str()) == 0);
}

FileSet::Key FileSet::KeyOf(const struct stat& status)
{
    if (S_ISDIR(status.st_mode))
        return {status.st_dev, status.st_ino, -1, 0};
    return {status.st_dev, status.st_ino, status.st_size, ModifiedAt(status)};
}

int FileSet::Remove(const FilePlace& place) const
{
    struct stat status;
    if (place.Status(status) != 0)
        return 0;
    const auto found = m_files.find(KeyOf(status));
    if (found == m_files.end())
        return 0;
    if (!S_ISDIR(status.st_mode))
        return ErrnoUnless(unlinkat(place.folder, place.name.c_str(), 0) == 0);
    OpenFolder folder;
    std::vector<std::string> names;
    int error = folder.Open(place);
    if (error == 0)
        error = folder.List(names);
    for (const std::string& name : names)
        if (const int failure = Remove(folder.At(name)); error == 0)
            error = failure;
    if (found->second && unlinkat(place.folder, place.name.c_str(), AT_REMOVEDIR) != 0 && errno != ENOTEMPTY &&
        errno != EEXIST && error == 0)
        error = errno;
    return error;
}

} // namespace platform
