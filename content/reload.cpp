// Filling a level: enumeration, order, placeholder, newcomer.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "app/options.h"
#include "content/icon_cache.h"
#include "content/item_key.h"
#include "content/layout_store.h"

#include <shlwapi.h>

#include <algorithm>

namespace CustomMenu
{

namespace
{

constexpr SFGAOF kKindMask = SFGAO_FOLDER | SFGAO_STREAM | SFGAO_LINK;

/// False when the folder has no such name; a name that converts to nothing counts as empty.
bool QueryName(IShellFolder& folder, LPCITEMIDLIST child, SHGDNF flags, ShellString& name)
{
    STRRET text;
    if (FAILED(folder.GetDisplayNameOf(child, flags, &text)))
        return false;
    StrRetToStrW(&text, child, name.Receive());
    return true;
}

/// A folder that is also a stream (an archive) or a link is an ordinary item.
bool IsPlainFolder(IShellFolder& folder, LPCITEMIDLIST child)
{
    SFGAOF attributes = kKindMask;
    return SUCCEEDED(folder.GetAttributesOf(1, &child, &attributes)) && (attributes & kKindMask) == SFGAO_FOLDER;
}

} // namespace

bool CustomBar::AddShellItem(IShellFolder& folder, LPCITEMIDLIST child, int slot, bool isStartMenu,
                             FolderIndexes& folders)
{
    ShellString parsingName;
    if (!QueryName(folder, child, SHGDN_INFOLDER | SHGDN_FORPARSING, parsingName))
        return false;
    MenuItem item;
    ShellString displayName;
    if (QueryName(folder, child, SHGDN_INFOLDER, displayName))
        item.name = ShellText(std::move(displayName));
    else if (parsingName)
        item.name = ShellText(parsingName.Get());
    item.key = parsingName ? ItemKeyInPlace(parsingName.Get()) : HashText(TEXT(""));
    if (isStartMenu)
        item.flags |= MIF_STARTMENU;
    if (slot < 0)
        item.flags |= MIF_LINKED | MIF_PROTECTED;
    if (IsPlainFolder(folder, child))
        item.flags |= MIF_FOLDER;

    ItemList absolute(slot < 0 ? ILClone(child) : ILCombine(m_sourceFolders[slot].Get(), child));
    if (item.Is(MIF_FOLDER))
    {
        const auto [sameName, isNew] = folders.try_emplace(item.name.Get(), m_items.size());
        if (!isNew)
        {
            m_items[sameName->second].pidl2 = std::move(absolute);
            return true;
        }
    }
    item.pidl = std::move(absolute);
    item.image = GetIconIndex(item.pidl.Get(), UsesLargeIcons());
    m_items.push_back(std::move(item));
    return static_cast<bool>(parsingName);
}

bool CustomBar::LoadFolder(int slot, FolderIndexes& folders)
{
    const ItemList& source = m_sourceFolders[slot];
    if (!source)
        return true;
    // The constructor's attempt may have failed.
    if (!g_launcher.m_desktopFolder && FAILED(SHGetDesktopFolder(g_launcher.m_desktopFolder.Receive())))
        return false;
    ComPtr<IShellFolder> folder;
    if (FAILED(g_launcher.m_desktopFolder->BindToObject(source.Get(), nullptr, IID_IShellFolder, folder.ReceiveVoid())))
        return false;
    m_folder = std::move(folder);
    ComPtr<IEnumIDList> children;
    const HRESULT result = m_folder->EnumObjects(nullptr, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS, children.Receive());
    if (result != S_OK)
        return SUCCEEDED(result);
    ItemList child;
    bool whole = true;
    HRESULT next = S_OK;
    while ((next = children->Next(1, child.Receive(), nullptr)) == S_OK)
        whole &= AddShellItem(*m_folder.Get(), child.Get(), slot, false, folders);
    return whole && SUCCEEDED(next);
}

void CustomBar::LoadLinkedFolder(int csidl, bool isStartMenu, FolderIndexes& folders)
{
    ItemList location;
    if (g_launcher.m_desktopFolder && SUCCEEDED(SHGetFolderLocation(nullptr, csidl, nullptr, 0, location.Receive())))
        AddShellItem(*g_launcher.m_desktopFolder.Get(), location.Get(), -1, isStartMenu, folders);
}

void CustomBar::ReloadItems()
{
    const bool subLevelOpen =
        !g_launcher.m_levels.empty() && g_launcher.m_levels.back() != this && HasItem(m_openIndex);
    const std::uint32_t openKey = subLevelOpen ? m_items[m_openIndex].key : 0;
    const MenuItems before = std::move(m_items);
    m_items.clear();
    m_refreshPending = false;
    m_openIndex = -1;
    m_contextIndex = -1;
    m_lastMessagePos = GetMessagePos();

    StoredOrder stored;
    bool whole = ReadStoredOrder(m_layoutKey, stored);
    m_items.reserve(stored.size()); // most of what was there is there again
    FolderIndexes folders;
    whole &= LoadFolder(0, folders);
    whole &= LoadFolder(1, folders);
    if (IsRoot())
    {
        if (g_launcher.m_options & OPTION_DESKTOP)
            LoadLinkedFolder(CSIDL_DESKTOPDIRECTORY, false, folders);
        if (g_launcher.m_options & OPTION_START_MENU)
        {
            LoadLinkedFolder(CSIDL_STARTMENU, true, folders);
            LoadLinkedFolder(CSIDL_COMMON_STARTMENU, false, folders);
        }
    }
    MergeOrder(m_items, stored);
    CleanUpSeparators(m_items);
    if (m_protectFolders)
        ProtectFolders(m_items);
    if (m_items.empty())
        m_items.push_back(MakePlaceholder());
    // An item that has a stored place is back, not new.
    if (std::find(stored.begin(), stored.end(), m_items.back().key) == stored.end())
        PlaceNewcomer(m_items, before, m_refreshIndex);
    if (subLevelOpen)
        m_openIndex = FindKey(m_items, openKey);
    // What could not be read now (a place that does not answer, a locked store) keeps its stored order.
    if (whole)
        SaveLayout();
}

void CustomBar::SaveLayout()
{
    WriteStoredOrder(m_layoutKey, m_items);
}

void CustomBar::InsertSeparator(Where where, int index)
{
    const int highlight = InsertSeparatorBeside(m_items, where, index);
    if (highlight < 0)
        return;
    SaveLayout();
    m_refreshIndex = highlight;
    RequestRefresh();
}

} // namespace CustomMenu
