// Carrying out key presses. What each key does is decided in key_table.cpp.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "commands/key_table.h"
#include "menu/commands.h"

#include <utility>

namespace CustomMenu
{

namespace
{

bool IsDown(int virtualKey)
{
    return GetKeyState(virtualKey) < 0;
}

int HotItemOf(const CustomBar& level)
{
    TBBUTTON button{};
    const int hot = level.HotIndex();
    if (hot < 0 || !level.SendToolbar(TB_GETBUTTON, static_cast<WPARAM>(hot), reinterpret_cast<LPARAM>(&button)))
        return -1;
    return IndexOfCommand(static_cast<DWORD_PTR>(button.idCommand));
}

} // namespace

LRESULT CustomBar::OnToolbarKeyDown(UINT virtualKey)
{
    const KeyPress key{virtualKey, IsDown(VK_SHIFT), IsDown(VK_CONTROL)};
    const KeyDecision decision = DecideKey(key, m_items, HotItemOf(*this), g_launcher.m_levels.size());
    switch (decision.command)
    {
    case KeyCommand::Select:
        OnItemCommand(ItemCommandMode::Select, decision.index);
        break;
    case KeyCommand::MoveItem:
        MoveItem(decision.from, decision.index, decision.highlight);
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
    default:
        break;
    }
    return 1;
}

void CustomBar::MoveItem(int from, int to, int highlight)
{
    OnItemCommand(ItemCommandMode::Select, to);
    std::swap(m_items[from], m_items[to]);
    SaveLayout();
    m_refreshIndex = highlight;
    m_refreshByKeyboard = true;
    RequestRefresh();
}

void CustomBar::CloseDeepestLevel()
{
    const std::vector<CustomBar*>& levels = g_launcher.m_levels;
    const CustomBar* const deepest = levels.back();
    // A level that stays keeps the keyboard.
    if (!deepest->m_closing && !PostMessageW(deepest->m_hWnd, WM_CLOSE, 0, 0))
        return;
    if (levels.size() < 2)
        return;
    const CustomBar* const opener = levels[levels.size() - 2];
    if (!opener->m_closing && GetActiveWindow() != opener->m_hWnd)
        SetActiveWindow(opener->m_hWnd);
}

} // namespace CustomMenu
