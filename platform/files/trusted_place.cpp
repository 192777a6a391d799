// Walking down to a folder from the root, stopping at the first step onto foreign ground.
#include "platform/files/trusted_place.h"

#include "platform/base/xdg_folders.h"

#include <array>
#include <fcntl.h>
#include <sys/sysmacros.h>

namespace platform
{

namespace
{

dev_t DeviceOf(const std::optional<struct statx>& status)
{
    return status ? makedev(status->stx_dev_major, status->stx_dev_minor) : dev_t{0};
}

bool IsTrustedFolder(const std::string& path)
{
    const std::optional<struct statx> status = KnownStatus(path);
    return status && S_ISDIR(status->stx_mode) && OnTrustedDevice(*status);
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

bool OnTrustedDevice(const struct statx& status)
{
    static const std::array trusted{DeviceOf(KnownStatus("/")), DeviceOf(KnownStatus(DataHome()))};
    const dev_t device = DeviceOf(status);
    return device == trusted[0] || device == trusted[1];
}

bool InTrustedPlace(const std::string& path)
{
    for (std::size_t end = path.find('/', 1); end != path.npos; end = path.find('/', end + 1))
        if (!IsTrustedFolder(path.substr(0, end)))
            return false;
    return path.empty() || IsTrustedFolder(path);
}

} // namespace platform
