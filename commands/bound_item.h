// An item as the shell takes it: its folder, and its identifier there.
#pragma once

#include "support/com_ptr.h"
#include "support/item_list.h"

namespace CustomMenu
{

/// Stands on a clone: the level may load its items anew, or go, while the shell is asked or works.
class BoundItem
{
public:
    /// `list` is absolute; null, a separator's, binds to nothing.
    explicit BoundItem(LPCITEMIDLIST list);

    bool Bind();
    /// The item's context menu; empty when the shell gives none. After Bind.
    ComPtr<IContextMenu> ContextMenu() const;

    LPCITEMIDLIST List() const { return m_list.Get(); }
    /// Null before Bind.
    IShellFolder* Folder() const { return m_folder.Get(); }
    LPCITEMIDLIST Child() const { return m_child; }

private:
    ItemList m_list;
    ComPtr<IShellFolder> m_folder;
    LPCITEMIDLIST m_child = nullptr; ///< within m_list
};

} // namespace CustomMenu
