// Opening sub-levels, and enabling and disabling the whole menu.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"
#include "content/ordering.h"
#include "geometry/placement.h"
#include "menu/level_ref.h"
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

RECT ButtonOnScreen(const CustomBar& level, int button)
{
    const RECT rect = level.ButtonRect(button);
    POINT topLeft{rect.left, rect.top};
    POINT bottomRight{rect.right, rect.bottom};
    ClientToScreen(level.m_toolbar, &topLeft);
    ClientToScreen(level.m_toolbar, &bottomRight);
    return {topLeft.x, topLeft.y, bottomRight.x, bottomRight.y};
}

/// What an item without a sub-level does in place of opening one.
void CloseSubLevels(CustomBar& level, int index)
{
    if (GetForegroundWindow() != level.m_hWnd)
        SetForegroundWindow(level.m_hWnd);
    DestroyLevelsAfter(level);
    level.OnItemCommand(ItemCommandMode::Select, index);
}

CustomBar& MakeSubLevel(CustomBar& opener, int index, const MenuItem& item)
{
    const WString layoutKey =
        opener.m_layoutKey.empty() ? WString() : opener.m_layoutKey + TEXT("\\") + item.name.Get();
    return *new CustomBar(&opener, index, {item.pidl.Get(), item.pidl2.Get()}, layoutKey, item.Is(MIF_STARTMENU));
}

/// Whether the sub-level is to be opened after a call that dispatches messages: levels may be closing by now, and the
/// opener's items others. Follows the item, by its key, to where it is now.
bool IsStillWanted(CustomBar& child, const CustomBar& opener, std::uint32_t key)
{
    child.m_parentIndex = FindAgain(opener.m_items, child.m_parentIndex, key);
    return !opener.m_closing && !child.m_closing && child.m_parentIndex >= 0;
}

void ShowBesideOpener(CustomBar& child, CustomBar& opener)
{
    const int button = opener.m_items[child.m_parentIndex].order;
    RECT place =
        PlaceSubLevel(WindowSize(child.m_hWnd), ButtonOnScreen(opener, button), g_launcher.m_workArea, opener.IsRoot());
    opener.SetHotItem(button);
    UpdateWindow(opener.m_toolbar);
    opener.m_openIndex = child.m_parentIndex;
    ClipToWorkArea(place);
    SetWindowPos(child.m_hWnd, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_SHOWWINDOW | SWP_NOZORDER);
}

} // namespace

void CustomBar::OpenSubLevel(ItemCommandMode mode, int index, const MenuItem& item)
{
    const LevelRef self(*this);
    m_lastMessagePos = GetMessagePos();
    if (!item.Is(MIF_FOLDER))
    {
        CloseSubLevels(*this, index);
        return;
    }
    const std::uint32_t key = item.key;
    CustomBar& child = MakeSubLevel(*this, index, item);
    const LevelRef childHeld(child);
    child.ReloadItems();
    if (!IsStillWanted(child, *this, key))
    {
        child.Release();
        return;
    }
    if (GetActiveWindow() != m_hWnd)
        SetActiveWindow(m_hWnd);
    DestroyLevelsAfter(*this, &child);
    if (!child.Create(nullptr, nullptr, g_launcher.m_levelStyle, g_launcher.m_levelExStyle))
        return;
    if (!IsStillWanted(child, *this, key))
    {
        DestroyWindow(child.m_hWnd);
        return;
    }
    ShowBesideOpener(child, *this);
    FocusDeepestLevel();
    child.SetHotItem(mode == ItemCommandMode::OpenSubmenuByKey ? 0 : -1);
}

void CustomBar::EnableMenu(bool enable)
{
    EnableLevels(enable);
    if (!enable || m_closing)
        return;
    if (!SetForegroundWindow(m_hWnd) && IsWindow(m_hWnd))
        SetForegroundWithAltKey(m_hWnd);
    if (GetActiveWindow() != m_hWnd)
        SetActiveWindow(m_hWnd);
    FocusDeepestLevel();
}

} // namespace CustomMenu
