// What each key does: a table over the level's items.
//
// Rules only; key_commands.cpp carries out what is decided here.
#pragma once

#include "content/menu_item.h"

namespace CustomMenu
{

enum class KeyCommand
{
    None,
    Select,          ///< `index`, which may lie outside the items
    MoveItem,        ///< the item `from` to `index`; `highlight` after the refresh
    CloseDeepest,    ///< close the deepest level
    OpenSubmenu,     ///< of item `index`, highlighting its first item
    Launch,          ///< item `index`
    InsertSeparator, ///< above item `index`
    InsertShortcut,  ///< at position `index`
    DeleteFiles,     ///< of item `index`
    Copy,            ///< item `index`
    Cut,             ///< item `index`
    Paste,           ///< at item `index`
};

struct KeyDecision
{
    KeyCommand command = KeyCommand::None;
    int index = -1;
    int from = -1;
    int highlight = -1;
};

struct KeyPress
{
    unsigned virtualKey = 0;
    bool shift = false;
    bool control = false;
};

/// `current` is the hot item, −1 for none; `levels` the number of open levels.
KeyDecision DecideKey(const KeyPress& key, const MenuItems& items, int current, std::size_t levels);

} // namespace CustomMenu
