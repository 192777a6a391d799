// Carrying out key presses. What each key does is decided in key_table.cpp.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "commands/key_table.h"

#include <utility>

namespace CustomMenu
{

namespace
{

bool IsDown(int virtualKey)
{
    return GetKeyState(virtualKey) < 0;
}

void MoveItem(CustomBar& level, const KeyDecision& decision)
{
    level.OnItemCommand(ItemCommandMode::Select, decision.index);
    std::swap(level.m_items[decision.from], level.m_items[decision.index]);
    level.SaveLayout();
    level.m_refreshIndex = decision.highlight;
    level.m_refreshByKeyboard = true;
    level.RequestRefresh();
}

void CloseDeepestLevel()
{
    const std::vector<CustomBar*>& levels = g_launcher.m_levels;
    if (!levels.back()->m_closing)
        AskToClose(*levels.back());
    if (levels.size() < 2)
        return;
    const CustomBar& opener = *levels[levels.size() - 2];
    if (!opener.m_closing && GetActiveWindow() != opener.m_hWnd)
        SetActiveWindow(opener.m_hWnd);
}

} // namespace

LRESULT CustomBar::OnToolbarKeyDown(UINT virtualKey)
{
    const KeyPress key{virtualKey, IsDown(VK_SHIFT), IsDown(VK_CONTROL)};
    const KeyDecision decision = DecideKey(key, m_items, ItemOfButton(HotButton()), g_launcher.m_levels.size());
    switch (decision.command)
    {
    case KeyCommand::Select:
        OnItemCommand(ItemCommandMode::Select, decision.index);
        break;
    case KeyCommand::MoveItem:
        MoveItem(*this, decision);
        break;
    case KeyCommand::CloseDeepest:
        CloseDeepestLevel();
        break;
    case KeyCommand::OpenSubmenu:
        OnItemCommand(ItemCommandMode::OpenSubmenuByKey, decision.index);
        break;
    case KeyCommand::Launch:
        OnItemCommand(ItemCommandMode::Launch, decision.index);
        break;
    case KeyCommand::InsertSeparator:
        InsertSeparator(Where::Above, decision.index);
        break;
    case KeyCommand::InsertShortcut:
        InsertShortcut(decision.index);
        break;
    case KeyCommand::DeleteFiles:
        DeleteItemFiles(decision.index);
        break;
    case KeyCommand::Copy:
        CopyOrCutItem(decision.index, "copy");
        break;
    case KeyCommand::Cut:
        CopyOrCutItem(decision.index, "cut");
        break;
    case KeyCommand::Paste:
        PasteItems(decision.index);
        break;
    case KeyCommand::None:
        break;
    }
    return 1;
}

} // namespace CustomMenu
