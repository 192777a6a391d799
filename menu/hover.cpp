// Hover, hover timer, click and wheel of a level. The decisions are in hover_rules.cpp.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "app/options.h"
#include "geometry/scrolling.h"
#include "menu/button_ids.h"
#include "menu/hover_rules.h"

#include <utility>

namespace CustomMenu
{

namespace
{

void CycleSeparatorStyle(CustomBar& level)
{
    if (!SetSeparatorStyle(NextSeparatorStyle(g_launcher.m_options)))
        return;
    SaveOptions();
    level.RequestRefresh();
}

} // namespace

LRESULT CustomBar::OnHotItemChange(const NMTBHOTITEM& change)
{
    const HotCause cause = HotCauseOf(change.dwFlags);
    const int index = IndexOfCommand(static_cast<DWORD_PTR>(change.idNew));
    HoverSituation situation{};
    situation.contextIndex = m_contextIndex;
    situation.openIndex = m_openIndex;
    situation.itemCount = ItemCount();
    situation.newItemIsFolder = HasItem(index) && m_items[index].Is(MIF_FOLDER);
    situation.messagePos = GetMessagePos();
    situation.lastMessagePos = m_lastMessagePos;

    const HoverDecision decision = DecideHover(situation, index, cause);
    if (decision.focusDeepest)
        FocusDeepestLevel();
    if (decision.startTimer)
    {
        m_pendingHover = index;
        SetTimer(m_hWnd, kHoverTimer, g_launcher.m_menuShowDelay, nullptr);
    }
    if (decision.restoreOpener)
        PostMessageW(m_toolbar, TB_SETHOTITEM, static_cast<WPARAM>(m_items[m_openIndex].order), 0);
    return decision.refuse ? 1 : 0;
}

LRESULT CustomBar::OnTimer(WPARAM wParam, LPARAM, bool&)
{
    if (wParam != kHoverTimer)
        return 0;
    // Taken first: opening may dispatch messages, this timer's among them, and the item is to be opened once.
    const int pending = std::exchange(m_pendingHover, -1);
    const bool stillHot = HasItem(pending) && HotButton() == m_items[pending].order;
    if (HoverOpens(pending, m_openIndex, ItemCount(), stillHot))
        OnItemCommand(ItemCommandMode::OpenSubmenu, pending);
    KillTimer(m_hWnd, kHoverTimer);
    return 0;
}

LRESULT CustomBar::OnClick(const NMMOUSE& click)
{
    POINT point = click.pt;
    ClientToScreen(m_toolbar, &point);
    if (click.dwItemData == 0)
        CycleSeparatorStyle(*this);
    const int index = IndexOfCommand(click.dwItemData);
    if (!HasItem(index))
        return 0;
    if (!m_items[index].Is(MIF_FOLDER))
        OnItemCommand(ItemCommandMode::Launch, index, point.x, point.y);
    else if (index != m_openIndex)
        OnItemCommand(ItemCommandMode::OpenSubmenu, index);
    return 0;
}

LRESULT CustomBar::OnMouseWheel(WPARAM wParam, LPARAM, bool&)
{
    if (m_pager == nullptr)
        return 0;
    RECT toolbar{};
    GetWindowRect(m_toolbar, &toolbar);
    const int buttonHeight = HIWORD(SendToolbar(TB_GETBUTTONSIZE));
    const int position = static_cast<int>(SendMessageW(m_pager, PGM_GETPOS, 0, 0));
    const int delta = static_cast<SHORT>(HIWORD(wParam));
    SendMessageW(m_pager, PGM_SETPOS, 0, WheelPosition(position, delta, buttonHeight, toolbar.bottom - toolbar.top));
    return 0;
}

} // namespace CustomMenu
