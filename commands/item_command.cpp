// The one entry point for everything done to an item: select, open, context menu, launch.
#include "menu/custom_bar.h"

#include "commands/context_menu.h"
#include "commands/dispatch.h"
#include "content/ordering.h"
#include "geometry/scrolling.h"
#include "menu/level_ref.h"

namespace CustomMenu
{

namespace
{

void ScrollIntoView(const CustomBar& level, int button)
{
    RECT client{};
    GetClientRect(level.m_pager, &client);
    const RECT rect = level.ButtonRect(button);
    const int buttonSize = static_cast<int>(SendMessageW(level.m_pager, PGM_GETBUTTONSIZE, 0, 0));
    const int position = static_cast<int>(SendMessageW(level.m_pager, PGM_GETPOS, 0, 0));
    const int wanted = PositionShowing(position, rect.top, rect.bottom, client.bottom - client.top, buttonSize);
    if (wanted != position)
        SendMessageW(level.m_pager, PGM_SETPOS, 0, wanted);
}

void SelectItem(const CustomBar& level, int index)
{
    FocusDeepestLevel();
    if (!level.HasItem(index))
    {
        level.SetHotItem(-1);
        return;
    }
    const int button = level.m_items[index].order;
    level.SetHotItem(button);
    if (level.m_pager != nullptr)
        ScrollIntoView(level, button);
}

void LaunchItem(CustomBar& level, int index, POINT point)
{
    const MenuItem& item = level.m_items[index];
    if (item.Is(MIF_PLACEHOLDER))
        return;
    const LevelRef held(level);
    const std::uint32_t key = item.key;
    ItemMenu menu(level, item);
    level.SetHotItem(item.order);
    // The shell may dispatch messages: in the meantime the user can have closed the menu.
    if (!menu.Query(CMF_DEFAULTONLY) || level.m_closing)
        return;
    const int command = menu.DefaultCommand();
    if (command > 0)
        DispatchCommand(level, menu, {ItemCommandMode::Launch, FindAgain(level.m_items, index, key), point, command});
}

} // namespace

void CustomBar::OnItemCommand(ItemCommandMode mode, int index, int x, int y)
{
    if (mode == ItemCommandMode::Select)
    {
        SelectItem(*this, index);
        return;
    }
    if (!HasItem(index))
        return;
    switch (mode)
    {
    case ItemCommandMode::OpenSubmenu:
    case ItemCommandMode::OpenSubmenuByKey:
        OpenSubLevel(mode, index, m_items[index]);
        break;
    case ItemCommandMode::Launch:
        LaunchItem(*this, index, {x, y});
        break;
    case ItemCommandMode::ContextMenu:
        ShowContextMenu(*this, index, {x, y});
        break;
    case ItemCommandMode::Select:
        break;
    }
}

} // namespace CustomMenu
