// Opening sub-levels, and enabling and disabling the whole menu.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "geometry/placement.h"
#include "menu/work_area.h"

namespace CustomMenu
{

namespace
{

SIZE WindowSize(HWND window)
{
    RECT rect{};
    GetWindowRect(window, &rect);
    return {rect.right - rect.left, rect.bottom - rect.top};
}

bool AltIsDown(bool& known)
{
    BYTE state[256];
    known = GetKeyboardState(state) != FALSE;
    return known && (state[VK_MENU] & 0x80) != 0;
}

/// The system gives the foreground to a program that has just received a key; Alt does nothing by itself.
void SetForegroundWithAltKey(HWND window)
{
    bool known = false;
    if (!AltIsDown(known) && known)
        keybd_event(VK_MENU, 0, KEYEVENTF_EXTENDEDKEY, 0);
    SetForegroundWindow(window);
    if (!AltIsDown(known) && known)
        keybd_event(VK_MENU, 0, KEYEVENTF_EXTENDEDKEY | KEYEVENTF_KEYUP, 0);
}

} // namespace

RECT CustomBar::OpenerOnScreen(const MenuItem& item) const
{
    RECT rect = ButtonRect(item.order);
    POINT topLeft{rect.left, rect.top};
    POINT bottomRight{rect.right, rect.bottom};
    ClientToScreen(m_toolbar, &topLeft);
    ClientToScreen(m_toolbar, &bottomRight);
    return {topLeft.x, topLeft.y, bottomRight.x, bottomRight.y};
}

void CustomBar::OpenSubLevel(ItemCommandMode mode, int index, const MenuItem& item)
{
    m_lastMessagePos = GetMessagePos();
    if (!item.Is(MIF_FOLDER))
    {
        if (GetForegroundWindow() != m_hWnd)
            SetForegroundWindow(m_hWnd);
        DestroyLevelsAfter(*this);
        OnItemCommand(ItemCommandMode::Select, index);
        return;
    }
    const WString layoutKey = m_layoutKey.empty() ? WString() : m_layoutKey + TEXT("\\") + item.name.Get();
    auto* const child =
        new CustomBar(this, index, {item.pidl.Get(), item.pidl2.Get()}, layoutKey, item.Is(MIF_STARTMENU));
    child->ReloadItems();
    if (GetActiveWindow() != m_hWnd)
        SetActiveWindow(m_hWnd);
    DestroyLevelsAfter(*this, child);
    if (!child->Create(nullptr, nullptr, g_launcher.m_levelStyle, g_launcher.m_levelExStyle))
        return;
    RECT place = PlaceSubLevel(WindowSize(child->m_hWnd), OpenerOnScreen(item), g_launcher.m_workArea, IsRoot());
    SetHotItem(item.order);
    UpdateWindow(m_toolbar);
    m_openIndex = index;
    ClipToWorkArea(place);
    SetWindowPos(child->m_hWnd, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_SHOWWINDOW | SWP_NOZORDER);
    FocusDeepestLevel();
    child->SetHotItem(mode == ItemCommandMode::OpenSubmenuByKey ? 0 : -1);
}

void CustomBar::EnableMenu(bool enable)
{
    for (const CustomBar* level : g_launcher.m_levels)
        if (!level->m_closing)
            EnableWindow(level->m_hWnd, enable);
    if (!enable || m_closing)
        return;
    if (!SetForegroundWindow(m_hWnd) && IsWindow(m_hWnd))
        SetForegroundWithAltKey(m_hWnd);
    if (GetActiveWindow() != m_hWnd)
        SetActiveWindow(m_hWnd);
    FocusDeepestLevel();
}

} // namespace CustomMenu
