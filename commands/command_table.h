// What an entry of an item's context menu leads to.
//
// Rules only; dispatch.cpp carries out what is decided here.
#pragma once

#include <cstdint>
#include <string_view>

namespace CustomMenu
{

/// Identifiers of the shell's entries. A shell command's offset is its identifier less the first.
enum ContextMenuIds : int
{
    IDM_SHELL_FIRST = 11,
    IDM_SHELL_LAST = 0x7FFF,
};

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
