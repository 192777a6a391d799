// Asking the shell for an item's menu, and the menu for what is in it.
#include "commands/item_menu.h"

#include "commands/command_table.h"
#include "content/folder_children.h"

namespace CustomMenu
{

namespace
{

constexpr UINT kVerbCapacity = 256;
constexpr DWORD kInvokeMask = CMIC_MASK_PTINVOKE | CMIC_MASK_NOASYNC;
static_assert(kInvokeMask == 0x20000100);
static_assert(sizeof(void*) != 4 || sizeof(CMINVOKECOMMANDINFOEX) == 64);

} // namespace

ItemMenu::ItemMenu(const CustomBar& level, const MenuItem& item) : m_itemFlags(item.flags), m_item(item.pidl.Get())
{
    if (IsPlaceholder())
        m_levelFolder = BindToFolder(level.m_sourceFolders[0].Get());
}

bool ItemMenu::Query(UINT flags)
{
    m_menu.Reset(CreatePopupMenu());
    if (!m_menu || IsPlaceholder())
        return m_menu && m_levelFolder;
    if (!m_item.Bind())
        return false;
    m_shellMenu = m_item.ContextMenu();
    return m_shellMenu &&
           SUCCEEDED(m_shellMenu->QueryContextMenu(m_menu.Get(), 0, IDM_SHELL_FIRST, IDM_SHELL_LAST, flags));
}

bool ItemMenu::IsUnwanted(int position) const
{
    const UINT command = GetMenuItemID(m_menu.Get(), position);
    return command >= IDM_SHELL_FIRST && command <= IDM_SHELL_LAST &&
           IsRemovedVerb(VerbOf(static_cast<int>(command)), m_itemFlags);
}

void ItemMenu::RemoveUnwantedEntries()
{
    int position = 0;
    int removed = 0;
    for (int left = GetMenuItemCount(m_menu.Get()); left > 0 && removed < kMostRemovedEntries; --left)
    {
        if (!IsUnwanted(position))
        {
            ++position;
            continue;
        }
        DeleteMenu(m_menu.Get(), static_cast<UINT>(position), MF_BYPOSITION);
        ++removed;
    }
}

int ItemMenu::DefaultCommand() const
{
    return static_cast<int>(GetMenuDefaultItem(m_menu.Get(), FALSE, 0));
}

std::string ItemMenu::VerbOf(int command) const
{
    char verb[kVerbCapacity] = {};
    const auto offset = static_cast<UINT_PTR>(command - IDM_SHELL_FIRST);
    if (FAILED(m_shellMenu->GetCommandString(offset, GCS_VERBA, nullptr, verb, kVerbCapacity)))
        return {};
    verb[kVerbCapacity - 1] = 0;
    return verb;
}

void ItemMenu::Invoke(int command, HWND owner, POINT point) const
{
    CMINVOKECOMMANDINFOEX info{};
    info.cbSize = sizeof(info);
    info.fMask = kInvokeMask;
    info.hwnd = owner;
    info.lpVerb = MAKEINTRESOURCEA(command - IDM_SHELL_FIRST);
    info.nShow = SW_SHOWNORMAL;
    info.ptInvoke = point;
    m_shellMenu->InvokeCommand(reinterpret_cast<CMINVOKECOMMANDINFO*>(&info));
}

} // namespace CustomMenu
