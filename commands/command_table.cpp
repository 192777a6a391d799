// Decisions of the context menu.
#include "commands/command_table.h"

#include "content/menu_item.h"

#include <algorithm>

namespace CustomMenu
{

namespace
{

char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Verbs are plain ASCII whatever the language.
bool IsVerb(std::string_view verb, std::string_view name)
{
    return std::equal(
        verb.begin(), verb.end(), name.begin(), name.end(), [](char a, char b) { return Lower(a) == Lower(b); });
}

} // namespace

ShellCommandAction DecideShellCommand(std::string_view verb, std::uint32_t flags)
{
    const bool isProtected = (flags & MIF_PROTECTED) != 0;
    // A folder takes what is pasted on it by the shell's own command.
    if (IsVerb(verb, "paste") && (flags & (MIF_FOLDER | MIF_SEPARATOR)) == 0)
        return ShellCommandAction::Paste;
    if (IsVerb(verb, "rename"))
        return isProtected ? ShellCommandAction::None : ShellCommandAction::Rename;
    if (isProtected && (IsVerb(verb, "delete") || IsVerb(verb, "cut")))
        return ShellCommandAction::None;
    return IsVerb(verb, "properties") ? ShellCommandAction::ShowProperties : ShellCommandAction::Invoke;
}

int HighlightAfter(std::string_view verb, int index, int itemCount)
{
    return IsVerb(verb, "delete") && index == itemCount - 1 ? index - 1 : index;
}

} // namespace CustomMenu
