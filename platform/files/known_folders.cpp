// Where things are kept: the known folders and special locations.
#include "platform/files/known_folders.h"

#include "platform/base/cache_folder.h"
#include "platform/base/fault_points.h"
#include "platform/base/text.h"
#include "platform/base/xdg_folders.h"
#include "platform/shell/namespace.h"
#include "platform/icons/system_images.h"

#include <cstring>
#include <dirent.h>
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
    if (value.starts_with("$HOME"))
    {
        path = HomeFolder();
        value.remove_prefix(5);
    }
    for (; !value.empty() && value.front() != '"'; value.remove_prefix(1))
    {
        if (value.front() == '\\' && value.size() > 1)
            value.remove_prefix(1);
        path += value.front();
    }
    return path.starts_with('/') ? path : "";
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

std::string DesktopFolder()
{
    const std::string folder = UserFolder("XDG_DESKTOP_DIR");
    return folder.empty() ? HomeFolder() + "/Desktop" : folder;
}

std::string UserStartMenu()
{
    const std::string folder = DataHome() + "/applications";
    MakeFolders(folder);
    return folder;
}

/// The first applications folder of the system that holds anything, else the first there is.
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

/// A list for a folder that shows under a name and icon of its own.
LPITEMIDLIST SpecialLocation(const std::string& path, std::u16string_view displayName, std::string_view icon)
{
    if (!IsFolder(path))
        return nullptr;
    std::vector<BYTE> bytes;
    std::vector<std::string> names = SplitPath(path);
    if (names.empty())
        return nullptr;
    const std::string last = names.back();
    names.pop_back();
    for (const std::string& name : names)
        AppendFolderId(bytes, name);
    ItemId item{ItemKind::Folder, SystemImageIndex(icon), TypeNameIndex(kFolderTypeName), last};
    AppendItemId(bytes, item, displayName);
    return MakeItemList(bytes.data(), bytes.size());
}

LPITEMIDLIST LocationOf(int csidl)
{
    switch (csidl)
    {
    case CSIDL_DESKTOPDIRECTORY:
        return SpecialLocation(DesktopFolder(), {}, "user-desktop\nfolder\n!folder");
    // Both are called the same, which is what makes a menu show them as one entry.
    case CSIDL_STARTMENU:
        return SpecialLocation(UserStartMenu(), u"Start Menu", "start-here\nfolder\n!folder");
    case CSIDL_COMMON_STARTMENU:
        return SpecialLocation(CommonStartMenu(), u"Start Menu", "start-here\nfolder\n!folder");
    case CSIDL_APPDATA:
        return MakeFolders(DataHome()) ? SpecialLocation(DataHome(), {}, kFolderIcon) : nullptr;
    }
    return nullptr;
}

} // namespace

std::string UserFolder(const char* key)
{
    const MappedFile file(ConfigHome() + "/user-dirs.dirs");
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

} // namespace platform

HRESULT SHGetKnownFolderPath(REFKNOWNFOLDERID id, DWORD, HANDLE, LPWSTR* path)
{
    if (path == nullptr)
        return E_POINTER;
    *path = nullptr;
    if (platform::FaultPoint("SHGetKnownFolderPath"))
        return E_OUTOFMEMORY;
    if (!(id == FOLDERID_RoamingAppData))
        return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
    const std::string folder = platform::DataHome();
    if (!platform::MakeFolders(folder))
        return HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND);
    *path = platform::TaskString(platform::ShellPathFromPosix(folder));
    return *path != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT SHGetFolderLocation(HWND, int csidl, HANDLE, DWORD, LPITEMIDLIST* list)
{
    if (list == nullptr)
        return E_POINTER;
    *list = platform::FaultPoint("SHGetFolderLocation") ? nullptr : platform::LocationOf(csidl);
    return *list != nullptr ? S_OK : HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
}
