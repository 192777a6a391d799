// The folder object's operations.
#include "platform/shell/shell_folder.h"

#include "platform/base/deferred.h"
#include "platform/base/fault_points.h"
#include "platform/base/text.h"
#include "platform/shell/change_notify.h"
#include "platform/shell/context_menu.h"
#include "platform/files/applications_menu.h"
#include "platform/files/folder_reading.h"
#include "platform/files/folder_snapshot.h"
#include "platform/files/names.h"
#include "platform/shell/folder_drop_target.h"
#include "platform/shell/item_data.h"
#include "platform/shell/item_enumerator.h"
#include "platform/shell/rename_item.h"
#include "platform/shell/system_images.h"

#include <cstring>

namespace platform
{

namespace
{

LPWSTR NameOfItem(const std::string& folder, PCUITEMID_CHILD list, const ItemId& item, SHGDNF flags)
{
    if ((flags & SHGDN_FORPARSING) == 0)
        return (flags & SHGDN_FOREDITING) != 0 ? TaskString(EditingName(item)) : TaskStringOfDisplayName(item);
    if ((flags & SHGDN_INFOLDER) != 0)
        return TaskStringOfFileName(MenuProgramId(item.name));
    std::string path = folder;
    return AppendListPath(path, list) ? TaskString(ShellPathFromPosix(path)) : nullptr;
}

/// Looks again at a folder that was shown as its snapshot has it.
void VerifyListing(const FolderListing& shown)
{
    if (!StillHolds(shown, FolderHasChanged))
        FolderHasChanged(shown.path);
}

/// Null when one of them is no file: a category of the applications menu.
IDataObject* DataOf(const std::string& folder, PCUITEMID_CHILD_ARRAY items, const std::vector<VerbItem>& files)
{
    std::vector<DataItem> dataItems;
    for (const VerbItem& file : files)
    {
        if (file.kind == ItemKind::Category)
            return nullptr;
        dataItems.push_back({*items++, file.path});
    }
    return MakeItemData(folder, dataItems);
}

LPWSTR NameOfFolder(const std::string& folder, SHGDNF flags)
{
    const bool parsing = (flags & SHGDN_FORPARSING) != 0;
    return TaskString(folder.empty() && !parsing ? u"File System" : ShellPathFromPosix(folder.empty() ? "/" : folder));
}

} // namespace

IShellFolder* MakeShellFolder(std::string path)
{
    return new ShellFolder(std::move(path));
}

HRESULT ShellFolder::ParseDisplayName(HWND, IBindCtx*, LPWSTR name, ULONG* eaten, PIDLIST_RELATIVE* item,
                                      ULONG* attributes)
{
    if (item == nullptr)
        return E_POINTER;
    *item = nullptr;
    if (name == nullptr || name[0] == 0)
        return E_INVALIDARG;
    if (FaultPoint("IShellFolder::ParseDisplayName"))
        return E_OUTOFMEMORY;
    const HRESULT result = ParsePath(m_path, name, item);
    if (SUCCEEDED(result) && eaten != nullptr)
        *eaten = static_cast<ULONG>(std::u16string_view(name).size());
    if (SUCCEEDED(result) && attributes != nullptr)
    {
        const std::optional<ItemId> last = LastItem(*item);
        *attributes &= last ? AttributesOf(*last) : SFGAO_FOLDER | SFGAO_FILESYSTEM;
    }
    return result;
}

HRESULT ShellFolder::EnumObjects(HWND, SHCONTF flags, IEnumIDList** result)
{
    if (result == nullptr)
        return E_POINTER;
    *result = nullptr;
    if (FaultPoint("IShellFolder::EnumObjects"))
        return E_OUTOFMEMORY;
    const std::shared_ptr<FolderListing> listing = ReadFolderWithin(m_path, FolderHasChanged);
    if (listing->error != 0)
        return ResultFromErrno(listing->error);
    *result = new ItemEnumerator(listing, flags);
    FolderWasRead(*listing);
    if (listing->worthSaving)
        Defer(AtExit::Do, [listing] { SaveSnapshot(*listing); });
    else if (listing->fromSnapshot && !listing->lastSeen)
        Defer(AtExit::Drop, [listing] { VerifyListing(*listing); });
    return S_OK;
}

HRESULT ShellFolder::BindToObject(PCUIDLIST_RELATIVE item, IBindCtx*, REFIID iid, void** result)
{
    if (result == nullptr)
        return E_POINTER;
    *result = nullptr;
    const std::optional<ItemId> last = LastItem(item);
    std::string path = m_path;
    if (!last || !AppendListPath(path, item))
        return E_INVALIDARG;
    if (FaultPoint("IShellFolder::BindToObject"))
        return E_OUTOFMEMORY;
    if (last->kind != ItemKind::Folder && last->kind != ItemKind::Category && last->kind != ItemKind::Link)
        return E_FAIL;
    IShellFolder* folder = MakeShellFolder(std::move(path));
    const HRESULT bound = folder->QueryInterface(iid, result);
    folder->Release();
    return bound;
}

HRESULT ShellFolder::BindToStorage(PCUIDLIST_RELATIVE, IBindCtx*, REFIID, void** result)
{
    if (result != nullptr)
        *result = nullptr;
    return E_NOTIMPL;
}

HRESULT ShellFolder::CompareIDs(LPARAM, PCUIDLIST_RELATIVE, PCUIDLIST_RELATIVE)
{
    return E_NOTIMPL;
}

HRESULT ShellFolder::CreateViewObject(HWND owner, REFIID iid, void** result)
{
    if (result == nullptr)
        return E_POINTER;
    *result = nullptr;
    if (FaultPoint("IShellFolder::CreateViewObject"))
        return E_OUTOFMEMORY;
    const bool writable = CanBeWrittenInto(m_path);
    const std::string path = m_path.empty() ? "/" : m_path;
    const std::string name = m_path.substr(m_path.rfind('/') + 1);
    if (iid == IID_IDropTarget && writable)
        *result = MakeFolderDropTarget(owner, path);
    else if (iid == IID_IContextMenu && writable)
        *result = MakeBackgroundMenu(owner, {path, DisplayNameOfFile(name, ItemKind::Folder), ItemKind::Folder});
    else if (iid == IID_IContextMenu)
        *result = MakeBackgroundMenu(owner, {m_path, MenuFolderName(m_path), ItemKind::Category, true});
    return *result != nullptr ? S_OK : E_NOINTERFACE;
}

HRESULT ShellFolder::GetAttributesOf(UINT count, PCUITEMID_CHILD_ARRAY items, SFGAOF* attributes)
{
    if (attributes == nullptr || (items == nullptr && count != 0))
        return E_INVALIDARG;
    if (FaultPoint("IShellFolder::GetAttributesOf"))
        return E_OUTOFMEMORY;
    if (count == 0)
        *attributes &= IsMenuPath(m_path) ? SFGAO_FOLDER : SFGAO_FOLDER | SFGAO_FILESYSTEM;
    for (UINT i = 0; i < count; ++i)
    {
        const std::optional<ItemId> item = LastItem(items[i]);
        if (!item)
            return E_INVALIDARG;
        *attributes &= AttributesOf(*item);
    }
    return S_OK;
}

HRESULT ShellFolder::GetUIObjectOf(HWND owner, UINT count, PCUITEMID_CHILD_ARRAY items, REFIID iid, UINT*,
                                   void** result)
{
    if (result == nullptr)
        return E_POINTER;
    *result = nullptr;
    if (count == 0 || items == nullptr)
        return E_INVALIDARG;
    if (FaultPoint("IShellFolder::GetUIObjectOf"))
        return E_OUTOFMEMORY;
    std::vector<VerbItem> verbItems;
    for (UINT i = 0; i < count; ++i)
    {
        std::string path = m_path;
        const std::optional<ItemId> last = LastItem(items[i]);
        if (!last || !AppendListPath(path, items[i]))
            return E_INVALIDARG;
        verbItems.push_back({std::move(path), last->DisplayName(), last->kind, !CanBeWrittenInto(m_path)});
    }
    if (iid == IID_IContextMenu)
        *result = MakeContextMenu(owner, std::move(verbItems));
    else if (iid == IID_IDataObject)
        *result = DataOf(m_path, items, verbItems);
    return *result != nullptr ? S_OK : E_NOINTERFACE;
}

HRESULT ShellFolder::GetDisplayNameOf(PCUITEMID_CHILD item, SHGDNF flags, STRRET* name)
{
    if (name == nullptr || item == nullptr)
        return E_INVALIDARG;
    if (FaultPoint("IShellFolder::GetDisplayNameOf"))
        return E_OUTOFMEMORY;
    const std::optional<ItemId> last = LastItem(item);
    if (!last && !IsEmptyList(item))
        return E_INVALIDARG;
    name->uType = STRRET_WSTR;
    name->pOleStr = last ? NameOfItem(m_path, item, *last, flags) : NameOfFolder(m_path, flags);
    return name->pOleStr != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT ShellFolder::SetNameOf(HWND owner, PCUITEMID_CHILD item, LPCWSTR name, SHGDNF flags, PITEMID_CHILD* result)
{
    if (result != nullptr)
        *result = nullptr;
    std::string path = m_path;
    const ItemListPtr copy(ILClone(item)); // messages may be dispatched meanwhile, and the caller's list freed
    const std::optional<ItemId> last = LastItem(copy.get());
    if (name == nullptr || !last || !AppendListPath(path, copy.get()))
        return E_INVALIDARG;
    if (FaultPoint("IShellFolder::SetNameOf"))
        return E_OUTOFMEMORY;
    const std::u16string text = name;
    return RenameItem(owner, path.substr(0, path.rfind('/')), *last, text, (flags & SHGDN_FORPARSING) != 0, result);
}

} // namespace platform
