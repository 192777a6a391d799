// Hover, hover timer, click and wheel of a level. The decisions are in hover_rules.cpp.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "app/options.h"
#include "menu/commands.h"
#include "menu/hover_rules.h"

#include <windowsx.h>

namespace CustomMenu
{

namespace
{

constexpr UINT_PTR kHoverTimer = 1;

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

bool CustomBar::OnTimer(WPARAM wParam, LPARAM, LRESULT& result)
{
    if (wParam == kHoverTimer)
        OnHoverTimer();
    result = 0;
    return true;
}

void CustomBar::OnHoverTimer()
{
    // Killed first: opening a sub-level dispatches messages, and the timer must not come again meanwhile.
    KillTimer(m_hWnd, kHoverTimer);
    const int pending = m_pendingHover;
    const bool stillHot = HasItem(pending) && HotIndex() == m_items[pending].order;
    if (HoverOpens(pending, m_openIndex, ItemCount(), stillHot))
        OnItemCommand(ItemCommandMode::OpenSubmenu, pending);
}

void CustomBar::OnClick(const NMMOUSE& click)
{
    POINT point = click.pt;
    ClientToScreen(m_toolbar, &point);
    if (click.dwItemData == 0)
    {
        CycleSeparatorStyle();
        return;
    }
    const int index = IndexOfCommand(click.dwItemData);
    if (!HasItem(index))
        return;
    if (!m_items[index].Is(MIF_FOLDER))
        OnItemCommand(ItemCommandMode::Launch, index, point.x, point.y);
    else if (index != m_openIndex)
        OnItemCommand(ItemCommandMode::OpenSubmenu, index);
}

void CustomBar::CycleSeparatorStyle()
{
    if (!SetSeparatorStyle(NextSeparatorStyle(g_launcher.m_options)))
        return;
    SaveOptions();
    RequestRefresh();
}

bool CustomBar::OnMouseWheel(WPARAM wParam, LPARAM, LRESULT& result)
{
    result = 0;
    if (m_pager == nullptr)
        return true;
    RECT toolbar{};
    GetWindowRect(m_toolbar, &toolbar);
    const int buttonHeight = HIWORD(SendToolbar(TB_GETBUTTONSIZE));
    const int position = static_cast<int>(SendMessageW(m_pager, PGM_GETPOS, 0, 0));
    const int delta = static_cast<SHORT>(HIWORD(wParam));
    SendMessageW(m_pager, PGM_SETPOS, 0, WheelPosition(position, delta, buttonHeight, toolbar.bottom - toolbar.top));
    return true;
}

} // namespace CustomMenu
