// The shell's context menu of one item.
#pragma once

#include "content/menu_item.h"
#include "support/com_ptr.h"

#include <string>

namespace CustomMenu
{

/// Stands on clones: the level may load its items anew, or go, while the shell is asked or the menu shows.
class ItemMenu
{
public:
    explicit ItemMenu(const MenuItem& item);

    /// Makes the menu and has the shell fill it; `flags` as QueryContextMenu takes them. False when the item has no
    /// shell menu.
    bool Query(UINT flags);

    std::uint32_t ItemFlags() const { return m_itemFlags; }
    /// Identifier of the default entry; not greater than 0 when there is none.
    int DefaultCommand() const;
    /// Canonical name of a shell entry's command; empty when the shell tells none.
    std::string VerbOf(int command) const;
    /// Runs a shell entry's command. `owner` is the parent of what the shell shows, `point` the place of the request on
    /// the screen. What fails is shown by the shell.
    void Invoke(int command, HWND owner, POINT point) const;

private:
    std::uint32_t m_itemFlags;
    // Released from the last to the first: the menu before the object that answers for its entries, that one before
    // the folder it came from.
    ItemList m_list;
    ComPtr<IShellFolder> m_folder;
    LPCITEMIDLIST m_child = nullptr; ///< within m_list
    ComPtr<IContextMenu> m_shellMenu;
    UniqueMenu m_menu;
};

} // namespace CustomMenu
