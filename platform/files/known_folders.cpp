// Finding the folders of the desktop and the start menu.
#include "platform/files/known_folders.h"

#include "platform/base/file_content.h"
#include "platform/base/xdg_folders.h"

#include <algorithm>
#include <cstring>
#include <dirent.h>
#include <string_view>
#include <sys/stat.h>

namespace platform
{

namespace
{

/// `"$HOME/Desktop"` or `"/srv/desk"`, with backslash escapes, as xdg-user-dirs writes it; "" for anything else.
std::string UnquoteUserFolder(std::string_view value)
{
    if (value.size() < 2 || value.front() != '"')
        return {};
    value.remove_prefix(1);
    std::string path;
    constexpr std::string_view kHome = "$HOME";
    const bool belowHome = value.starts_with(kHome) && value.find_first_of("/\"", kHome.size()) == kHome.size();
    if (belowHome)
    {
        path = HomeFolder();
        value.remove_prefix(kHome.size());
    }
    for (; !value.empty() && value.front() != '"'; value.remove_prefix(1))
    {
        if (value.front() == '\\' && value.size() > 1)
            value.remove_prefix(1);
        path += value.front();
    }
    path.resize(path.find_last_not_of('/') + 1);
    return path.starts_with('/') ? path : "";
}

/// The folder that user-dirs.dirs names under `key`, such as "XDG_DESKTOP_DIR"; "" when it names none.
std::string UserFolder(const char* key)
{
    const FileContent file(ConfigHome() + "/user-dirs.dirs");
    std::string_view rest = file.Content();
    std::string folder;
    while (!rest.empty())
    {
        std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        if (line.starts_with(key) && line.substr(std::strlen(key)).starts_with('='))
            folder = UnquoteUserFolder(line.substr(std::strlen(key) + 1)); // the last line of a key counts
    }
    return folder;
}

bool HasEntries(const std::string& folder)
{
    DIR* directory = opendir(folder.c_str());
    if (directory == nullptr)
        return false;
    int entries = 0;
    while (entries < 3 && readdir(directory) != nullptr)
        ++entries;
    closedir(directory);
    return entries > 2; // "." and ".." are always there
}

bool IsFolder(const std::string& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

std::string DesktopFolder()
{
    const std::string folder = UserFolder("XDG_DESKTOP_DIR");
    return folder.empty() ? HomeFolder() + "/Desktop" : folder;
}

bool IsHome(const std::string& folder)
{
    return folder == HomeFolder();
}

bool MakeDesktopFolder(const std::string& folder)
{
    const std::string home = HomeFolder();
    return !home.empty() && folder.starts_with(home + "/") && MakeFolders(folder);
}

std::string UserStartMenu()
{
    const std::string folder = DataHome() + "/applications";
    MakeFolders(folder);
    return folder;
}

std::string CommonStartMenu()
{
    std::string fallback;
    std::vector<std::string> folders = DataFolders();
    folders.erase(folders.begin());
    for (const std::string& data : folders)
    {
        const std::string folder = data + "/applications";
        if (HasEntries(folder))
            return folder;
        if (fallback.empty() && IsFolder(folder))
            fallback = folder;
    }
    return fallback;
}

} // namespace platform
