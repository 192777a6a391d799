// Reading the variables that say where a user's things are kept.
#include "platform/base/xdg_folders.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <pwd.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace platform
{
namespace
{

std::string WithoutTrailingSlashes(std::string_view path)
{
    return std::string(path.substr(0, path.find_last_not_of('/') + 1));
}

std::string HomeOr(const char* variable, const char* belowHome)
{
    const char* value = std::getenv(variable);
    return value != nullptr && value[0] == '/' ? WithoutTrailingSlashes(value) : HomeFolder() + belowHome;
}

/// Adds the absolute paths of a list separated by colons.
void AddAbsolute(std::vector<std::string>& folders, std::string_view list)
{
    while (!list.empty())
    {
        const std::string_view folder = list.substr(0, list.find(':'));
        list.remove_prefix(std::min(folder.size() + 1, list.size()));
        if (folder.starts_with('/'))
            folders.push_back(WithoutTrailingSlashes(folder));
    }
}

std::vector<std::string> SystemFolders(const char* variable, const char* usual)
{
    std::vector<std::string> folders;
    if (const char* list = std::getenv(variable); list != nullptr)
        AddAbsolute(folders, list);
    if (folders.empty())
        AddAbsolute(folders, usual);
    return folders;
}

bool MakeFolder(const std::string& path)
{
    if (mkdir(path.c_str(), 0700) == 0)
        return true;
    // Some file systems refuse before they look whether it is there.
    const int error = errno;
    struct stat status;
    if (stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
        return true;
    errno = error == EEXIST ? ENOTDIR : error;
    return false;
}

} // namespace

std::string HomeFolder()
{
    if (const char* home = std::getenv("HOME"); home != nullptr && home[0] == '/')
        return WithoutTrailingSlashes(home);
    const passwd* user = getpwuid(getuid());
    return user != nullptr && user->pw_dir != nullptr ? WithoutTrailingSlashes(user->pw_dir) : std::string();
}

std::string DataHome()
{
    return HomeOr("XDG_DATA_HOME", "/.local/share");
}

std::string ConfigHome()
{
    return HomeOr("XDG_CONFIG_HOME", "/.config");
}

std::string CacheHome()
{
    return HomeOr("XDG_CACHE_HOME", "/.cache");
}

std::vector<std::string> DataFolders()
{
    std::vector<std::string> folders = SystemFolders("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    folders.insert(folders.begin(), DataHome());
    return folders;
}

std::vector<std::string> SystemConfigFolders()
{
    return SystemFolders("XDG_CONFIG_DIRS", "/etc/xdg");
}

bool MakeFolders(const std::string& path)
{
    if (MakeFolder(path))
        return true;
    const std::size_t slash = path.find_last_of('/');
    return errno == ENOENT && slash != path.npos && slash > 0 && MakeFolders(path.substr(0, slash)) && MakeFolder(path);
}

} // namespace platform
