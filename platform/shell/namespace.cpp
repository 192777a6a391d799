// Parsing, binding and naming in the shell name space.
#include "platform/shell/namespace.h"

#include "shlwapi.h"

#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/base/text.h"
#include "platform/files/applications_menu.h"
#include "platform/files/folder_reading.h"
#include "platform/files/names.h"
#include "platform/shell/system_images.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace platform
{

namespace
{

/// A terminated string of `units` units yet to be written; null when out of memory.
LPWSTR AllocateString(std::size_t units)
{
    auto* text = static_cast<LPWSTR>(CoTaskMemAlloc((units + 1) * sizeof(WCHAR)));
    if (text != nullptr)
        text[units] = 0;
    return text;
}

} // namespace

LPWSTR TaskString(std::u16string_view text)
{
    LPWSTR copy = AllocateString(text.size());
    if (copy != nullptr)
        text.copy(copy, text.size());
    return copy;
}

LPWSTR TaskStringOfFileName(std::string_view name)
{
    LPWSTR text = AllocateString(name.size());
    if (text == nullptr || CopyPlainName(name, text))
        return text;
    CoTaskMemFree(text);
    return TaskString(ShellNameFromFileName(name));
}

LPWSTR TaskStringOfDisplayName(const ItemId& item)
{
    if (item.displayUnits == 0)
        return TaskString(item.DisplayName());
    LPWSTR text = AllocateString(item.displayUnits);
    if (text != nullptr)
        item.CopyDisplay(text);
    return text;
}

HRESULT ResultFromErrno(int error)
{
    if (error == ENOENT)
        return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
    return error == ENOMEM ? E_OUTOFMEMORY : HRESULT_FROM_WIN32(ErrorFromErrno(error));
}

void AppendFolderId(std::vector<BYTE>& bytes, std::string_view name)
{
    const ItemId item{ItemKind::Folder, SystemImageIndex(kFolderIcon), TypeNameIndex(kFolderTypeName), name};
    AppendItemId(bytes, item, {});
}

void AppendMenuRootId(std::vector<BYTE>& bytes, std::string_view root)
{
    const ItemId item{ItemKind::Category, SystemImageIndex("start-here\nfolder\n!folder"),
                      TypeNameIndex(kFolderTypeName), root};
    AppendItemId(bytes, item, kMenuTitle);
}

std::u16string MenuFolderName(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == path.npos)
        return std::u16string(kMenuTitle);
    const std::shared_ptr<FolderListing> category = ReadFileWithin(path.substr(0, slash), path.substr(slash + 1));
    return category->error == 0 ? std::u16string(category->files.front().display)
                                : DisplayNameOfFile(path.substr(slash + 1), ItemKind::Category);
}

int AppendFileId(std::vector<BYTE>& bytes, const std::string& folder, const std::string& name)
{
    const std::shared_ptr<FolderListing> listing = ReadFileWithin(folder, name);
    if (listing->error != 0)
        return listing->error;
    const ListedFile& file = listing->files.front();
    const ItemId item{file.kind, SystemImageIndex(file.icon), TypeNameIndex(file.typeName), file.name};
    return AppendItemId(bytes, item, file.display) ? 0 : ENAMETOOLONG;
}

HRESULT ParsePath(const std::string& folder, std::u16string_view shellPath, LPITEMIDLIST* list)
{
    std::vector<std::string> names = SplitPath(PosixFromShellPath(shellPath));
    std::vector<BYTE> bytes;
    std::string parent = folder;
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        if (parent.empty() && IsMenuRoot(names[i]))
        {
            AppendMenuRootId(bytes, names[i]);
            parent = names[i];
            continue;
        }
        if (i + 1 < names.size() && !IsMenuPath(parent))
            AppendFolderId(bytes, names[i]);
        else if (const int error = AppendFileId(bytes, parent, names[i]); error != 0)
            return ResultFromErrno(error);
        parent += '/';
        parent += names[i];
    }
    *list = MakeItemList(bytes.data(), bytes.size());
    return *list != nullptr ? S_OK : E_OUTOFMEMORY;
}

SFGAOF AttributesOf(const ItemId& item)
{
    switch (item.kind)
    {
    case ItemKind::Folder:
        return SFGAO_FILESYSTEM | SFGAO_FOLDER;
    case ItemKind::File:
        return SFGAO_FILESYSTEM | SFGAO_STREAM;
    case ItemKind::Link:
    case ItemKind::DesktopEntry:
        return SFGAO_FILESYSTEM | SFGAO_STREAM | SFGAO_LINK;
    case ItemKind::Category:
        return SFGAO_FOLDER;
    case ItemKind::Other:
        break;
    }
    return SFGAO_FILESYSTEM;
}

bool CanBeWrittenInto(std::string_view folder)
{
    return !IsMenuPath(folder);
}

std::optional<ItemId> LastItem(LPCITEMIDLIST list)
{
    return list != nullptr && !IsEmptyList(list) ? ReadItemId(ILFindLastID(list)) : std::nullopt;
}

} // namespace platform

HRESULT SHGetDesktopFolder(IShellFolder** folder)
{
    if (folder == nullptr)
        return E_POINTER;
    *folder = platform::FaultPoint("SHGetDesktopFolder") ? nullptr : platform::MakeShellFolder({});
    return *folder != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT SHParseDisplayName(LPCWSTR name, IBindCtx*, LPITEMIDLIST* list, SFGAOF attributesIn, SFGAOF* attributesOut)
{
    if (list == nullptr)
        return E_POINTER;
    *list = nullptr;
    if (attributesOut != nullptr)
        *attributesOut = 0;
    if (name == nullptr)
        return E_INVALIDARG;
    if (platform::FaultPoint("SHParseDisplayName"))
        return E_OUTOFMEMORY;
    if (name[0] != u'\\' && !platform::IsMenuPath(platform::PosixFromShellPath(name)))
        return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND); // only whole paths name something here
    const HRESULT result = platform::ParsePath({}, name, list);
    if (SUCCEEDED(result) && attributesOut != nullptr)
    {
        const auto item = platform::LastItem(*list);
        *attributesOut = attributesIn & (item ? platform::AttributesOf(*item) : SFGAO_FOLDER | SFGAO_FILESYSTEM);
    }
    return result;
}

HRESULT SHBindToParent(LPCITEMIDLIST list, REFIID iid, void** parent, LPCITEMIDLIST* last)
{
    if (parent == nullptr)
        return E_POINTER;
    *parent = nullptr;
    if (list == nullptr || platform::IsEmptyList(list))
        return E_INVALIDARG;
    if (platform::FaultPoint("SHBindToParent"))
        return E_OUTOFMEMORY;
    LPCITEMIDLIST lastId = ILFindLastID(list);
    std::string path;
    if (!platform::AppendListPath(path, list, lastId))
        return E_INVALIDARG;
    IShellFolder* folder = platform::MakeShellFolder(path);
    if (folder == nullptr)
        return E_OUTOFMEMORY;
    const HRESULT result = folder->QueryInterface(iid, parent);
    folder->Release();
    if (SUCCEEDED(result) && last != nullptr)
        *last = lastId;
    return result;
}

BOOL SHGetPathFromIDListW(LPCITEMIDLIST list, LPWSTR path)
{
    std::string posix;
    if (path == nullptr || list == nullptr || platform::FaultPoint("SHGetPathFromIDListW"))
        return FALSE;
    path[0] = 0;
    if (!platform::AppendListPath(posix, list))
        return FALSE;
    const std::u16string text = platform::ShellPathFromPosix(posix.empty() ? "/" : posix);
    if (text.size() >= MAX_PATH)
        return FALSE;
    std::memcpy(path, text.c_str(), (text.size() + 1) * sizeof(WCHAR));
    return TRUE;
}

HRESULT StrRetToStrW(STRRET* name, PCUITEMID_CHILD, LPWSTR* text)
{
    if (name == nullptr || text == nullptr)
        return E_INVALIDARG;
    *text = name->uType == STRRET_WSTR ? std::exchange(name->pOleStr, nullptr) : nullptr; // the memory changes hands
    return *text != nullptr ? S_OK : E_FAIL;
}

HRESULT SHStrDupW(LPCWSTR text, LPWSTR* copy)
{
    if (copy == nullptr)
        return E_POINTER;
    *copy = nullptr;
    if (text == nullptr)
        return E_INVALIDARG;
    *copy = platform::FaultPoint("SHStrDupW") ? nullptr : platform::TaskString(text);
    return *copy != nullptr ? S_OK : E_OUTOFMEMORY;
}

LPWSTR PathFindFileNameW(LPCWSTR path)
{
    LPCWSTR name = path;
    for (LPCWSTR unit = path; unit != nullptr && *unit != 0; ++unit)
    {
        const bool separates = *unit == u'\\' || *unit == u'/' || *unit == u':';
        if (separates && unit[1] != 0 && unit[1] != u'\\' && unit[1] != u'/')
            name = unit + 1;
    }
    return const_cast<LPWSTR>(name);
}
