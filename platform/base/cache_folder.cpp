// The cache folder and its files.
#include "platform/base/cache_folder.h"

#include "platform/base/file_content.h"
#include "platform/base/product.h"
#include "platform/base/xdg_folders.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform
{
namespace
{

bool IsOwnAlone(const struct stat& status)
{
    return status.st_uid == geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

std::string MakeCacheFolder()
{
    const std::string folder = CacheHome() + "/" ORB_PRODUCT;
    struct stat status;
    const bool trusted = MakeFolders(folder) && stat(folder.c_str(), &status) == 0 && IsOwnAlone(status);
    return trusted ? folder : std::string();
}

} // namespace

const std::string& CacheFolder()
{
    static const std::string& folder = *new std::string(MakeCacheFolder());
    return folder;
}

UniqueFd OpenCacheFile(const std::string& path)
{
    UniqueFd file = OpenFile(path);
    struct stat status;
    const bool trusted = file && fstat(file.Get(), &status) == 0 && IsOwnAlone(status);
    return trusted ? std::move(file) : UniqueFd();
}

bool ReplaceCacheFile(const std::string& path, std::string_view content)
{
    std::string temporary = path + ".XXXXXX";
    UniqueFd file(mkostemp(temporary.data(), O_CLOEXEC));
    if (!file)
        return false;
    const bool written = WriteAll(file.Get(), content);
    if (file.Close() && written && std::rename(temporary.c_str(), path.c_str()) == 0)
        return true;
    unlink(temporary.c_str());
    return false;
}

} // namespace platform
