// Numbers that tie a level's items to its toolbar's buttons.
#pragma once

#include <windows.h>

namespace CustomMenu
{

/// Command identifier and data of button 0; the others follow.
constexpr int kFirstCommand = 1000;

/// Index of the item of a button's command identifier or data; −1 for what belongs to no item.
constexpr int IndexOfCommand(DWORD_PTR command)
{
    return command >= static_cast<DWORD_PTR>(kFirstCommand) && command < 0x7FFFFFFF
               ? static_cast<int>(command) - kFirstCommand
               : -1;
}

} // namespace CustomMenu
