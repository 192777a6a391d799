// Binding to an item's folder.
#include "commands/bound_item.h"

namespace CustomMenu
{

BoundItem::BoundItem(LPCITEMIDLIST list)
{
    if (list != nullptr)
        m_list.Reset(ILClone(list));
}

bool BoundItem::Bind()
{
    return m_list && SUCCEEDED(SHBindToParent(m_list.Get(), IID_IShellFolder, m_folder.ReceiveVoid(), &m_child)) &&
           m_child != nullptr;
}

ComPtr<IContextMenu> BoundItem::ContextMenu() const
{
    ComPtr<IContextMenu> menu;
    LPCITEMIDLIST child = m_child;
    if (FAILED(m_folder->GetUIObjectOf(nullptr, 1, &child, IID_IContextMenu, nullptr, menu.ReceiveVoid())))
        menu.Reset();
    return menu;
}

} // namespace CustomMenu
