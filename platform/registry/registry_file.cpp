// Places of the hives (XDG base directory specification) and setting a file aside.
#include "platform/registry/registry_file.h"

#include "platform/base/product.h"
#include "platform/base/xdg_folders.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace platform
{
namespace
{

constexpr char kFile[] = "/" ORB_PRODUCT "/registry.db";
constexpr int kMostDamagedFiles = 1000;

std::string ParentOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos || slash == 0 ? "/" : path.substr(0, slash);
}

bool MayAccess(const std::string& path, int how)
{
    return faccessat(AT_FDCWD, path.c_str(), how, AT_EACCESS) == 0;
}

bool RenameToFree(const std::string& from, const std::string& to)
{
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    // Some file systems cannot do that in one step.
    const bool unsupported = errno == EINVAL || errno == ENOSYS;
    return unsupported && access(to.c_str(), F_OK) != 0 && std::rename(from.c_str(), to.c_str()) == 0;
}

} // namespace

std::string UserHivePath()
{
    return ConfigHome() + kFile;
}

std::string MachineHivePath()
{
    return SystemConfigFolders().front() + kFile;
}

int MakeParentFolder(const std::string& path)
{
    // What is recorded for the machine is for everybody to read; the user's own folders are for nobody else.
    std::vector<std::string> shared;
    if (path == MachineHivePath())
        for (std::string folder = ParentOf(path); access(folder.c_str(), F_OK) != 0; folder = ParentOf(folder))
            shared.push_back(folder);
    if (!MakeFolders(ParentOf(path)))
        return errno;
    for (const std::string& folder : shared)
        chmod(folder.c_str(), 0755);
    return 0;
}

bool MayWrite(const std::string& path)
{
    if (access(path.c_str(), F_OK) == 0)
    {
        // SQLite keeps its journal beside the file.
        return MayAccess(path, W_OK) && MayAccess(ParentOf(path), W_OK);
    }
    std::string folder = ParentOf(path);
    while (access(folder.c_str(), F_OK) != 0 && folder != "/")
        folder = ParentOf(folder);
    return MayAccess(folder, W_OK | X_OK);
}

bool SetFileAside(const std::string& path)
{
    for (int n = 1; n <= kMostDamagedFiles; ++n)
    {
        const std::string aside = path + ".damaged-" + std::to_string(n);
        if (RenameToFree(path, aside))
        {
            RenameToFree(path + "-journal", aside + "-journal");
            return true;
        }
        if (errno != EEXIST)
            return errno == ENOENT && access(path.c_str(), F_OK) != 0; // another process was quicker
    }
    return false;
}

} // namespace platform
