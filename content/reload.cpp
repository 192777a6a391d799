// Filling a level: enumeration, order, placeholder, newcomer.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "app/options.h"
#include "content/folder_children.h"
#include "content/icon_cache.h"
#include "content/item_key.h"
#include "content/layout_store.h"

#include <algorithm>

namespace CustomMenu
{

namespace
{

/// What cannot be bound or enumerated contributes nothing.
void LoadFolder(CustomBar& level, int slot)
{
    const ComPtr<IShellFolder> folder = BindToFolder(level.m_sourceFolders[slot].Get());
    if (!folder)
        return;
    // A reference of the level's own, which it lets go of when it is loaded anew while the shell is asked below.
    folder->QueryInterface(IID_IShellFolder, level.m_folder.ReceiveVoid());
    const ComPtr<IEnumIDList> children = EnumerateChildren(*folder.Get());
    ItemList child;
    while (children && children->Next(1, child.Receive(), nullptr) == S_OK)
        level.AddShellItem(*folder.Get(), child.Get(), slot, false);
}

void LoadLinkedFolder(CustomBar& level, int csidl, bool isStartMenu)
{
    ItemList location;
    if (g_launcher.m_desktopFolder && SUCCEEDED(SHGetFolderLocation(nullptr, csidl, nullptr, 0, location.Receive())))
        level.AddShellItem(*g_launcher.m_desktopFolder.Get(), location.Get(), -1, isStartMenu);
}

void LoadLinkedFolders(CustomBar& root)
{
    if (g_launcher.m_options & OPTION_DESKTOP)
        LoadLinkedFolder(root, CSIDL_DESKTOPDIRECTORY, false);
    if (g_launcher.m_options & OPTION_START_MENU)
    {
        LoadLinkedFolder(root, CSIDL_STARTMENU, true);
        LoadLinkedFolder(root, CSIDL_COMMON_STARTMENU, false);
    }
}

} // namespace

void CustomBar::AddShellItem(IShellFolder& folder, LPCITEMIDLIST childPidl, int slot, bool isStartMenu)
{
    ShellString parsingName;
    if (!QueryName(folder, childPidl, SHGDN_INFOLDER | SHGDN_FORPARSING, parsingName))
        return;
    MenuItem item;
    ShellString displayName;
    if (QueryName(folder, childPidl, SHGDN_INFOLDER, displayName))
        item.name = ShellText(std::move(displayName));
    else if (parsingName)
        item.name = ShellText(parsingName.Get());
    item.key = parsingName ? ItemKeyInPlace(parsingName.Get()) : HashText(TEXT(""));
    if (isStartMenu)
        item.flags |= MIF_STARTMENU;
    if (slot < 0)
        item.flags |= MIF_LINKED | MIF_PROTECTED;
    if (IsPlainFolder(folder, childPidl))
        item.flags |= MIF_FOLDER;

    ItemList absolute(slot < 0 ? ILClone(childPidl) : ILCombine(m_sourceFolders[slot].Get(), childPidl));
    if (item.Is(MIF_FOLDER))
    {
        const auto sameFolder =
            std::find_if(m_items.begin(), m_items.end(),
                         [&](const MenuItem& other) { return other.Is(MIF_FOLDER) && other.name == item.name; });
        if (sameFolder != m_items.end())
        {
            sameFolder->pidl2 = std::move(absolute);
            return;
        }
    }
    item.pidl = std::move(absolute);
    item.image = GetIconIndex(item.pidl.Get(), UsesLargeIcons());
    m_items.push_back(std::move(item));
}

void CustomBar::ReloadItems()
{
    const bool subLevelOpen =
        !g_launcher.m_levels.empty() && g_launcher.m_levels.back() != this && HasItem(m_openIndex);
    const std::uint32_t openKey = subLevelOpen ? m_items[m_openIndex].key : 0;
    const bool drags = HasItem(m_dragIndex);
    const std::uint32_t dragKey = drags ? m_items[m_dragIndex].key : 0;
    const MenuItems before = std::move(m_items);
    m_items.clear();
    m_refreshPending = false;
    m_openIndex = -1;
    m_contextIndex = -1;
    m_lastMessagePos = GetMessagePos();

    LoadFolder(*this, 0);
    LoadFolder(*this, 1);
    if (IsRoot())
        LoadLinkedFolders(*this);
    ApplyLayout();
    CleanUpSeparators(m_items);
    if (m_protectFolders)
        ProtectFolders(m_items);
    if (m_items.empty())
        m_items.push_back(MakePlaceholder());
    PlaceNewcomer(m_items, before, m_refreshIndex);
    if (subLevelOpen)
        m_openIndex = FindKey(m_items, openKey);
    if (drags)
        m_dragIndex = FindKey(m_items, dragKey);
    SaveLayout();
}

void CustomBar::ApplyLayout()
{
    MergeOrder(m_items, ReadStoredOrder(m_layoutKey));
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

void CustomBar::InsertNewItemAt(std::vector<WString> before, std::vector<WString> after, int position)
{
    if (InsertNewItem(m_items, std::move(before), std::move(after), position))
        SaveLayout();
}

} // namespace CustomMenu
