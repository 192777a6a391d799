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
    if (action == ShellCommandAction::ShowProperties)
        CustomBar::ShowProperties(menu.Item().List());
    else
        menu.Invoke(chosen.identifier, level.m_hWnd, chosen.point);
    level.m_refreshIndex = highlight;
    if (chosen.mode == ItemCommandMode::Launch)
        CloseAllLevels();
    else
        level.RequestRefresh();
}

void RunShellCommand(CustomBar& level, const ItemMenu& menu, const ChosenCommand& chosen)
{
    const std::string verb = menu.VerbOf(chosen.identifier);
    const ShellCommandAction action = DecideShellCommand(verb, menu.ItemFlags());
    switch (action)
    {
    case ShellCommandAction::None:
        break;
    case ShellCommandAction::Paste:
        level.PasteItems(chosen.index);
        break;
    case ShellCommandAction::Rename:
        level.RenameItem(chosen.index, menu.Folder(), menu.Item().Child(), chosen.point);
        break;
    case ShellCommandAction::ShowProperties:
    case ShellCommandAction::Invoke:
        RunShellOperation(level, menu, chosen, verb, action);
        break;
    }
}

void DeleteSeparator(CustomBar& level, const MenuDecision& decision)
{
    level.m_items.erase(level.m_items.begin() + decision.position);
    level.SaveLayout();
    level.m_refreshIndex = decision.highlight;
    level.RequestRefresh();
}

} // namespace

void DispatchCommand(CustomBar& level, const ItemMenu& menu, const ChosenCommand& chosen)
{
    const MenuDecision decision = DecideMenuCommand(chosen.identifier, level.m_items, chosen.index);
    switch (decision.action)
    {
    case MenuAction::None:
        break;
    case MenuAction::ToggleStartMenu:
        level.ToggleStartMenuLink();
        break;
    case MenuAction::ToggleDesktop:
        level.ToggleDesktopLink();
        break;
    case MenuAction::InsertFolder:
        level.InsertNewFolder(menu.Folder(), decision.position);
        break;
    case MenuAction::InsertShortcut:
        level.InsertShortcut(decision.position);
        break;
    case MenuAction::InsertSeparator:
        level.InsertSeparator(decision.where, chosen.index);
        break;
    case MenuAction::DeleteSeparator:
        DeleteSeparator(level, decision);
        break;
    case MenuAction::ShellCommand:
        RunShellCommand(level, menu, chosen);
        break;
    }
}

} // namespace CustomMenu
