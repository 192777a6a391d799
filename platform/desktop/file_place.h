// Names within open folders: what file work looks at and changes.
#pragma once

#include "platform/base/unique_fd.h"

#include <cstdint>
#include <string>
#include <sys/stat.h>
#include <unordered_map>
#include <vector>

namespace platform
{

/// A name within an open folder. Everything is done relative to open folders: one that is renamed or replaced by a link
/// meanwhile leads nowhere else.
struct FilePlace
{
    int folder = -1;
    std::string name;
    std::string path; ///< for the user

    /// Status of the name itself, a link not followed; 0 or an errno.
    int Status(struct stat& status) const;
};

struct OpenFolder
{
    UniqueFd fd;
    std::string path;

    /// 0 or an errno. A symbolic link is not followed.
    int Open(const FilePlace& place);
    /// Follows links.
    int Open(const std::string& absolutePath);
    FilePlace At(const std::string& name) const;
    /// The names in the folder, in order; 0 or an errno.
    int List(std::vector<std::string>& names) const;
};

/// The place that an absolute path names, whose folder is opened for it. EINVAL for "/".
int PlaceOf(const std::string& absolutePath, OpenFolder& folder, FilePlace& place);

inline bool IsSameFile(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// Whether `folder` is the folder with this status, or lies within it. Goes up by "..", which leads out of a bind mount
/// as well.
bool LiesWithin(const OpenFolder& folder, const struct stat& outer);

/// Gives a file another name, possibly in another folder of the same file system, never that of an existing one.
int RenameToFree(const FilePlace& from, const FilePlace& to);

/// Files told by device, inode and, of all but folders, size and modification time: as they were when they were added.
class FileSet
{
public:
    void Add(const struct stat& status) { m_files[KeyOf(status)] = true; }
    /// A folder that is looked into and stays.
    void AddPassed(const struct stat& status) { m_files.try_emplace(KeyOf(status), false); }
    /// Deletes those of the files that lie in the place, and their folders when these are empty then. What has changed
    /// or was never added stays. The first failure's errno, or 0.
    int Remove(const FilePlace& place) const;
    void Clear() { m_files.clear(); }

private:
    struct Key
    {
        dev_t device;
        ino_t inode;
        std::int64_t size;
        std::int64_t modified;
        bool operator==(const Key&) const = default;
    };
    struct Hash
    {
        std::size_t operator()(const Key& key) const { return key.inode * 31 + key.device; }
    };
    static Key KeyOf(const struct stat& status);

    std::unordered_map<Key, bool, Hash> m_files; ///< whether it is to be removed itself
};

} // namespace platform
