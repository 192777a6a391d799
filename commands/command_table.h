// The entries of an item's context menu, and what each leads to.
//
// Rules only; context_menu.cpp shows them, dispatch.cpp carries out what is decided here.
#pragma once

#include "content/ordering.h"

#include <string_view>

namespace CustomMenu
{

/// Identifiers of the entries; 0 when none was chosen. A shell command's offset is its identifier less the first.
enum ContextMenuIds : int
{
    IDM_INSERT_FOLDER_ABOVE = 1,
    IDM_INSERT_FOLDER_BELOW = 2,
    IDM_INSERT_SHORTCUT_ABOVE = 3,
    IDM_INSERT_SHORTCUT_BELOW = 4,
    IDM_INSERT_SEPARATOR_ABOVE = 5,
    IDM_DELETE_SEPARATOR_ABOVE = 6,
    IDM_INSERT_SEPARATOR_BELOW = 7,
    IDM_DELETE_SEPARATOR_BELOW = 8,
    IDM_ADD_START_MENU = 9,
    IDM_ADD_DESKTOP = 10,
    IDM_SHELL_FIRST = 11,
    IDM_SHELL_LAST = 0x7FFF,
};

/// One of the launcher's own entries.
struct MenuEntry
{
    int identifier = 0; ///< 0: a separator line
    LPCWSTR text = nullptr;
    int picture = 0; ///< number of the icon resource, 0 for none
    bool checked = false;
};

/// What follows the shell's entries in the menu of the item at `index`; `options` are OptionBits.
std::vector<MenuEntry> OwnEntries(const MenuItems& items, int index, bool isRoot, std::uint32_t options);

/// Whether a shell entry is taken out of the menu of an item with `flags`. Verbs are compared in any case.
bool IsRemovedVerb(std::string_view verb, std::uint32_t flags);
/// No more than this many entries are removed.
constexpr int kMostRemovedEntries = 3;

enum class MenuAction
{
    None,
    ToggleStartMenu,
    ToggleDesktop,
    InsertFolder,    ///< at `position`
    InsertShortcut,  ///< at `position`
    InsertSeparator, ///< `where`, beside the item
    DeleteSeparator, ///< at `position`; `highlight` afterwards
    ShellCommand,
};

struct MenuDecision
{
    MenuAction action = MenuAction::None;
    int position = -1;
    int highlight = -1;
    Where where = Where::Above;
};

/// What an identifier leads to on the item at `index`, which lies outside the items when the item is gone.
MenuDecision DecideMenuCommand(int identifier, const MenuItems& items, int index);

enum class ShellCommandAction
{
    None,
    Paste,          ///< into the level's own folder
    Rename,         ///< by the launcher's dialog
    ShowProperties, ///< a shell operation, carried out by other means than the menu object's
    Invoke,         ///< a shell operation, carried out by the menu object
};

/// What the launcher does about a shell command. `verb` is its canonical name in any case, empty when it has none;
/// `flags` are the item's.
ShellCommandAction DecideShellCommand(std::string_view verb, std::uint32_t flags);

/// Position to highlight after a shell operation on an item, of `itemCount` before it.
int HighlightAfter(std::string_view verb, int index, int itemCount);

} // namespace CustomMenu
