// Decisions of the context menu.
#include "commands/command_table.h"

#include "app/options.h"
#include "resources/resource.h"

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

bool Inside(const MenuItems& items, int index)
{
    return index >= 0 && index < static_cast<int>(items.size());
}

constexpr MenuEntry kInsertEntries[] = {
    {IDM_INSERT_FOLDER_ABOVE, TEXT("Insert folder above"), ICON_FOLDER_ABOVE},
    {IDM_INSERT_FOLDER_BELOW, TEXT("Insert folder below"), ICON_FOLDER_BELOW},
    {IDM_INSERT_SHORTCUT_ABOVE, TEXT("Insert shortcut above"), ICON_SHORTCUT_ABOVE},
    {IDM_INSERT_SHORTCUT_BELOW, TEXT("Insert shortcut below"), ICON_SHORTCUT_BELOW},
};
constexpr MenuEntry kInsertSeparatorAbove{IDM_INSERT_SEPARATOR_ABOVE, TEXT("Insert separator above"),
                                          ICON_SEPARATOR_ABOVE};
constexpr MenuEntry kDeleteSeparatorAbove{IDM_DELETE_SEPARATOR_ABOVE, TEXT("Delete separator above"),
                                          ICON_DELETE_SEPARATOR_ABOVE};
constexpr MenuEntry kInsertSeparatorBelow{IDM_INSERT_SEPARATOR_BELOW, TEXT("Insert separator below"),
                                          ICON_SEPARATOR_BELOW};
constexpr MenuEntry kDeleteSeparatorBelow{IDM_DELETE_SEPARATOR_BELOW, TEXT("Delete separator below"),
                                          ICON_DELETE_SEPARATOR_BELOW};

MenuDecision DecideDeleteSeparator(const MenuItems& items, int separator, int highlight)
{
    if (!Inside(items, separator) || !items[separator].Is(MIF_SEPARATOR))
        return {};
    return {MenuAction::DeleteSeparator, separator, highlight};
}

} // namespace

std::vector<MenuEntry> OwnEntries(const MenuItems& items, int index, bool isRoot, std::uint32_t options)
{
    std::vector<MenuEntry> entries{{}};
    if (!items[index].Is(MIF_LINKED))
        entries.insert(entries.end(), std::begin(kInsertEntries), std::end(kInsertEntries));
    if (Inside(items, index - 1))
        entries.push_back(items[index - 1].Is(MIF_SEPARATOR) ? kDeleteSeparatorAbove : kInsertSeparatorAbove);
    if (Inside(items, index + 1))
        entries.push_back(items[index + 1].Is(MIF_SEPARATOR) ? kDeleteSeparatorBelow : kInsertSeparatorBelow);
    if (!isRoot)
        return entries;
    entries.push_back({});
    entries.push_back({IDM_ADD_START_MENU, TEXT("Add Start Menu"), 0, (options & OPTION_START_MENU) != 0});
    entries.push_back({IDM_ADD_DESKTOP, TEXT("Add Desktop"), 0, (options & OPTION_DESKTOP) != 0});
    return entries;
}

bool IsRemovedVerb(std::string_view verb, std::uint32_t flags)
{
    const bool isProtected = (flags & MIF_PROTECTED) != 0;
    return IsVerb(verb, "PinToStartScreen") || (isProtected && (IsVerb(verb, "delete") || IsVerb(verb, "cut")));
}

MenuDecision DecideMenuCommand(int identifier, const MenuItems& items, int index)
{
    if (identifier == IDM_ADD_START_MENU)
        return {MenuAction::ToggleStartMenu};
    if (identifier == IDM_ADD_DESKTOP)
        return {MenuAction::ToggleDesktop};
    if (identifier >= IDM_SHELL_FIRST)
        return {MenuAction::ShellCommand};
    if (!Inside(items, index))
        return {};
    switch (identifier)
    {
    case IDM_INSERT_FOLDER_ABOVE:
        return {MenuAction::InsertFolder, index};
    case IDM_INSERT_FOLDER_BELOW:
        return {MenuAction::InsertFolder, index + 1};
    case IDM_INSERT_SHORTCUT_ABOVE:
        return {MenuAction::InsertShortcut, index};
    case IDM_INSERT_SHORTCUT_BELOW:
        return {MenuAction::InsertShortcut, index + 1};
    case IDM_INSERT_SEPARATOR_ABOVE:
        return {MenuAction::InsertSeparator, -1, -1, Where::Above};
    case IDM_INSERT_SEPARATOR_BELOW:
        return {MenuAction::InsertSeparator, -1, -1, Where::Below};
    case IDM_DELETE_SEPARATOR_ABOVE:
        return DecideDeleteSeparator(items, index - 1, index - 1);
    case IDM_DELETE_SEPARATOR_BELOW:
        return DecideDeleteSeparator(items, index + 1, index);
    default:
        return {};
    }
}

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
