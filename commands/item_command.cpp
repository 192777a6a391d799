// The one entry point for everything done to an item: select, open, launch.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "menu/hover_rules.h"

namespace CustomMenu
{

namespace
{

constexpr UINT kFirstShellCommand = 11;
constexpr UINT kLastShellCommand = 0x7FFF;

/// While a shell operation of the launcher's own runs: the level is known as its origin and the whole menu is disabled.
class OperationScope
{
public:
    explicit OperationScope(CustomBar& level) : m_level(level)
    {
        // The operation dispatches messages; the level must outlive them.
        m_level.AddRef();
        g_launcher.g_operationBar = &m_level;
        m_level.EnableMenu(false);
    }
    ~OperationScope()
    {
        m_level.EnableMenu(true);
        g_launcher.g_operationBar = nullptr;
        m_level.Release();
    }
    OperationScope(const OperationScope&) = delete;
    OperationScope& operator=(const OperationScope&) = delete;

private:
    CustomBar& m_level;
};

ComPtr<IContextMenu> ContextMenuOf(LPCITEMIDLIST pidl)
{
    ComPtr<IContextMenu> menu;
    ComPtr<IShellFolder> parent;
    LPCITEMIDLIST last = nullptr;
    if (pidl != nullptr && SUCCEEDED(SHBindToParent(pidl, IID_IShellFolder, parent.ReceiveVoid(), &last)))
        parent->GetUIObjectOf(nullptr, 1, &last, IID_IContextMenu, nullptr, menu.ReceiveVoid());
    return menu;
}

} // namespace

void CustomBar::OnItemCommand(ItemCommandMode mode, int index, int x, int y)
{
    if (mode == ItemCommandMode::Select)
    {
        SelectItem(index);
        return;
    }
    if (!HasItem(index))
        return;
    switch (mode)
    {
    case ItemCommandMode::OpenSubmenu:
    case ItemCommandMode::OpenSubmenuByKey:
        OpenSubLevel(mode, index, m_items[index]);
        break;
    case ItemCommandMode::Launch:
        LaunchItem(index, {x, y});
        break;
    default:
        break;
    }
}

void CustomBar::SelectItem(int index)
{
    FocusDeepestLevel();
    if (!HasItem(index))
    {
        SetHotItem(-1);
        return;
    }
    SetHotItem(m_items[index].order);
    if (m_pager != nullptr)
        ScrollIntoView(m_items[index].order);
}

void CustomBar::ScrollIntoView(int button)
{
    RECT client{};
    GetClientRect(m_pager, &client);
    const RECT rect = ButtonRect(button);
    const int buttonSize = static_cast<int>(SendMessageW(m_pager, PGM_GETBUTTONSIZE, 0, 0));
    const int position = static_cast<int>(SendMessageW(m_pager, PGM_GETPOS, 0, 0));
    const int wanted = PositionShowing(position, rect.top, rect.bottom, client.bottom - client.top, buttonSize);
    if (wanted != position)
        SendMessageW(m_pager, PGM_SETPOS, 0, wanted);
}

void CustomBar::LaunchItem(int index, POINT point)
{
    const MenuItem& item = m_items[index];
    if (item.Is(MIF_PLACEHOLDER))
        return;
    SetHotItem(item.order);
    const UniqueMenu menu(CreatePopupMenu());
    if (!menu)
        return;
    const ComPtr<IContextMenu> shellMenu = ContextMenuOf(item.pidl.Get());
    if (!shellMenu ||
        FAILED(shellMenu->QueryContextMenu(menu.Get(), 0, kFirstShellCommand, kLastShellCommand, CMF_DEFAULTONLY)))
        return;
    const int command = static_cast<int>(GetMenuDefaultItem(menu.Get(), FALSE, 0));
    if (command >= static_cast<int>(kFirstShellCommand))
        InvokeShellCommand(*shellMenu.Get(), static_cast<UINT>(command), index, point, true);
}

void CustomBar::InvokeShellCommand(IContextMenu& menu, UINT command, int index, POINT point, bool launch)
{
    const OperationScope operation(*this);
    CMINVOKECOMMANDINFOEX info{};
    info.cbSize = sizeof(info);
    info.fMask = CMIC_MASK_PTINVOKE | CMIC_MASK_NOASYNC;
    info.hwnd = m_hWnd;
    info.lpVerb = MAKEINTRESOURCEA(command - kFirstShellCommand);
    info.nShow = SW_SHOWNORMAL;
    info.ptInvoke = point;
    menu.InvokeCommand(reinterpret_cast<CMINVOKECOMMANDINFO*>(&info));
    m_refreshIndex = index;
    if (launch)
        CloseAllLevels();
}

} // namespace CustomMenu
