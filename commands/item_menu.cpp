// Asking the shell for an item's menu, and the menu for what is in it.
#include "commands/item_menu.h"

#include "commands/command_table.h"

namespace CustomMenu
{

namespace
{

constexpr UINT kVerbCapacity = 256;
constexpr DWORD kInvokeMask = CMIC_MASK_PTINVOKE | CMIC_MASK_NOASYNC;
static_assert(kInvokeMask == 0x20000100);
static_assert(sizeof(void*) != 4 || sizeof(CMINVOKECOMMANDINFOEX) == 64);

} // namespace

ItemMenu::ItemMenu(const MenuItem& item) : m_itemFlags(item.flags)
{
    if (item.pidl)
        m_list.Reset(ILClone(item.pidl.Get()));
}

bool ItemMenu::Query(UINT flags)
{
    m_menu.Reset(CreatePopupMenu());
    return m_menu && m_list &&
           SUCCEEDED(SHBindToParent(m_list.Get(), IID_IShellFolder, m_folder.ReceiveVoid(), &m_child)) &&
           SUCCEEDED(
               m_folder->GetUIObjectOf(nullptr, 1, &m_child, IID_IContextMenu, nullptr, m_shellMenu.ReceiveVoid())) &&
           SUCCEEDED(m_shellMenu->QueryContextMenu(m_menu.Get(), 0, IDM_SHELL_FIRST, IDM_SHELL_LAST, flags));
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
