// One entry of a menu level.
#pragma once

#include "support/item_list.h"
#include "support/shell_text.h"

#include <cstdint>
#include <vector>

enum MenuItemFlags : std::uint32_t
{
    MIF_FOLDER = 0x1,        ///< opens a sub-level
    MIF_SEPARATOR = 0x2,     ///< pseudo-item, drawn as a toolbar separator
    MIF_PLACEHOLDER = 0x4,   ///< the "(Empty)" entry of an empty level
    MIF_LINKED = 0x8,        ///< added from outside the level's folders
    MIF_PROTECTED = 0x10000, ///< not to be renamed, deleted or cut
    MIF_STARTMENU = 0x20000, ///< the link to the user's own Start Menu
};

/// The toolbar's number for a button without a picture.
constexpr std::int32_t kNoImage = -2;

struct MenuItem
{
    ShellText name;          ///< the label, none for a separator
    std::uint32_t key = 0;   ///< stands for the item in the stored order, 0 for the placeholder
    std::uint32_t flags = 0; ///< MenuItemFlags
    std::int32_t image = 0;  ///< in the level's image list
    std::int32_t order = 0;  ///< while the level loads, the place in the stored order; then the toolbar button's index
    ItemList pidl;           ///< absolute; null for separators and the placeholder
    ItemList pidl2;          ///< a folder of the same name from elsewhere, shown in the same sub-level

    bool Is(std::uint32_t flag) const { return (flags & flag) != 0; }
};

static_assert(std::is_nothrow_move_constructible_v<MenuItem> && !std::is_copy_constructible_v<MenuItem>);

using MenuItems = std::vector<MenuItem>;
