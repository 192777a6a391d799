// Carrying out an entry of an item's context menu. What each leads to is decided in command_table.cpp.
#include "commands/dispatch.h"

#include "commands/command_table.h"
#include "commands/operation_scope.h"

namespace CustomMenu
{

namespace
{

void RunShellOperation(CustomBar& level, const ItemMenu& menu, const ChosenCommand& chosen, const std::string& verb,
                       ShellCommandAction action)
{
    const OperationScope operation(level);
    const MenuDisabled disabled(level);
    const int highlight = HighlightAfter(verb, chosen.index, level.ItemCount());
    if (action == ShellCommandAction::Invoke)
        menu.Invoke(chosen.identifier, level.m_hWnd, chosen.point);
    level.m_refreshIndex = highlight;
    if (chosen.mode == ItemCommandMode::Launch)
        CloseAllLevels();
}

} // namespace

void DispatchCommand(CustomBar& level, const ItemMenu& menu, const ChosenCommand& chosen)
{
    if (chosen.identifier < IDM_SHELL_FIRST)
        return;
    const std::string verb = menu.VerbOf(chosen.identifier);
    const ShellCommandAction action = DecideShellCommand(verb, menu.ItemFlags());
    switch (action)
    {
    case ShellCommandAction::None:
    case ShellCommandAction::Paste:  // not yet
    case ShellCommandAction::Rename: // not yet
        break;
    case ShellCommandAction::ShowProperties: // nothing is shown yet
    case ShellCommandAction::Invoke:
        RunShellOperation(level, menu, chosen, verb, action);
        break;
    }
}

} // namespace CustomMenu
