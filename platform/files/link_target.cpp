// Looking at link targets.
#include "platform/files/link_target.h"

#include "platform/files/bounded_call.h"

namespace platform
{

namespace
{

/// The fields that descriptions are stamped with.
struct stat FromStatx(const struct statx& from)
{
    struct stat status = {};
    status.st_mode = from.stx_mode;
    status.st_ino = from.stx_ino;
    status.st_size = static_cast<off_t>(from.stx_size);
    status.st_mtim = {from.stx_mtime.tv_sec, from.stx_mtime.tv_nsec};
    status.st_ctim = {from.stx_ctime.tv_sec, from.stx_ctime.tv_nsec};
    return status;
}

} // namespace

std::optional<struct stat> TargetOf(const std::string& path, TrustedWalk& walk)
{
    const Whereabouts target = walk.Follow(path);
    if (target.error != 0)
        return (struct stat){};
    if (target.foreign && !S_ISDIR(target.status.stx_mode)) // what is mounted on a folder does not matter
        return std::nullopt;
    return FromStatx(target.status);
}

std::vector<std::optional<struct stat>> AskWithPatience(std::vector<std::string> paths)
{
    constexpr std::chrono::milliseconds kPatience{200};
    using Answers = std::vector<std::optional<struct stat>>;
    struct Progress
    {
        std::mutex mutex;
        Answers answers;
    };
    const auto progress = std::make_shared<Progress>();
    progress->answers.resize(paths.size());
    CallWithin<Progress>(kPatience,
                         [progress, paths = std::move(paths)]
                         {
                             for (std::size_t i = 0; i < paths.size(); ++i)
                             {
                                 struct stat status;
                                 if (stat(paths[i].c_str(), &status) != 0)
                                     status = {};
                                 const std::lock_guard lock(progress->mutex);
                                 progress->answers[i] = status;
                             }
                             return progress;
                         });
    const std::lock_guard lock(progress->mutex);
    return progress->answers;
}

} // namespace platform
