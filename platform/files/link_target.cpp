// Looking at link targets.
#include "platform/files/link_target.h"

#include "platform/files/bounded_call.h"
#include "platform/files/names.h"
#include "platform/files/trusted_place.h"

#include <climits>
#include <fcntl.h>
#include <unistd.h>

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

/// The absolute path that a link's text means in `folder`, worked out by name.
std::string TargetPath(const std::string& folder, std::string_view text)
{
    std::string path = text.starts_with('/') ? std::string(text) : folder + "/" + std::string(text);
    std::string clean;
    for (const std::string& name : SplitPath(path))
        clean.append("/").append(name);
    return clean;
}

} // namespace

bool SafeLinks::IsTrusted(const std::string& folder)
{
    const auto [place, isNew] = m_trusted.try_emplace(folder, false);
    if (isNew)
        place->second = InTrustedPlace(folder);
    return place->second;
}

std::optional<struct stat> SafeLinks::TargetOf(int directory, const char* name)
{
    char text[PATH_MAX];
    const ssize_t size = readlinkat(directory, name, text, sizeof text);
    const std::string target = TargetPath(m_folder, {text, size > 0 ? static_cast<std::size_t>(size) : 0});
    if (target.empty() || !IsTrusted(target.substr(0, target.rfind('/'))))
        return std::nullopt;
    const std::optional<struct statx> status = KnownStatus(target);
    if (!status)
        return (struct stat){};
    const bool isFolder = S_ISDIR(status->stx_mode); // what is mounted there does not matter
    if (S_ISLNK(status->stx_mode) || (!isFolder && !OnTrustedDevice(*status)))
        return std::nullopt;
    return FromStatx(*status);
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
