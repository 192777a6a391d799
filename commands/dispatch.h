// Carrying out an entry of an item's context menu.
#pragma once

#include "commands/item_menu.h"
#include "menu/custom_bar.h"

namespace CustomMenu
{

/// What was chosen in an item's menu.
struct ChosenCommand
{
    ItemCommandMode mode; ///< Launch closes the whole menu after a shell operation
    int index;            ///< of the item, −1 when the level shows it no more
    POINT point;          ///< screen coordinates
    int identifier;       ///< of the entry
};

void DispatchCommand(CustomBar& level, const ItemMenu& menu, const ChosenCommand& chosen);

} // namespace CustomMenu
