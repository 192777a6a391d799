// The shell's calls for known folders and special locations.
#include "shlobj.h"

#include "platform/base/fault_points.h"
#include "platform/base/text.h"
#include "platform/base/xdg_folders.h"
#include "platform/files/applications_menu.h"
#include "platform/files/known_folders.h"
#include "platform/files/folder_listing.h"
#include "platform/files/names.h"
#include "platform/files/place_call.h"
#include "platform/shell/namespace.h"
#include "platform/shell/system_images.h"

#include <cerrno>
#include <sys/stat.h>

namespace platform
{

namespace
{

/// One that does not answer, or may not be looked at, is there.
bool IsFolder(const std::string& path)
{
    const auto answer =
        AskPlace<bool>(path,
                       [path]
                       {
                           struct stat status;
                           const int error = stat(path.c_str(), &status) == 0 ? 0 : errno;
                           return std::make_shared<bool>(error == 0 ? S_ISDIR(status.st_mode) : !IsGone(error));
                       });
    return answer == nullptr || *answer;
}

/// A list for a folder that shows under a name and icon of its own.
LPITEMIDLIST SpecialLocation(const std::string& path, std::u16string_view displayName, std::string_view icon)
{
    if (path.empty() || !IsFolder(path))
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
    return AppendItemId(bytes, item, displayName) ? MakeItemList(bytes.data(), bytes.size()) : nullptr;
}

/// The home folder has a name that says nothing of a desktop.
LPITEMIDLIST Desktop()
{
    const std::string folder = DesktopFolder();
    if (!folder.empty() && !IsFolder(folder) && !MakeDesktopFolder(folder))
        return nullptr;
    return SpecialLocation(folder, IsHome(folder) ? u"Desktop" : u"", "user-desktop\nfolder\n!folder");
}

/// Half of the applications menu or, on a desktop without a menu file, the folder that has the entries.
LPITEMIDLIST StartMenu(std::string_view menuRoot, std::string (*folderOfEntries)())
{
    if (MenuFile().empty())
        return SpecialLocation(folderOfEntries(), kMenuTitle, "start-here\nfolder\n!folder");
    std::vector<BYTE> bytes;
    AppendMenuRootId(bytes, menuRoot);
    return MakeItemList(bytes.data(), bytes.size());
}

LPITEMIDLIST LocationOf(int csidl)
{
    switch (csidl)
    {
    case CSIDL_DESKTOPDIRECTORY:
        return Desktop();
    case CSIDL_STARTMENU:
        return StartMenu(kUserMenu, UserStartMenu);
    case CSIDL_COMMON_STARTMENU:
        return StartMenu(kCommonMenu, CommonStartMenu);
    }
    return nullptr;
}

} // namespace

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
