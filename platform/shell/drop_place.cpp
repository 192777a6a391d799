// Looking at a drop's files and folder.
#include "platform/shell/drop_place.h"

#include "platform/base/unique_fd.h"
#include "platform/files/bounded_call.h"

#include <fcntl.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace platform
{

namespace
{

using FileKey = std::pair<dev_t, ino_t>;

FileKey KeyOf(const struct stat& status)
{
    return {status.st_dev, status.st_ino};
}

/// The folder and all that it lies in, by "..", which leads out of links and bind mounts as well.
std::set<FileKey> WithItsParents(UniqueFd folder)
{
    std::set<FileKey> folders;
    struct stat status;
    while (folder && fstat(folder.Get(), &status) == 0 && folders.insert(KeyOf(status)).second)
        folder = UniqueFd(openat(folder.Get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
    return folders;
}

DropFacts Look(DropFacts facts, const std::string& folder, const std::vector<std::string>& sources)
{
    struct stat place;
    UniqueFd opened(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    facts.writable =
        opened && fstat(opened.Get(), &place) == 0 && faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
    if (!facts.writable)
        return facts;
    const std::set<FileKey> outer = WithItsParents(std::move(opened));
    facts.sameFileSystem = true;
    for (const std::string& source : sources)
    {
        struct stat status;
        if (lstat(source.c_str(), &status) != 0)
            continue; // the file work tells
        facts.sameFileSystem &= status.st_dev == place.st_dev;
        facts.intoItself |= S_ISDIR(status.st_mode) && outer.contains(KeyOf(status));
    }
    return facts;
}

} // namespace

void LookAtDrop(DropFacts& facts, const std::string& folder, const std::vector<std::string>& sources)
{
    constexpr std::chrono::milliseconds kPatience{1000};
    const auto found = CallWithin<DropFacts>(kPatience, [facts, folder, sources]
                                             { return std::make_shared<DropFacts>(Look(facts, folder, sources)); });
    if (found != nullptr)
        facts = *found;
}

} // namespace platform
