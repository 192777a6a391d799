// The context menu of one item, as far as the shell fills it.
#pragma once

#include "commands/bound_item.h"
#include "menu/custom_bar.h"

#include <string>

namespace CustomMenu
{

/// Stands on clones: the level may load its items anew, or go, while the shell is asked or the menu shows.
class ItemMenu
{
public:
    ItemMenu(const CustomBar& level, const MenuItem& item);

    /// Makes the menu and has the shell fill it; `flags` as QueryContextMenu takes them. The placeholder's is empty.
    /// False when there is no menu.
    bool Query(UINT flags);
    /// Takes out what the launcher does not offer.
    void RemoveUnwantedEntries();

    HMENU Menu() const { return m_menu.Get(); }
    std::uint32_t ItemFlags() const { return m_itemFlags; }
    const BoundItem& Item() const { return m_item; }
    /// The folder that holds the item; the level's own for the placeholder. After Query.
    IShellFolder& Folder() const { return *(IsPlaceholder() ? m_levelFolder.Get() : m_item.Folder()); }
    /// Identifier of the default entry; not greater than 0 when there is none.
    int DefaultCommand() const;
    /// Canonical name of a shell entry's command; empty when the shell tells none.
    std::string VerbOf(int command) const;
    /// Runs a shell entry's command. `owner` is the parent of what the shell shows, `point` the place of the request on
    /// the screen. What fails is shown by the shell.
    void Invoke(int command, HWND owner, POINT point) const;

private:
    bool IsPlaceholder() const { return (m_itemFlags & MIF_PLACEHOLDER) != 0; }
    bool IsUnwanted(int position) const;

    std::uint32_t m_itemFlags;
    // Released from the last to the first: the menu before the object that answers for its entries, that one before
    // the folder it came from.
    ComPtr<IShellFolder> m_levelFolder; ///< only for the placeholder
    BoundItem m_item;
    ComPtr<IContextMenu> m_shellMenu;
    UniqueMenu m_menu;
};

} // namespace CustomMenu
