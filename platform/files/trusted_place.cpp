// Walking down a path from the root, stopping at the first step onto foreign ground.
#include "platform/files/trusted_place.h"

#include "platform/base/unique_fd.h"
#include "platform/base/xdg_folders.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace platform
{

namespace
{

constexpr int kMostLinks = 40; // as in the kernel

dev_t DeviceOf(const struct statx& status)
{
    return makedev(status.stx_dev_major, status.stx_dev_minor);
}

/// Fills in the status of the file at `at.path`, whose folder is trusted; a final link is not followed.
void Look(Whereabouts& at)
{
    const std::optional<struct statx> status = KnownStatus(at.path.empty() ? "/" : at.path);
    at.error = status ? 0 : errno;
    at.status = status.value_or((struct statx){});
}

Whereabouts Root()
{
    Whereabouts root;
    Look(root);
    return root;
}

dev_t DeviceOfFolder(const std::string& path)
{
    const std::optional<struct statx> status = KnownStatus(path);
    return status ? DeviceOf(*status) : 0;
}

bool IsTrustedDevice(dev_t device)
{
    static const std::array trusted{DeviceOfFolder("/"), DeviceOfFolder("/usr"), DeviceOfFolder(DataHome())};
    return std::find(trusted.begin(), trusted.end(), device) != trusted.end();
}

Whereabouts Failure(int error)
{
    Whereabouts failure;
    failure.error = error;
    return failure;
}

bool IsLink(const Whereabouts& at)
{
    return at.error == 0 && S_ISLNK(at.status.stx_mode);
}

/// What `name` in a folder is, without following it.
Whereabouts Step(const Whereabouts& folder, std::string_view name)
{
    Whereabouts next = folder;
    const bool stays = name.empty() || name == ".";
    if (folder.foreign && !stays)
        next.status = {};
    if (folder.error != 0 || folder.foreign)
        return next;
    if (!S_ISDIR(folder.status.stx_mode))
        return Failure(ENOTDIR); // whatever the name is: a slash at the end asks for a folder, too
    if (stays)
        return next;
    if (name == "..")
        next.path.resize(next.path.empty() ? 0 : next.path.rfind('/'));
    else
        next.path.append("/").append(name);
    Look(next);
    next.foreign = next.error == 0 && !IsTrustedDevice(DeviceOf(next.status));
    return next;
}

/// The absolute path that a link's text means.
std::string PathInLink(const std::string& link)
{
    char text[PATH_MAX];
    const ssize_t size = readlink(link.c_str(), text, sizeof text);
    const std::string_view target(text, size > 0 ? static_cast<std::size_t>(size) : 0);
    return target.starts_with('/') ? std::string(target) : link.substr(0, link.rfind('/') + 1).append(target);
}

} // namespace

std::optional<struct statx> KnownStatus(const std::string& path)
{
    struct statx status;
    constexpr int kFlags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
    if (statx(AT_FDCWD, path.c_str(), kFlags, STATX_BASIC_STATS, &status) != 0)
        return std::nullopt;
    return status;
}

Whereabouts TrustedWalk::Follow(std::string path)
{
    for (int links = 0; links <= kMostLinks; ++links)
    {
        const std::size_t name = path.rfind('/') + 1;
        Whereabouts at = Step(Folder(path.substr(0, name)), std::string_view(path).substr(name));
        if (!IsLink(at))
            return at;
        path = PathInLink(at.path);
    }
    return Failure(ELOOP);
}

Whereabouts TrustedWalk::Folder(const std::string& path)
{
    const auto known = m_folders.find(path);
    if (known != m_folders.end())
        return known->second;
    Whereabouts at = Root();
    std::string rest = path;
    for (int links = 0; !rest.empty();)
    {
        const std::string name = rest.substr(0, rest.find('/'));
        rest.erase(0, name.size() + 1);
        at = Step(at, name);
        if (!IsLink(at))
            continue;
        if (++links > kMostLinks)
            return Failure(ELOOP);
        rest = PathInLink(at.path) + "/" + rest;
        at = Root();
    }
    if (at.error == 0 && !at.foreign)
        m_folders.emplace(path, at);
    return at;
}

bool IsAtHand(const std::string& path)
{
    open_how how{};
    how.flags = O_PATH | O_CLOEXEC;
    how.resolve = RESOLVE_NO_XDEV | RESOLVE_CACHED;
    return static_cast<bool>(
        UniqueFd(static_cast<int>(syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how))));
}

bool InTrustedPlace(const std::string& path)
{
    return !TrustedWalk().Follow(path.empty() ? "/" : path).foreign;
}

} // namespace platform
