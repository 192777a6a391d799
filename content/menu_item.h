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

/// `image` of an entry without a picture, as the toolbar takes it.
constexpr std::int32_t kNoImage = -2;

struct MenuItem
{
    ShellText name;          ///< the label; "(Empty)" for the placeholder, empty for a separator
    std::uint32_t key = 0;   ///< layout key: ItemKey, SeparatorKey, or 0 for the placeholder
    std::uint32_t flags = 0; ///< MIF_…
    std::int32_t image = 0;  ///< index in the level's image list
    /// While the level loads, the position in the stored layout; afterwards the index of the toolbar button.
    std::int32_t order = 0;
    ItemList pidl;  ///< the shell item; null for separators and the placeholder
    ItemList pidl2; ///< a second folder of the same name merged into this entry

    bool Is(std::uint32_t flag) const { return (flags & flag) != 0; }
};

static_assert(std::is_nothrow_move_constructible_v<MenuItem> && !std::is_copy_constructible_v<MenuItem>);

using MenuItems = std::vector<MenuItem>;
