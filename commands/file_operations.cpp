// Operations on the files of a level: the shell does the work, the level keeps its order in step.
//
// All of them may dispatch messages, so that the level may be closing and its items be others afterwards: what the
// shell is given are clones, and an item is found again by its key. A refresh is asked for at the end, although the
// shell tells of the change: its notice puts the highlight where it is by then, not where the operation means it.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "commands/bound_item.h"
#include "commands/command_table.h"
#include "commands/kept_position.h"
#include "commands/open_dialog.h"
#include "commands/operation_scope.h"
#include "commands/rename_dialog.h"
#include "content/folder_children.h"
#include "content/item_key.h"
#include "resources/resource.h"
#include "support/resource_text.h"

#include <shellapi.h>
#include <shlwapi.h>

namespace CustomMenu
{

namespace
{

constexpr FILEOPENDIALOGOPTIONS kPickerOptions =
    FOS_FORCEFILESYSTEM | FOS_PATHMUSTEXIST | FOS_FILEMUSTEXIST | FOS_NOREADONLYRETURN | FOS_DONTADDTORECENT;
static_assert(kPickerOptions == 0x02009840);
constexpr WORD kDeleteFlags = FOF_ALLOWUNDO | FOF_NORECURSION | FOF_NO_CONNECTED_ELEMENTS;
static_assert(kDeleteFlags == 0x3040);
static_assert(sizeof(void*) != 4 || sizeof(CMINVOKECOMMANDINFO) == 36);
static_assert(sizeof(void*) != 4 || sizeof(SHELLEXECUTEINFOW) == 60);

void InvokeVerb(IContextMenu& menu, LPCSTR verb, DWORD mask = 0)
{
    CMINVOKECOMMANDINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = mask;
    info.lpVerb = verb;
    info.nShow = SW_SHOWNORMAL;
    menu.InvokeCommand(&info);
}

/// Gives what has come since `before` its place.
void PlaceNewItem(CustomBar& level, std::vector<WString> before, int position)
{
    level.InsertNewItemAt(std::move(before), level.SnapshotFolderNames(), position);
    level.m_refreshIndex = position;
    level.RequestRefresh();
}

bool PickShortcutTarget(WCHAR (&path)[MAX_PATH])
{
    const bool pickFolder = GetAsyncKeyState(VK_CONTROL) < 0;
    const WString title = ResourceText(g_instance, STRING_INSERT_SHORTCUT);
    const WString okLabel = ResourceText(g_instance, STRING_SELECT);
    OpenDialogParams params;
    params.buffer = path;
    params.bufferSize = MAX_PATH;
    params.title = title.c_str();
    params.okLabel = pickFolder ? nullptr : okLabel.c_str();
    params.options = pickFolder ? kPickerOptions | FOS_PICKFOLDERS : kPickerOptions;
    return SUCCEEDED(ShowOpenDialog(params));
}

/// Nothing else is set on the shortcut than its target, and whatever fails leaves none.
void SaveShortcut(LPCITEMIDLIST folder, LPCWSTR target)
{
    WCHAR path[MAX_PATH] = {};
    ComPtr<IShellLinkW> link;
    ComPtr<IPersistFile> file;
    if (!SHGetPathFromIDListW(folder, path) ||
        FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.ReceiveVoid())) ||
        FAILED(link->SetPath(target)) || FAILED(link->QueryInterface(IID_IPersistFile, file.ReceiveVoid())))
        return;
    const WString name = WString(path) + TEXT("\\") + PathFindFileNameW(target) + TEXT(".lnk");
    file->Save(name.c_str(), TRUE);
}

void DeleteFiles(LPCITEMIDLIST list)
{
    BoundItem item(list);
    ShellString path;
    if (!item.Bind() || !QueryName(*item.Folder(), item.Child(), SHGDN_FORPARSING, path) || !path)
        return;
    WString paths = path.Get();
    paths.push_back(0); // a list of paths ends with an empty one
    SHFILEOPSTRUCTW operation{};
    operation.wFunc = FO_DELETE;
    operation.pFrom = paths.c_str();
    operation.fFlags = kDeleteFlags;
    SHFileOperationW(&operation);
}

} // namespace

void CustomBar::InsertNewFolder(IShellFolder& folder, int position)
{
    ComPtr<IContextMenu> background;
    const OperationScope operation(*this);
    const MenuDisabled disabled(*this);
    const KeptPosition kept(*this, position);
    UniqueMenu menu(CreatePopupMenu());
    std::vector<WString> before = SnapshotFolderNames();
    if (SUCCEEDED(folder.CreateViewObject(nullptr, IID_IContextMenu, background.ReceiveVoid())) &&
        SUCCEEDED(background->QueryContextMenu(menu.Get(), 0, 1, IDM_SHELL_LAST, CMF_NORMAL)))
        InvokeVerb(*background.Get(), "NewFolder", CMIC_MASK_NOASYNC);
    menu.Reset();
    PlaceNewItem(*this, std::move(before), kept.Now());
}

void CustomBar::InsertShortcut(int position)
{
    if (position < 0 || position > ItemCount())
        return;
    const MenuDisabled disabled(*this);
    const KeptPosition kept(*this, position);
    WCHAR target[MAX_PATH] = {};
    if (!PickShortcutTarget(target))
        return;
    std::vector<WString> before = SnapshotFolderNames();
    SaveShortcut(m_sourceFolders[0].Get(), target);
    PlaceNewItem(*this, std::move(before), kept.Now());
}

void CustomBar::RenameItem(int index, IShellFolder& folder, LPCITEMIDLIST childId, POINT point)
{
    if (!HasItem(index))
        return;
    const OperationScope operation(*this);
    const std::uint32_t key = m_items[index].key;
    ShellString editingName;
    QueryName(folder, childId, SHGDN_FOREDITING, editingName);
    g_launcher.m_renameText = editingName ? editingName.Get() : m_items[index].name.Get();
    g_launcher.m_renamePosition = point;
    const MenuDisabled disabled(*this);
    ItemList renamed;
    ShellString parsingName;
    if (!ShowRenameDialog() ||
        FAILED(folder.SetNameOf(nullptr, childId, g_launcher.m_renameText.c_str(), SHGDN_INFOLDER | SHGDN_FOREDITING,
                                renamed.Receive())) ||
        !QueryName(folder, renamed.Get(), SHGDN_INFOLDER | SHGDN_FORPARSING, parsingName) || !parsingName)
        return;
    index = FindAgain(m_items, index, key);
    if (index < 0)
        return;
    m_items[index].name = ShellText(g_launcher.m_renameText.c_str());
    m_items[index].key = ItemKeyInPlace(parsingName.Get());
    SaveLayout();
    m_refreshIndex = index;
    RequestRefresh();
}

void CustomBar::DeleteItemFiles(int index)
{
    if (!HasItem(index))
        return;
    const OperationScope operation(*this);
    const int highlight = HighlightAfter("delete", index, ItemCount());
    const BoundItem first(m_items[index].pidl.Get());
    const BoundItem second(m_items[index].pidl2.Get());
    const MenuDisabled disabled(*this);
    DeleteFiles(first.List());
    DeleteFiles(second.List());
    SaveLayout();
    m_refreshIndex = highlight;
    RequestRefresh();
}

void CustomBar::PasteItems(int index)
{
    const LevelRef held(*this);
    const bool intoItem = HasItem(index) && m_items[index].Is(MIF_FOLDER) && m_items[index].pidl;
    BoundItem target(intoItem ? m_items[index].pidl.Get() : m_sourceFolders[0].Get());
    if (!target.Bind())
        return;
    const ComPtr<IContextMenu> menu = target.ContextMenu();
    if (!menu)
        return;
    const KeptPosition kept(*this, index);
    std::vector<WString> before = SnapshotFolderNames();
    InvokeVerb(*menu.Get(), "paste");
    PlaceNewItem(*this, std::move(before), kept.Now());
}

void CustomBar::CopyOrCutItem(int index, LPCSTR verb)
{
    const LevelRef held(*this);
    BoundItem item(m_items[index].pidl.Get());
    if (!item.Bind())
        return;
    if (const ComPtr<IContextMenu> menu = item.ContextMenu())
        InvokeVerb(*menu.Get(), verb);
}

void CustomBar::ShowProperties(LPCITEMIDLIST item)
{
    SHELLEXECUTEINFOW info{};
    info.cbSize = sizeof(info);
    info.fMask = SEE_MASK_INVOKEIDLIST;
    info.lpVerb = TEXT("properties");
    info.lpIDList = const_cast<LPITEMIDLIST>(item);
    info.nShow = SW_SHOW;
    ShellExecuteExW(&info);
}

} // namespace CustomMenu
